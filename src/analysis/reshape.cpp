// Slices, windows, block means and the exchange of the axes.
#include <algorithm>
#include <array>
#include <type_traits>
#include <utility>
#include <vector>

#include "analysis/axis.h"
#include "analysis/result.h"
#include "analysis/sorted.h"
#include "analysis/window.h"
#include "record/ranges.h"
#include "record/storage.h"
#include "record/tiles.h"
#include "record/vectors.h"

using namespace kem::analysis;
using namespace kem::record;

namespace {

void Replace(float*& array, std::unique_ptr<float[]> by) { delete[] std::exchange(array, by.release()); }

// ------------------------------------------------------------ slices

// The samples between two coordinates, given in either order and included.
std::vector<int> Band(const AxisValues& axis, float from, float to) {
  std::vector<int> band;
  for (std::size_t k = 0; k < axis.size(); ++k) {
    const float v = axis[k];
    if ((from <= v && v <= to) || (to <= v && v <= from)) band.push_back(static_cast<int>(k));
  }
  return band;
}

// The sum over a band of each row, in the order of the band. Some rows take turns, because an addition waits for
// the one before; no more of them than the processor has registers for.
void SumRows(const float* const* rows, int count, const std::vector<int>& band, float* sums) {
  constexpr int kTogether = 8;
  for (int i = 0; i < count; i += kTogether) {
    std::array<const float*, kTogether> row;
    std::array<float, kTogether> sum = {};
    for (int k = 0; k < kTogether; ++k) row[k] = rows[std::min(i + k, count - 1)];
    for (const int j : band)
      for (int k = 0; k < kTogether; ++k) sum[k] += row[k][j];
    std::copy_n(sum.begin(), std::min(kTogether, count - i), sums + i);
  }
}

// Turns the sums over a band into means where that is asked for, and completes the slice.
PrnType& Finish(std::unique_ptr<PrnType> slice, std::size_t members, int average) {
  if (average && members > 0)
    for (int k = 0; k < slice->nY; ++k) slice->yArray[k] /= static_cast<float>(members);
  slice->MinMax();
  return *slice.release();
}

// ------------------------------------------------------------ cutting

// Samples first to first + count - 1.
struct Window {
  int first;
  int count;
  bool beyond;  // no sample reaches the bounds from below, or none from above
};

Window Inside(const AxisValues& axis, float low, float high) {
  const int first = FirstFrom(axis, low);
  const int last = LastUpTo(axis, high);
  return {first, last - first + 1, first == static_cast<int>(axis.size()) || last < 0};
}

std::unique_ptr<float[]> PartOf(const float* values, const Window& window) {
  auto part = NewArray(window.count);
  std::copy_n(values + window.first, window.count, part.get());
  return part;
}

void CutAxis(PrnType& r, const AxisFields& axis, const Window& window) {
  if (axis.IsStoredIn(r)) return;
  const float origin = r.*axis.start;
  const float step = r.*axis.step;
  axis.Define(r, static_cast<float>(window.first) * step + origin,
              static_cast<float>(window.first + window.count - 1) * step + origin, step);
}

// The part of a record inside windows of its axes; of a curve both are the same.
std::unique_ptr<PrnType> PartOf(const PrnType& r, const Window& x, const Window& y) {
  auto part = std::make_unique<PrnType>(
      CopyWith(r, {x.count, y.count, r.HasX() ? PartOf(r.xArray, x) : nullptr,
                   r.HasY() ? PartOf(r.yArray, y) : nullptr, r.Is3D() ? NewGrid(x.count, y.count) : nullptr}));
  CutAxis(*part, kX, x);
  CutAxis(*part, kY, y);
  RunningRange range;
  if (r.Is3D())
    for (int i = 0; i < x.count; ++i) range.Copy(r.zArray[x.first + i] + y.first, y.count, part->zArray[i]);
  else
    range.Extend(part->yArray, y.count);
  SetRanges(*part, range);
  return part;
}

// ------------------------------------------------------------ block means

void BlockMeans(const float* values, int width, float* means, int count) {
  for (int a = 0; a < count; ++a, values += width) {
    float sum = 0;
    for (int k = 0; k < width; ++k) sum += values[k];
    means[a] = sum / static_cast<float>(width);
  }
}

// Row by row; each block still sums its values in the order of rows, then columns. A width that is known when this
// is compiled takes the place of `fy`.
template <class Width>
void AddRow(const float* row, Width fy, float* sums, int count) {
  for (int b = 0; b < count; ++b) {
    float sum = sums[b];
    for (int j = 0; j < fy; ++j) sum += row[b * fy + j];
    sums[b] = sum;
  }
}

void BlockMeans(float* const* rows, int fx, int fy, float* means, int count) {
  const auto area = static_cast<float>(static_cast<long long>(fx) * fy);
  const auto add = [=](auto width) {
    std::fill_n(means, count, 0.0f);
    for (int i = 0; i < fx; ++i) AddRow(rows[i], width, means, count);
    for (int b = 0; b < count; ++b) means[b] /= area;
  };
  if (fy == 2)
    WithVectors([=] { add(std::integral_constant<int, 2>()); });
  else
    add(fy);
}

// ------------------------------------------------------------ transposing

Grid Transposed(const PrnType& r) {
  Grid result = NewGrid(r.nY, r.nX);
  Transpose(
      r.nX, r.nY, [rows = r.zArray](int i) { return rows[i]; }, [to = result.get()](int j) { return to[j]; });
  return result;
}

// What is known of one axis becomes known of the other. The values are where they belong; the steps of a curve stay
// where they are: they belong to axes that it no longer defines.
void ExchangeAxes(PrnType& r) {
  if (r.Is3D()) {
    r.allocType = AllocZ | (r.HasX() ? AllocY : 0) | (r.HasY() ? AllocX : 0);
    std::swap(r.nX, r.nY);
    std::swap(r.xStep, r.yStep);
  }
  std::swap(r.xArray, r.yArray);
  std::swap(r.xStart, r.yStart);
  std::swap(r.xEnd, r.yEnd);
  r.MinMax();
}

}  // namespace

PrnType& PrnType::XSlice(float y1, float y2, int average) const {
  if (!OwnsArrays(allocType) || !Is3D()) return *new PrnType;
  auto slice = NewProfile(*this, Kept(*this, kX));
  const auto band = Band(YValues(*this), y1, y2);
  SumRows(zArray, nX, band, slice->yArray);
  return Finish(std::move(slice), band.size(), average);
}

PrnType& PrnType::YSlice(float x1, float x2, int average) const {
  if (!OwnsArrays(allocType) || !Is3D()) return *new PrnType;
  auto slice = NewProfile(*this, Kept(*this, kY));
  const auto band = Band(XValues(*this), x1, x2);
  std::fill_n(slice->yArray, nY, 0.0f);
  for (const int i : band)
    for (int j = 0; j < nY; ++j) slice->yArray[j] += zArray[i][j];
  return Finish(std::move(slice), band.size(), average);
}

PrnType& PrnType::Cut(float x1, float x2, float y1, float y2) const {
  if (!OwnsArrays(allocType) || x1 == x2 || (Is3D() && y1 == y2)) return *new PrnType;
  if (x1 > x2) std::swap(x1, x2);
  if (y1 > y2) std::swap(y1, y2);
  const Sorted source(*this);
  const Window x = Inside(SampledX(*source), x1, x2);
  const Window y = Is3D() ? Inside(YValues(*source), y1, y2) : x;
  if (x.beyond || y.beyond) {
    auto header = std::make_unique<PrnType>(CopyWithoutValues(*source));
    header->DeAllocate();
    return *header.release();
  }
  auto result = PartOf(*source, x, y);
  result->active = 1;
  return *result.release();
}

PrnType& PrnType::DeleteClosest(float x, float y) const {
  if (!OwnsArrays(allocType) || Is3D()) return *new PrnType;
  const AxisValues axis = SampledX(*this);
  const auto count = axis.size();
  if (count < 2) return *new PrnType;
  const auto distance = [&](std::size_t k) {
    const float dx = axis[k] - x;
    const float dy = yArray[k] - y;
    return dx * dx + dy * dy;
  };
  std::size_t closest = 0;
  for (std::size_t k = 1; k < count; ++k)
    if (distance(k) < distance(closest)) closest = k;

  const auto without = [closest, count](const float* values) {
    auto rest = NewArray(static_cast<int>(count) - 1);
    std::copy(values + closest + 1, values + count, std::copy_n(values, closest, rest.get()));
    return rest;
  };
  auto result = std::make_unique<PrnType>(*this);
  auto xs = without(axis.data());
  auto ys = without(yArray);
  Replace(result->xArray, std::move(xs));
  Replace(result->yArray, std::move(ys));
  result->allocType = AllocXY;
  result->nX = result->nY = static_cast<int>(count) - 1;
  result->MinMax();
  result->active = 1;
  return *result.release();
}

PrnType& PrnType::Reduce(int fx, int fy) const {
  const AxisValues x = SampledX(*this);
  const auto rows = static_cast<int>(x.size());
  if (fx < 1 || fx > rows || (Is3D() && (fy < 1 || fy > nY))) return *new PrnType;
  const int count = rows / fx;
  auto result = NewResult(*this, Is3D() ? AllocXYZ : AllocXY, count, Is3D() ? nY / fy : 0);
  BlockMeans(x.data(), fx, result->xArray, count);
  if (Is3D()) {
    BlockMeans(YValues(*this).data(), fy, result->yArray, result->nY);
    float* const* block = zArray;
    for (int a = 0; a < count; ++a, block += fx) BlockMeans(block, fx, fy, result->zArray[a], result->nY);
  } else {
    BlockMeans(yArray, fx, result->yArray, count);
  }
  result->CopyHeader(*this);
  result->MinMax();
  return *result.release();
}

void PrnType::SwapXY() {
  if (!OwnsArrays(allocType)) return;
  if (Is3D()) {
    Grid transposed = Transposed(*this);
    GridDeleter{nX}(zArray);
    Own(zArray, std::move(transposed));
  } else {
    if (!HasX()) {
      xArray = WriteOutAxis(xStart, xStep, nY).release();
      nX = nY;
      allocType = AllocXY;
    }
    nX = nY = std::min(nX, nY);  // as far as both arrays reach
  }
  ExchangeAxes(*this);
}

PrnType kem::analysis::Swapped(const PrnType& r) {
  if (!OwnsArrays(r.allocType) || !r.Is3D()) {
    PrnType curve(r);
    curve.SwapXY();
    return curve;
  }
  auto x = r.HasX() ? PartOf(r.xArray, {0, r.nX, false}) : nullptr;
  auto y = r.HasY() ? PartOf(r.yArray, {0, r.nY, false}) : nullptr;
  PrnType grid = CopyWith(r, {r.nX, r.nY, std::move(x), std::move(y), Transposed(r)});
  ExchangeAxes(grid);
  return grid;
}
