// The fields of a record that describe one of its axes, so that what holds for X and Y is said once.
#pragma once

#include "kem.h"

namespace kem::record {

struct AxisFields {
  AllocType bit;  // of a shape that stores the coordinates
  float* PrnType::*values;
  int PrnType::*count;
  float PrnType::*start;
  float PrnType::*end;
  float PrnType::*step;

  bool IsStoredIn(const PrnType& record) const { return (record.allocType & bit) != 0; }
  void Define(PrnType& record, float from, float to, float by) const {
    record.*start = from;
    record.*end = to;
    record.*step = by;
  }
};

inline constexpr AxisFields kX{AllocX,           &PrnType::xArray, &PrnType::nX,
                               &PrnType::xStart, &PrnType::xEnd,   &PrnType::xStep};
inline constexpr AxisFields kY{AllocY,           &PrnType::yArray, &PrnType::nY,
                               &PrnType::yStart, &PrnType::yEnd,   &PrnType::yStep};

}  // namespace kem::record
