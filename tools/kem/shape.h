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
std::string ShapeOf(const KemItem& item);

// An axis that is not stored: the coordinate of sample k is start + k (Last() - start) / (points - 1), rounded
// once.
struct LinearAxis {
  float start;
  float end;  // of the record: the last coordinate, or one step behind it, or never set
  float step;
  int points;

  double Last() const;
  std::vector<float> Coordinates() const;
};

LinearAxis XAxis(const PrnType& record);
LinearAxis YAxis(const PrnType& record);

// Where the samples are, as the command tells it.
std::vector<float> XCoordinates(const PrnType& record);
std::vector<float> YCoordinates(const PrnType& record);

// Give a record coordinates instead of a linear axis.
void StoreX(PrnType& record, const std::vector<float>& x);
void StoreY(PrnType& grid, const std::vector<float>& y);

// Writes linear axes out, so that the library's operations find samples where the command tells them to be.
void StoreAxes(PrnType& record);

// Where the library's operations look for them: they add up the steps of a linear axis in single precision.
std::vector<float> XOfOperations(const PrnType& record);
std::vector<float> YOfOperations(const PrnType& record);

}  // namespace kem::tool
