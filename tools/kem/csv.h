// Tables of comma-separated values in UTF-8; their numbers read back without loss.
#pragma once

#include <string>
#include <vector>

#include "kem/dataset.h"

namespace kem::tool {

// Writes a record, its first line the axis titles: X, Y for each point of a curve, X, Y, Z for each point of a grid
// with X varying fastest. Returns whether the file is complete.
bool WriteCsv(const PrnType& record, const char* name);

// Writes a dataset likewise, complex values as two columns; as a matrix a line for each Y, with the X coordinates
// in the first behind "Y \ X".
//
// A header has the title and the parameters in front, "# key: value unit", each section behind "# [name]".
bool WriteCsv(const Dataset& dataset, const char* name, bool matrix, bool header = false);

// A column of a table.
struct Column {
  std::string title;
  NumberType type;
  std::vector<double> values;
};

// Writes columns beside the coordinates of an axis, whose title is the first.
bool WriteColumns(const kem::Axis& x, const std::vector<Column>& columns, const char* name);

}  // namespace kem::tool
