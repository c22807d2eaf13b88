// Smoothing along one axis by Savitzky and Golay: each value becomes that of the parabola fitted to its
// surroundings, Analytical Chemistry 36 (1964) 1627.
#include <algorithm>
#include <array>
#include <span>
#include <vector>

#include "analysis/result.h"
#include "record/storage.h"

using namespace kem::analysis;
using namespace kem::record;

namespace {

struct Filter {
  int width;
  double sum;                       // of the weights of all samples
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
  const auto* filter = std::ranges::find(kFilters, width, &Filter::width);
  return filter == std::end(kFilters) ? nullptr : filter;
}

// One run of smoothed values. `samples(k)` is the run of values k samples from the centre.
template <class Samples>
void Smooth(const Filter& filter, Samples samples, float* result, int count) {
  constexpr int kLanes = 256;
  std::array<double, kLanes> sum;
  for (int at = 0; at < count; at += kLanes) {
    const int lanes = std::min(kLanes, count - at);
    const float* centre = samples(0) + at;
    for (int k = 0; k < lanes; ++k) sum[k] = filter.weights[0] * static_cast<double>(centre[k]);
    for (int i = 1; i <= filter.Margin(); ++i) {
      const float* before = samples(-i) + at;
      const float* after = samples(i) + at;
      const double weight = filter.weights[static_cast<std::size_t>(i)];
      for (int k = 0; k < lanes; ++k) sum[k] += weight * static_cast<double>(before[k] + after[k]);
    }
    for (int k = 0; k < lanes; ++k) result[at + k] = static_cast<float>(sum[k] / filter.sum);
  }
}

void SmoothAlong(const Filter& filter, const float* values, float* result, int count) {
  const float* centre = values + filter.Margin();
  Smooth(filter, [centre](int k) { return centre + k; }, result, count);
}

}  // namespace

PrnType& PrnType::XSmooth(int w) const {
  const Filter* filter = FilterOf(w);
  const int count = Is3D() ? nX : nY;
  if (!filter || !OwnsArrays(allocType) || count <= w) return *new PrnType;
  PrnType source(*this);
  source.SortAxes();
  const int margin = filter->Margin();
  auto result = NewResult(source, allocType, count - 2 * margin, nY);
  result->CopyHeader(source);
  KeptAxis x = KeptX(source);
  x.count = count;
  SetX(*result, Inner(x, margin));
  if (Is3D()) {
    SetY(*result, KeptY(source));
    for (int i = 0; i < result->nX; ++i)
      Smooth(*filter, [&](int k) { return source.zArray[i + margin + k]; }, result->zArray[i], nY);
  } else {
    SmoothAlong(*filter, source.yArray, result->yArray, result->nY);
  }
  result->MinMax();
  return *result.release();
}

PrnType& PrnType::YSmooth(int w) const {
  const Filter* filter = FilterOf(w);
  if (!filter || !OwnsArrays(allocType) || !Is3D() || nY <= w) return *new PrnType;
  PrnType source(*this);
  source.SortAxes();
  const int margin = filter->Margin();
  auto result = NewResult(source, allocType, nX, nY - 2 * margin);
  result->CopyHeader(source);
  SetX(*result, KeptX(source));
  SetY(*result, Inner(KeptY(source), margin));
  for (int i = 0; i < nX; ++i) SmoothAlong(*filter, source.zArray[i], result->zArray[i], result->nY);
  result->MinMax();
  return *result.release();
}
