// Whether axes are the same.
#include <algorithm>
#include <memory>
#include <span>

#include "arith/equal.h"
#include "arith/values.h"

using namespace kem::arith;

namespace {

using Coordinates = std::span<const float>;

Coordinates SpanOf(const float* values, int count) {
  return {values, static_cast<std::size_t>(std::max(count, 0))};
}

Coordinates StoredX(const PrnType& r) {
  if (!HasValues(r)) return {};
  return SpanOf(r.xArray, IsGrid(r) ? r.nX : r.nY);
}

Coordinates StoredY(const PrnType& r) {
  if (!HasValues(r)) return {};
  return SpanOf(r.yArray, r.nY);
}

// The other axis may be longer: the first one's count decides.
bool Same(Coordinates axis, Coordinates other) {
  return axis.size() <= other.size() && std::equal(axis.begin(), axis.end(), other.begin(), NearlyEqual);
}

bool SameX(const PrnType& a, const PrnType& b) {
  if (!a.HasX())
    return NearlyEqual(a.xStart, b.xStart) && NearlyEqual(a.xEnd, b.xEnd) && NearlyEqual(a.xStep, b.xStep);
  const Coordinates stored = StoredX(a);
  return Same(stored.first(std::min(stored.size(), SpanOf(a.xArray, a.nX).size())), StoredX(b));
}

bool SameY(const PrnType& a, const PrnType& b) {
  if (!a.HasY())
    return NearlyEqual(a.yStart, b.yStart) && NearlyEqual(a.yEnd, b.yEnd) && NearlyEqual(a.yStep, b.yStep);
  return Same(StoredY(a), StoredY(b));
}

using Axis = void (PrnType::*)(float** values, int* count) const;

bool AxisEquals(const PrnType& r, Axis coordinatesOf, const float* values, int count) {
  float* coordinates = nullptr;
  int stored = 0;
  (r.*coordinatesOf)(&coordinates, &stored);
  const std::unique_ptr<float[]> owned(coordinates);
  return Same(SpanOf(values, count), SpanOf(coordinates, stored));
}

}  // namespace

int PrnType::SameAxes(const PrnType& other) const {
  if (allocType != other.allocType) return 0;
  if (this == &other) return 1;
  return SameX(*this, other) && (!IsGrid(*this) || SameY(*this, other));
}

int PrnType::XAxisEqArray(float* values, int n) const {
  return n == nX && AxisEquals(*this, &PrnType::ArrayFromXAxis, values, n);
}

int PrnType::YAxisEqArray(float* values, int n) const {
  return n == nY && AxisEquals(*this, &PrnType::ArrayFromYAxis, values, n);
}
