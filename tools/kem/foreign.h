// Files that bear the name of a format of ours and are something else.
#pragma once

#include <string>

#include "each_file.h"

namespace kem::tool {

// What a file is instead of what its name says; empty when nothing speaks against the name.
Problem WhyForeign(const std::string& file);

}  // namespace kem::tool
