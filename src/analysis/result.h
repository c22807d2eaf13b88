// Records that an operation hands out, and the axes they take over from their source.
#pragma once

#include <memory>

#include "kem.h"

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
KeptAxis KeptX(const PrnType& record);
KeptAxis KeptY(const PrnType& record);

// The axis without `margin` samples at either end.
KeptAxis Inner(const KeptAxis& axis, int margin);

// Fill an axis of a record that was allocated with the same kind of axis.
void SetX(PrnType& record, const KeptAxis& axis);
void SetY(PrnType& record, const KeptAxis& axis);

// A curve over an axis of a grid, its values not initialised.
std::unique_ptr<PrnType> NewProfile(const PrnType& source, const KeptAxis& axis);

}  // namespace kem::analysis
