// Whether axes are the same.
#include <algorithm>
#include <span>

#include "analysis/axis.h"
#include "analysis/equal.h"
#include "record/storage.h"

using namespace kem::record;
using namespace kem::analysis;

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

bool SameAxis(const PrnType& a, const PrnType& b, const AxisFields& axis) {
  if (axis.IsStoredIn(a)) return Same(ValuesOf(a, axis), axis.bit == AllocX ? StoredX(b) : ValuesOf(b, axis));
  const auto same = [&](float PrnType::*field) { return NearlyEqual(a.*field, b.*field); };
  return same(axis.start) && same(axis.end) && same(axis.step);
}

}  // namespace

int PrnType::SameAxes(const PrnType& other) const {
  if (allocType != other.allocType) return 0;
  if (this == &other) return 1;
  return SameAxis(*this, other, kX) && (!Is3D() || SameAxis(*this, other, kY));
}

int PrnType::XAxisEqArray(float* values, int n) const {
  return n == nX && Same(FirstOf(values, n), XValues(*this));
}
int PrnType::YAxisEqArray(float* values, int n) const {
  return n == nY && Same(FirstOf(values, n), YValues(*this));
}
