// What a record looks like from outside: its titles, its counts, the coordinates of its samples.
#pragma once

#include <string>
#include <vector>

#include "kem.h"

namespace kem::tool {

struct Titles {
  char x[kTextSize] = "X";
  char y[kTextSize] = "Y";
  char z[kTextSize] = "Z";

  explicit Titles(const PrnType& record) { record.LabelAxes(x, y, z); }
};

// The library's slices and profiles have no titles of their own.
void SetTitles(PrnType& curve, const char* x, const char* y);

// "curve 1024" or "grid 64 x 100".
std::string ShapeOf(const PrnType& record);

std::vector<float> XCoordinates(const PrnType& record);
std::vector<float> YCoordinates(const PrnType& record);

}  // namespace kem::tool
