// Smoothing along one axis by Savitzky and Golay: each value becomes that of the parabola fitted to its
// surroundings, Analytical Chemistry 36 (1964) 1627.
#include <algorithm>
#include <array>
#include <utility>

#include "analysis/result.h"
#include "analysis/sorted.h"
#include "record/ranges.h"
#include "record/storage.h"

using namespace kem::analysis;
using namespace kem::record;

namespace {

struct SpanWeights {
  int width;
  double sum;                      // of the weights of all samples
  std::array<double, 11> weights;  // from the centre outwards
};

constexpr std::array<SpanWeights, 6> kWeights = {{
    {5, 35, {17, 12, -3}},
    {7, 21, {7, 6, 3, -2}},
    {9, 231, {59, 54, 39, 14, -21}},
    {13, 143, {25, 24, 21, 16, 9, 0, -11}},
    {17, 323, {43, 42, 39, 34, 27, 18, 7, -6, -21}},
    {21, 3059, {329, 324, 309, 284, 249, 204, 149, 84, 9, -76, -171}},
}};

// Values smoothed side by side, each from the samples at its place in runs one sample apart. Weights and pairs
// of samples are known when this is compiled, so that sums stay where they are made.
template <std::size_t kFilter, std::size_t... pair>
void SmoothPairs(const float* const* runs, float* result, int lanes, RunningRange& range,
                 std::index_sequence<pair...>) {
  constexpr std::size_t kCentre = sizeof...(pair);
  const auto smoothed = [](auto... sample) {
    const auto& weights = kWeights[kFilter].weights;
    const float run[] = {sample...};
    double sum = weights[0] * static_cast<double>(run[kCentre]);
    ((sum += weights[pair + 1] * static_cast<double>(run[kCentre - 1 - pair] + run[kCentre + 1 + pair])), ...);
    return static_cast<float>(sum / kWeights[kFilter].sum);
  };
  range.Store(smoothed, lanes, result, runs[pair]..., runs[kCentre], runs[kCentre + 1 + pair]...);
}

template <std::size_t kFilter>
void Smooth(const float* const* runs, float* result, int lanes, RunningRange& range) {
  SmoothPairs<kFilter>(runs, result, lanes, range, std::make_index_sequence<kWeights[kFilter].width / 2>());
}

struct Filter {
  int width;
  void (*smooth)(const float* const* runs, float* result, int lanes, RunningRange& range);

  int Margin() const { return width / 2; }
};

template <std::size_t... filter>
constexpr std::array<Filter, sizeof...(filter)> FiltersOf(std::index_sequence<filter...>) {
  return {Filter{kWeights[filter].width, Smooth<filter>}...};
}
constexpr auto kFilters = FiltersOf(std::make_index_sequence<kWeights.size()>());

const Filter* FilterOf(int width) {
  const auto* filter =
      std::find_if(kFilters.begin(), kFilters.end(), [width](const Filter& f) { return f.width == width; });
  return filter == kFilters.end() ? nullptr : filter;
}

using Runs = std::array<const float*, 21>;

// Smooths a sequence.
void SmoothAlong(const Filter& filter, const float* values, float* result, int count, RunningRange& range) {
  Runs runs;
  for (int k = 0; k < filter.width; ++k) runs[k] = values + k;
  filter.smooth(runs.data(), result, count, range);
}

// Smooths each column, strip by strip: the rows of a strip are read again for the next values while they are near.
void SmoothAcross(const Filter& filter, const float* const* rows, float* const* result, int count, int columns,
                  RunningRange& range) {
  constexpr int kStrip = 4096;
  Runs runs;
  for (int j = 0; j < columns; j += kStrip)
    for (int i = 0; i < count; ++i) {
      for (int k = 0; k < filter.width; ++k) runs[k] = rows[i + k] + j;
      filter.smooth(runs.data(), result[i] + j, std::min(kStrip, columns - j), range);
    }
}

}  // namespace

PrnType& PrnType::XSmooth(int w) const {
  const Filter* filter = FilterOf(w);
  if (!filter || !OwnsArrays(allocType) || Kept(*this, kX).count <= w) return *new PrnType;
  const Sorted source(*this);
  const KeptAxis x = Inner(Kept(*source, kX), filter->Margin());
  auto result = NewResult(*this, allocType, x.count, nY);
  result->CopyHeader(*source);
  SetAxis(*result, kX, x);
  RunningRange range;
  if (Is3D()) {
    SetAxis(*result, kY, Kept(*source, kY));
    SmoothAcross(*filter, source->zArray, result->zArray, x.count, nY, range);
  } else {
    SmoothAlong(*filter, source->yArray, result->yArray, x.count, range);
  }
  SetRanges(*result, range);
  return *result.release();
}

PrnType& PrnType::YSmooth(int w) const {
  const Filter* filter = FilterOf(w);
  if (!filter || !OwnsArrays(allocType) || !Is3D() || nY <= w) return *new PrnType;
  const Sorted source(*this);
  const KeptAxis y = Inner(Kept(*source, kY), filter->Margin());
  auto result = NewResult(*this, allocType, nX, y.count);
  result->CopyHeader(*source);
  SetAxis(*result, kX, Kept(*source, kX));
  SetAxis(*result, kY, y);
  RunningRange range;
  for (int i = 0; i < nX; ++i) SmoothAlong(*filter, source->zArray[i], result->zArray[i], y.count, range);
  SetRanges(*result, range);
  return *result.release();
}
