// What a file that was written does not hold of the dataset that it came from.
#pragma once

#include <string>

#include "kem/dataset.h"

namespace kem::tool {

// Reads a file back and compares; "values are rounded, 12 parameters are left out", or nothing.
std::string LostIn(const std::string& file, const Dataset& dataset);

}  // namespace kem::tool
