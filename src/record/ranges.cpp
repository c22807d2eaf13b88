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

// Values row by row; an array is one row.
struct Rows {
  float* const* first;
  int count;
  int columns;
};

Rows RowsOf(float* const& array, int count) { return {&array, array ? 1 : 0, count}; }

Rows RowsOf(const PrnType& r) {
  return r.Is3D() ? Rows{r.zArray, r.zArray ? r.nX : 0, r.nY} : RowsOf(r.yArray, r.nY);
}

RunningRange Seen(const Rows& rows) {
  RunningRange range;
  for (int i = 0; i < rows.count; ++i) range.Extend(rows.first[i], rows.columns);
  return range;
}

// A grid counts as visited column by column, so its first zero is that of the first column that has one. A row
// need not be searched behind the best column so far.
Range RangeOf(const Rows& rows, const RunningRange& seen) {
  Range range = seen.Reduced();
  if (rows.count <= 0 || rows.columns <= 0 || !EndsAtZero(range)) return range;
  const float* zero = rows.first[0];
  std::ptrdiff_t columns = rows.columns;
  for (int i = 0; i < rows.count; ++i) {
    const float* row = rows.first[i];
    const float* found = FindZero(row, row + columns);
    if (found == row + columns) continue;
    zero = found;
    columns = found - row;
  }
  SettleZeros(range, *zero);
  return range;
}

Range RangeOf(const Rows& rows) { return RangeOf(rows, Seen(rows)); }

void Set(const Range& range, float& low, float& high) {
  low = range.low;
  high = range.high;
}

}  // namespace

void RunningRange::Extend(const float* values, int count) {
  Visit(count, [values](int from, int, Lanes&) { return values + from; });
}

void RunningRange::Copy(const float* from, int count, float* to) {
  Store([](float v) { return v; }, count, to, from);
}

RunningRange RunningRange::Of(const PrnType& record) { return Seen(RowsOf(record)); }

void kem::record::SetRanges(PrnType& r, const RunningRange& values) {
  const Range range = RangeOf(RowsOf(r), values);
  if (r.HasX()) Set(RangeOf(RowsOf(r.xArray, r.nX)), r.xStart, r.xEnd);
  if (r.HasY()) Set(r.Is3D() ? RangeOf(RowsOf(r.yArray, r.nY)) : range, r.yStart, r.yEnd);
  Set(r.Is3D() ? range : Range{}, r.zMin, r.zMax);
}

void PrnType::MinMax() { SetRanges(*this, RunningRange::Of(*this)); }
