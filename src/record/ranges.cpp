// Smallest and largest values of axes, curves and grids.
#include <algorithm>
#include <array>

#include "kem.h"

namespace {

struct Range {
  float low = 0;
  float high = 0;
};

// Takes the values that are strictly smaller or larger; one that is not a number never replaces anything. The
// lanes are independent, and enough of them that compilers make vectors of them, so that memory sets the pace.
class Lanes {
 public:
  explicit Lanes(float first) {
    low_.fill(first);
    high_.fill(first);
  }

  void Extend(const float* values, int count) {
    int k = 0;
    for (; count - k >= kLanes; k += kLanes)
      for (int lane = 0; lane < kLanes; ++lane) Take(lane, values[k + lane]);
    for (int lane = 0; k < count; ++k, ++lane) Take(lane, values[k]);
  }

  Range Reduced() const {
    Range range{low_[0], high_[0]};
    for (const float v : low_) range.low = v < range.low ? v : range.low;
    for (const float v : high_) range.high = v > range.high ? v : range.high;
    return range;
  }

 private:
  static constexpr int kLanes = 32;

  void Take(int lane, float v) {
    low_[lane] = v < low_[lane] ? v : low_[lane];
    high_[lane] = v > high_[lane] ? v : high_[lane];
  }

  std::array<float, kLanes> low_;
  std::array<float, kLanes> high_;
};

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
  Lanes lanes(values[0]);
  lanes.Extend(values, count);
  Range range = lanes.Reduced();
  if (range.low == 0 || range.high == 0) SettleZeros(range, count, [values](int k) { return values[k]; });
  return range;
}

// A grid counts as visited column by column.
Range RangeOf(float* const* rows, int nX, int nY) {
  if (!rows || nX <= 0 || nY <= 0) return {};
  Lanes lanes(rows[0][0]);
  for (int i = 0; i < nX; ++i) lanes.Extend(rows[i], nY);
  Range range = lanes.Reduced();
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
