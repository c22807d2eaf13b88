// JCAMP-DX of a dataset, with every digit, its title and its parameters.
#pragma once

#include <string>

#include "kem/dataset.h"

namespace kem::tool {

// A block of a curve of real, finite values.
std::string JcampOf(const Dataset& curve);

// Whether a label is one that the block has by itself, such as NPOINTS.
bool IsJcampLabel(std::string_view key);

}  // namespace kem::tool
