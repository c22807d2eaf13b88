// Smallest and largest values of axes, curves and grids.
#include <algorithm>
#include <array>

#include "kem.h"

namespace {

struct Range {
  float low = 0;
  float high = 0;
};

// Extends a range by the values that are strictly smaller or larger. Eight independent lanes keep the loop as
// fast as memory; a value that is not a number never replaces anything.
void Extend(Range& range, const float* values, int count) {
  constexpr int kLanes = 8;
  std::array<float, kLanes> low;
  std::array<float, kLanes> high;
  low.fill(range.low);
  high.fill(range.high);
  int k = 0;
  for (; count - k >= kLanes; k += kLanes)
    for (int lane = 0; lane < kLanes; ++lane) {
      const float v = values[k + lane];
      low[lane] = v < low[lane] ? v : low[lane];
      high[lane] = v > high[lane] ? v : high[lane];
    }
  for (; k < count; ++k) {
    low[0] = values[k] < low[0] ? values[k] : low[0];
    high[0] = values[k] > high[0] ? values[k] : high[0];
  }
  for (int lane = 0; lane < kLanes; ++lane) {
    range.low = low[lane] < range.low ? low[lane] : range.low;
    range.high = high[lane] > range.high ? high[lane] : range.high;
  }
}

// Zeros of both signs are equal, so which of them a range holds depends on the order of the visit: it is the
// first. `at(k)` gives the values in that order; the result tells whether there was a zero.
template <class At>
bool SettleZeros(Range& range, int count, At at) {
  for (int k = 0; k < count; ++k) {
    const float v = at(k);
    if (v != 0) continue;
    if (range.low == 0) range.low = v;
    if (range.high == 0) range.high = v;
    return true;
  }
  return false;
}

Range RangeOf(const float* values, int count) {
  if (!values || count <= 0) return {};
  Range range{values[0], values[0]};
  Extend(range, values, count);
  if (range.low == 0 || range.high == 0) SettleZeros(range, count, [values](int k) { return values[k]; });
  return range;
}

// A grid counts as visited column by column.
Range RangeOf(float* const* rows, int nX, int nY) {
  if (!rows || nX <= 0 || nY <= 0) return {};
  Range range{rows[0][0], rows[0][0]};
  for (int i = 0; i < nX; ++i) Extend(range, rows[i], nY);
  if (range.low == 0 || range.high == 0)
    for (int j = 0; j < nY; ++j)
      if (SettleZeros(range, nX, [rows, j](int i) { return rows[i][j]; })) break;
  return range;
}

}  // namespace

void PrnType::MinMax() {
  if (HasX()) {
    const Range x = RangeOf(xArray, Is3D() ? nX : std::min(nX, nY));  // a curve's is as long as its values
    xStart = x.low;
    xEnd = x.high;
  }
  if (HasY()) {
    const Range y = RangeOf(yArray, nY);
    yStart = y.low;
    yEnd = y.high;
  }
  const Range z = Is3D() ? RangeOf(zArray, nX, nY) : Range{};
  zMin = z.low;
  zMax = z.high;
}
