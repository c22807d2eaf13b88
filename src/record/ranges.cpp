// Smallest and largest values of axes, curves and grids.
#include "record/ranges.h"

#include <algorithm>
#include <cstddef>

#include "kem.h"

using namespace kem::record;

namespace {

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
  RunningRange running(values[0]);
  running.Extend(values, count);
  Range range = running.Reduced();
  if (EndsAtZero(range)) SettleZeros(range, *FindZero(values, values + count));
  return range;
}

// A grid counts as visited column by column, so its first zero is that of the first column that has one. A row
// need not be searched behind the best column so far.
Range RangeOf(float* const* rows, int nX, int nY, const RunningRange& running) {
  Range range = running.Reduced();
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

Range RangeOf(float* const* rows, int nX, int nY) {
  if (!rows || nX <= 0 || nY <= 0) return {};
  RunningRange running(rows[0][0]);
  for (int i = 0; i < nX; ++i) running.Extend(rows[i], nY);
  return RangeOf(rows, nX, nY, running);
}

void SetRanges(PrnType& r, const Range& z) {
  if (r.HasX()) {
    const Range x = RangeOf(r.xArray, r.nX);
    r.xStart = x.low;
    r.xEnd = x.high;
  }
  if (r.HasY()) {
    const Range y = RangeOf(r.yArray, r.nY);
    r.yStart = y.low;
    r.yEnd = y.high;
  }
  r.zMin = z.low;
  r.zMax = z.high;
}

}  // namespace

void kem::record::SetRanges(PrnType& grid, const RunningRange& values) {
  ::SetRanges(grid, RangeOf(grid.zArray, grid.nX, grid.nY, values));
}

void PrnType::MinMax() { ::SetRanges(*this, Is3D() ? RangeOf(zArray, nX, nY) : Range{}); }
