// Smoothing along one axis by Savitzky and Golay: each value becomes that of the parabola fitted to its
// surroundings, Analytical Chemistry 36 (1964) 1627.
#include <algorithm>
#include <array>

#include "analysis/result.h"
#include "analysis/sorted.h"
#include "record/storage.h"

using namespace kem::analysis;
using namespace kem::record;

namespace {

struct Filter {
  int width;
  double sum;                      // of the weights of all samples
  std::array<double, 11> weights;  // from the centre outwards

  int Margin() const { return width / 2; }
};

constexpr Filter kFilters[] = {
    {5, 35, {17, 12, -3}},
    {7, 21, {7, 6, 3, -2}},
    {9, 231, {59, 54, 39, 14, -21}},
    {13, 143, {25, 24, 21, 16, 9, 0, -11}},
    {17, 323, {43, 42, 39, 34, 27, 18, 7, -6, -21}},
    {21, 3059, {329, 324, 309, 284, 249, 204, 149, 84, 9, -76, -171}},
};

const Filter* FilterOf(int width) {
  const auto* filter =
      std::find_if(std::begin(kFilters), std::end(kFilters), [width](const Filter& f) { return f.width == width; });
  return filter == std::end(kFilters) ? nullptr : filter;
}

// Values smoothed side by side, few enough that sums and samples stay in the fastest memory.
constexpr int kLanes = 1024;

// A run of up to kLanes smoothed values. `samples(k)` is the run k samples away from the centre.
template <class Samples>
void Smooth(const Filter& filter, Samples samples, float* result, int lanes) {
  std::array<double, kLanes> sum;
  const float* centre = samples(0);
  for (int k = 0; k < lanes; ++k) sum[k] = filter.weights[0] * static_cast<double>(centre[k]);
  for (int i = 1; i <= filter.Margin(); ++i) {
    const float* before = samples(-i);
    const float* after = samples(i);
    const double weight = filter.weights[i];
    for (int k = 0; k < lanes; ++k) sum[k] += weight * static_cast<double>(before[k] + after[k]);
  }
  for (int k = 0; k < lanes; ++k) result[k] = static_cast<float>(sum[k] / filter.sum);
}

// Smooths a sequence.
void SmoothAlong(const Filter& filter, const float* values, float* result, int count) {
  for (int at = 0; at < count; at += kLanes) {
    const float* centre = values + filter.Margin() + at;
    Smooth(
        filter, [centre](int k) { return centre + k; }, result + at, std::min(kLanes, count - at));
  }
}

// Smooths each column, strip by strip: the rows of a strip are read again for the next values while they are near.
void SmoothAcross(const Filter& filter, const float* const* rows, float* const* result, int count, int columns) {
  for (int j = 0; j < columns; j += kLanes)
    for (int i = 0; i < count; ++i) {
      const float* const* centre = rows + filter.Margin() + i;
      Smooth(
          filter, [centre, j](int k) { return centre[k] + j; }, result[i] + j, std::min(kLanes, columns - j));
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
  if (Is3D()) {
    SetAxis(*result, kY, Kept(*source, kY));
    SmoothAcross(*filter, source->zArray, result->zArray, x.count, nY);
  } else {
    SmoothAlong(*filter, source->yArray, result->yArray, x.count);
  }
  result->MinMax();
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
  for (int i = 0; i < nX; ++i) SmoothAlong(*filter, source->zArray[i], result->zArray[i], y.count);
  result->MinMax();
  return *result.release();
}
