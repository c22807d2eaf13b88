// Resampling of curves and grids, on given or on evenly spaced coordinates.
#include "analysis/interpolate.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "analysis/axis.h"
#include "analysis/line.h"
#include "analysis/result.h"
#include "analysis/second.h"
#include "record/ranges.h"
#include "record/storage.h"
#include "record/vectors.h"

using namespace kem::analysis;
using namespace kem::record;

namespace {

bool IsCurve(const PrnType& r) { return OwnsArrays(r.allocType) && !r.Is3D() && r.nX > 0 && r.nY > 0; }
bool IsGrid(const PrnType& r) { return OwnsArrays(r.allocType) && r.Is3D() && r.nX > 0 && r.nY > 0; }

// ------------------------------------------------------------ evenly spaced axes

// From `from` on in steps of `step`, as many as fit between from and to, whichever is greater: with a step that
// leads away from `to` the axis does.
struct EvenAxis {
  float from;
  float to;
  float step;
  int count = Count();
  std::unique_ptr<float[]> values = WriteOutAxis(from, step, count);

  operator std::span<const float>() const { return FirstOf(values.get(), count); }

  // In single precision, so that 0 to 1 in steps of 0.1 has 11 points.
  int Count() const {
    const float steps = std::floor(std::fabs((to - from) / step));
    if (!(steps < static_cast<float>(std::numeric_limits<int>::max()))) throw std::bad_alloc();
    return static_cast<int>(steps) + 1;
  }
};

// The axis goes with its coordinates, which are those that it defines.
void Define(PrnType& r, const AxisFields& axis, const EvenAxis& as) {
  if (!r) return;
  delete[] std::exchange(r.*axis.values, nullptr);
  axis.Define(r, as.from, as.to, as.step);
  r.allocType &= ~axis.bit;
}

// ------------------------------------------------------------ values

// Between the two samples around a target; 0 outside.
float ValueBetween(const AxisSearch& search, const float* values, float target, std::size_t nearest) {
  const auto across = search.Across(target, nearest);
  if (!across) return 0;
  // Half the difference, not the mean: curves resampled where an abscissa repeats rely on it.
  if (search.Axis()[*across] == search.Axis()[nearest]) return (values[*across] - values[nearest]) * 0.5f;
  return Line(search.Axis(), target, nearest, *across).Value(values[nearest], values[*across]);
}

void ResampleCurve(const PrnType& src, PrnType& result) {
  const AxisValues axis = SampledX(src);
  const AxisSearch search(axis, static_cast<std::size_t>(result.nX));
  std::size_t above = 1;
  // Read once: a value that is written could be part of a record, as far as the compiler knows.
  const float* const values = src.yArray;
  float* const to = result.yArray;
  for (int k = 0, count = result.nX; k < count; ++k) {
    const float target = result.xArray[k];
    if (const auto pair = search.Between(target, above)) {
      const Line line(axis, target, pair->nearest, pair->across);
      to[k] = line.Value(values[pair->nearest], values[pair->across]);
    } else {
      const std::size_t nearest = search.Nearest(target, above - 1);
      to[k] = ValueBetween(search, values, target, nearest);
      above = nearest + 1 < axis.size() ? nearest + 1 : std::max<std::size_t>(nearest, 1);
    }
  }
}

// The value at a coordinate x of each column of a grid, and from those the values of a row of the result.
class RowAt {
 public:
  RowAt(std::span<const float> ys, std::span<const float> targets, const std::vector<std::int32_t>& nearest)
      : ys_(ys), nearest_(nearest), offsets_(targets.size()), columns_(ys.size()) {
    for (std::size_t j = 0; j < targets.size(); ++j) offsets_[j] = targets[j] - ys[nearest[j]];
  }

  void Fill(float* const* rows, const Line& x, const std::vector<std::int32_t>& second, float* result) {
    WithVectors([x, a = rows[x.first], b = rows[x.second], to = columns_.data(), count = columns_.size()] {
      for (std::size_t q = 0; q < count; ++q) to[q] = x.Value(a[q], b[q]);
    });
    WithVectors([v = columns_.data(), ys = ys_.data(), offset = offsets_.data(), near = nearest_.data(),
                 next = second.data(), result, count = offsets_.size()] {
      for (std::size_t j = 0; j < count; ++j) {
        const std::int32_t n = near[j];
        const std::int32_t s = next[j];
        const float drawn = v[n] + (v[s] - v[n]) / (ys[s] - ys[n]) * offset[j];
        result[j] = n == s ? v[n] : drawn;
      }
    });
  }

 private:
  std::span<const float> ys_;
  const std::vector<std::int32_t>& nearest_;
  std::vector<float> offsets_;
  std::vector<float> columns_;
};

void ResampleGrid(const PrnType& src, PrnType& result) {
  const AxisValues xs = SampledX(src);
  const AxisValues ys = YValues(src);
  const std::span<const float> targets = FirstOf(result.yArray, result.nY);
  AxisSearch alongX(xs);
  SecondNeighbours alongY(ys, targets);
  const std::vector<std::int32_t>& nearest = alongY.Nearest();
  RowAt row(ys, targets, nearest);
  RunningRange range;
  const bool few = targets.size() < ys.size() / 4;  // of the columns are looked at
  for (int i = 0; i < result.nX; ++i) {
    const float x = result.xArray[i];
    const Line xLine = NearestLine(alongX, x, x);
    // The second neighbour along y is measured from x once a candidate has been taken: mixed, and meant so.
    const std::vector<std::int32_t>& second = alongY.Second(x);
    if (few)
      for (std::size_t j = 0; j < targets.size(); ++j) {
        const Line yLine(ys, targets[j], static_cast<std::size_t>(nearest[j]), static_cast<std::size_t>(second[j]));
        result.zArray[i][j] = Bilinear(src.zArray, xLine, yLine);
      }
    else
      row.Fill(src.zArray, xLine, second, result.zArray[i]);
    range.Extend(result.zArray[i], result.nY);
  }
  SetRanges(result, range);
}

}  // namespace

std::unique_ptr<PrnType> kem::analysis::Resampled(const PrnType& curve, std::span<const float> xs) {
  if (!IsCurve(curve) || xs.empty()) return std::make_unique<PrnType>();
  auto result = NewResult(curve, AllocXY, static_cast<int>(xs.size()));
  std::copy(xs.begin(), xs.end(), result->xArray);
  ResampleCurve(curve, *result);
  result->MinMax();
  return result;
}

std::unique_ptr<PrnType> kem::analysis::Resampled(const PrnType& grid, std::span<const float> xs,
                                                  std::span<const float> ys) {
  if (!IsGrid(grid) || xs.empty() || ys.empty()) return std::make_unique<PrnType>();
  auto result = NewResult(grid, AllocXYZ, static_cast<int>(xs.size()), static_cast<int>(ys.size()));
  std::copy(xs.begin(), xs.end(), result->xArray);
  std::copy(ys.begin(), ys.end(), result->yArray);
  ResampleGrid(grid, *result);
  return result;
}

// ------------------------------------------------------------ curves

PrnType& PrnType::InterpolateXY(float* const xs, int n) const {
  return *Resampled(*this, FirstOf(xs, n)).release();
}

PrnType& PrnType::InterpolateY(float from, float to, float step) const {
  if (!IsCurve(*this) || step == 0) return *new PrnType;
  const EvenAxis x{from, to, step};
  auto result = Resampled(*this, x);
  Define(*result, kX, x);
  return *result.release();
}

// ------------------------------------------------------------ grids

PrnType& PrnType::InterpolateXYZ(float* const xs, int nx, float* const ys, int ny) const {
  return *Resampled(*this, FirstOf(xs, nx), FirstOf(ys, ny)).release();
}

PrnType& PrnType::InterpolateZ(float xFrom, float xTo, float xDelta, float yFrom, float yTo, float yDelta) const {
  if (!IsGrid(*this)) return *new PrnType;
  const EvenAxis x{xFrom, xTo, xDelta};
  const EvenAxis y{yFrom, yTo, yDelta};
  auto result = Resampled(*this, x, y);
  Define(*result, kX, x);
  Define(*result, kY, y);
  return *result.release();
}

PrnType& PrnType::InterpolateXZ(float* const xs, int nx, float yFrom, float yTo, float yDelta) const {
  if (!IsGrid(*this) || nx <= 0) return *new PrnType;
  const EvenAxis y{yFrom, yTo, yDelta};
  auto result = Resampled(*this, FirstOf(xs, nx), y);
  Define(*result, kY, y);
  return *result.release();
}

PrnType& PrnType::InterpolateYZ(float xFrom, float xTo, float xDelta, float* const ys, int ny) const {
  if (!IsGrid(*this) || ny <= 0) return *new PrnType;
  const EvenAxis x{xFrom, xTo, xDelta};
  auto result = Resampled(*this, x, FirstOf(ys, ny));
  Define(*result, kX, x);
  return *result.release();
}
