#pragma once

#include "kem.h"

namespace kem::tool {

// Writes a table of comma-separated values in UTF-8, its first line the axis titles: X, Y for each point of a
// curve, X, Y, Z for each point of a grid with X varying fastest. Numbers read back as the same floats. Returns
// whether the file is complete.
bool WriteCsv(const PrnType& record, char* name);

}  // namespace kem::tool
