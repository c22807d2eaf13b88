// Tables of comma-separated values in UTF-8; their numbers read back without loss.
#pragma once

#include "kem/dataset.h"

namespace kem::tool {

// Writes a record, its first line the axis titles: X, Y for each point of a curve, X, Y, Z for each point of a grid
// with X varying fastest. Returns whether the file is complete.
bool WriteCsv(const PrnType& record, char* name);

// Writes a dataset likewise, complex values as two columns; as a matrix a line for each Y, with the X coordinates
// in the first.
bool WriteCsv(const Dataset& dataset, const char* name, bool matrix);

}  // namespace kem::tool
