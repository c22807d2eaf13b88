// Smallest and largest values of axes, curves and grids.
#include <algorithm>
#include <array>
#include <cstddef>

#include "kem.h"

namespace {

struct Range {
  float low = 0;
  float high = 0;
};

// Takes the values that are strictly smaller or larger; NaN never replaces anything. The lanes are
// independent, and enough of them that compilers make vectors of them, so that memory sets the pace.
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
// first.
void SettleZeros(Range& range, float zero) {
  if (range.low == 0) range.low = zero;
  if (range.high == 0) range.high = zero;
}

// The first zero of a row, or its end. Whole vectors are asked first, because zeros may be rare.
const float* FindZero(const float* first, const float* last) {
  constexpr std::ptrdiff_t kLanes = 32;
  for (; last - first >= kLanes; first += kLanes) {
    unsigned found = 0;
    for (std::ptrdiff_t lane = 0; lane < kLanes; ++lane) found |= first[lane] == 0 ? 1U : 0U;
    if (found) break;
  }
  return std::find(first, last, 0.0f);
}

bool EndsAtZero(const Range& range) { return range.low == 0 || range.high == 0; }

Range RangeOf(const float* values, int count) {
  if (!values || count <= 0) return {};
  Lanes lanes(values[0]);
  lanes.Extend(values, count);
  Range range = lanes.Reduced();
  if (EndsAtZero(range)) SettleZeros(range, *FindZero(values, values + count));
  return range;
}

// A grid counts as visited column by column, so its first zero is that of the first column that has one. A row
// need not be searched behind the best column so far.
Range RangeOf(float* const* rows, int nX, int nY) {
  if (!rows || nX <= 0 || nY <= 0) return {};
  Lanes lanes(rows[0][0]);
  for (int i = 0; i < nX; ++i) lanes.Extend(rows[i], nY);
  Range range = lanes.Reduced();
  if (!EndsAtZero(range)) return range;
  const float* zero = rows[0];
  std::ptrdiff_t columns = nY;
  for (int i = 0; i < nX; ++i) {
    const float* found = FindZero(rows[i], rows[i] + columns);
    if (found == rows[i] + columns) continue;
    zero = found;
    columns = found - rows[i];
  }
  SettleZeros(range, *zero);
  return range;
}

}  // namespace

void PrnType::MinMax() {
  if (HasX()) {
    const Range x = RangeOf(xArray, nX);
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
