// Files that share a name or a signature with ours but are none of ours.
#pragma once

#include <optional>
#include <string>

#include "dataset/source.h"

namespace kem::dataset {

struct Foreign {
  std::string format;
  std::string evidence;
  std::string refusal;  // what a user is told, as "is a FITS file, which kem does not read"
};

std::optional<Foreign> ForeignFormat(Source& source);

}  // namespace kem::dataset
