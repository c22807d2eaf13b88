// The value of a curve or grid at one point.
#include <algorithm>

#include "analysis/axis.h"
#include "analysis/line.h"
#include "record/storage.h"

using namespace kem::analysis;

namespace {

bool InRange(const PrnType& r, float x, float y) {
  return kem::record::OwnsArrays(r.allocType) && Within(x, r.xStart, r.xEnd) &&
         (!r.Is3D() || Within(y, r.yStart, r.yEnd));
}

// The bin in which t falls when the range from start to end is cut into `count` equal parts, on purpose not into
// count - 1: samples of a defined axis stand for bins here.
std::size_t Bin(float t, float start, float end, std::size_t count) {
  const float bin = (t - start) / (end - start) * static_cast<float>(count);
  if (!(bin > 0)) return 0;  // also where start and end are one
  return bin < static_cast<float>(count) ? std::min(static_cast<std::size_t>(bin), count - 1) : count - 1;
}

}  // namespace

float PrnType::Nearest(float x, float y) const {
  const int rows = Is3D() ? nX : std::min(nX, nY);
  if (!InRange(*this, x, y) || rows <= 0 || nY <= 0) return 0;
  const auto index = [](const float* stored, int count, float t, float start, float end) {
    const auto samples = static_cast<std::size_t>(count);
    return stored ? AxisSearch({stored, samples}).Nearest(t) : Bin(t, start, end, samples);
  };
  const std::size_t i = index(HasX() ? xArray : nullptr, rows, x, xStart, xEnd);
  return Is3D() ? zArray[i][index(HasY() ? yArray : nullptr, nY, y, yStart, yEnd)] : yArray[i];
}

float PrnType::At(float x, float y) const {
  if (!InRange(*this, x, y)) return 0;
  const AxisValues xs = SampledX(*this);
  if (xs.size() == 0) return 0;
  AxisSearch alongX(xs);
  const Line i = NearestLine(alongX, x, x);
  if (!Is3D()) return i.Value(yArray[i.first], yArray[i.second]);
  const AxisValues ys = YValues(*this);
  if (ys.size() == 0) return 0;
  AxisSearch alongY(ys);
  return Bilinear(zArray, i, NearestLine(alongY, y, x));
}
