// Whether axes are the same.
#include <algorithm>
#include <span>

#include "analysis/axis.h"
#include "analysis/equal.h"
#include "record/storage.h"

using kem::analysis::NearlyEqual;
using namespace kem::record;
using kem::analysis::FirstOf;
using kem::analysis::XValues;
using kem::analysis::YValues;

namespace {

using Coordinates = std::span<const float>;

// As much of the other axis as the first one has: it may be longer, whatever its own count.
bool Same(Coordinates axis, Coordinates other) {
  return axis.size() <= other.size() && std::equal(axis.begin(), axis.end(), other.begin(), NearlyEqual);
}

// All that is stored: as much as there are rows of a grid, or values of a curve.
Coordinates StoredX(const PrnType& r) {
  if (!OwnsArrays(r.allocType)) return {};
  return FirstOf(r.xArray, r.Is3D() ? r.nX : r.nY);
}

bool SameX(const PrnType& a, const PrnType& b) {
  if (a.HasX()) return Same(XValues(a), StoredX(b));
  return NearlyEqual(a.xStart, b.xStart) && NearlyEqual(a.xEnd, b.xEnd) && NearlyEqual(a.xStep, b.xStep);
}

bool SameY(const PrnType& a, const PrnType& b) {
  if (a.HasY()) return Same(YValues(a), YValues(b));
  return NearlyEqual(a.yStart, b.yStart) && NearlyEqual(a.yEnd, b.yEnd) && NearlyEqual(a.yStep, b.yStep);
}

}  // namespace

int PrnType::SameAxes(const PrnType& other) const {
  if (allocType != other.allocType) return 0;
  if (this == &other) return 1;
  return SameX(*this, other) && (!Is3D() || SameY(*this, other));
}

int PrnType::XAxisEqArray(float* values, int n) const {
  return n == nX && Same(FirstOf(values, n), XValues(*this));
}
int PrnType::YAxisEqArray(float* values, int n) const {
  return n == nY && Same(FirstOf(values, n), YValues(*this));
}
