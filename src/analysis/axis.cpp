// Coordinates of an axis, for hosts and for the analysis.
#include "analysis/axis.h"

#include <algorithm>

#include "record/storage.h"

using namespace kem::record;

namespace kem::analysis {
namespace {

AxisValues Values(bool stored, const float* array, float start, float step, int count) {
  const int length = std::max(count, 0);
  if (stored) return AxisValues({array, static_cast<std::size_t>(length)});
  return {WriteOutAxis(start, step, length), length};
}

AxisValues XValues(const PrnType& r, int count) {
  if (!OwnsArrays(r.allocType)) return AxisValues({});
  return Values(r.HasX(), r.xArray, r.xStart, r.xStep, count);
}

int SampleCount(const PrnType& r) { return r.Is3D() ? r.nX : std::min(r.nX, r.nY); }

}  // namespace

std::unique_ptr<float[]> WriteOutAxis(float start, float step, int count) {
  auto values = NewArray(count);
  float value = start;
  for (int k = 0; k < count; ++k, value += step) values[k] = value;
  return values;
}

// A curve that stores only its values has as many abscissae as values; the X array of any other curve is as
// long as its values.
AxisValues XValues(const PrnType& r) { return XValues(r, r.allocType == AllocY ? r.nY : SampleCount(r)); }

AxisValues SampledX(const PrnType& r) { return XValues(r, SampleCount(r)); }

AxisValues YValues(const PrnType& r) {
  if (!OwnsArrays(r.allocType)) return AxisValues({});
  return Values(r.HasY(), r.yArray, r.yStart, r.yStep, r.nY);
}

}  // namespace kem::analysis

namespace {

void HandOut(const kem::analysis::AxisValues& axis, float** values, int* count) {
  const auto length = static_cast<int>(axis.size());
  auto copy = axis.data() ? NewArray(length) : nullptr;
  std::copy_n(axis.data(), length, copy.get());
  *values = copy.release();
  *count = length;
}

}  // namespace

void PrnType::ArrayFromXAxis(float** values, int* count) const {
  HandOut(kem::analysis::XValues(*this), values, count);
}

void PrnType::ArrayFromYAxis(float** values, int* count) const {
  HandOut(kem::analysis::YValues(*this), values, count);
}
