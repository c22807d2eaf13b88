// Records that an operation hands out, and the axes they take over from their source.
#pragma once

#include <memory>

#include "kem.h"
#include "record/axis.h"

namespace kem::analysis {

// A fresh record with the arrays of `type`, named after its source.
std::unique_ptr<PrnType> NewResult(const PrnType& source, int type, int count1, int count2 = 0);

// One axis as a record keeps it.
struct KeptAxis {
  const float* stored;  // null: defined by what follows
  float start;
  float end;
  float step;
  int count;  // of samples; a curve's end with the smaller of its counts
};
KeptAxis Kept(const PrnType& record, const record::AxisFields& axis);

// The axis without `margin` samples at either end.
KeptAxis Inner(const KeptAxis& axis, int margin);

// Fills an axis of a record that was allocated with the same kind of axis.
void SetAxis(PrnType& record, const record::AxisFields& axis, const KeptAxis& as);

// A curve over an axis of a grid, its values not initialised.
std::unique_ptr<PrnType> NewProfile(const PrnType& source, const KeptAxis& axis);

// A copy whose axes have changed places, see PrnType::SwapXY: the values of a grid are copied once.
PrnType Swapped(const PrnType& record);

}  // namespace kem::analysis
