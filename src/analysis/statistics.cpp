// Noise, histogram and extreme values.
#include <algorithm>
#include <cmath>
#include <span>

#include "analysis/axis.h"
#include "record/storage.h"

using namespace kem::analysis;
using kem::record::OwnsArrays;

namespace {

float AddDifferences(float sum, std::span<const float> values) {
  for (std::size_t k = 1; k < values.size(); ++k) sum += std::fabs(values[k - 1] - values[k]);
  return sum;
}

// Equal parts of a range, and how many values fell into each: none that lies below it, no NaN.
struct Bins {
  std::span<float> counts;
  float lo;
  float hi;

  void Add(std::span<const float> values) const {
    const auto bins = static_cast<float>(counts.size());
    for (const float v : values) {
      const float place = v == lo ? 0 : (v - lo) / (hi - lo) * bins;
      if (!(place >= 0)) continue;
      const std::size_t last = counts.size() - 1;
      counts[place < bins ? std::min(static_cast<std::size_t>(place), last) : last] += 1;
    }
  }
};

struct Extreme {
  float value = 0;
  float x = 0;
  float y = 0;
};

// The smallest and the largest of the values it is shown; the first wins a tie.
struct Extremes {
  bool any = false;
  Extreme low;
  Extreme high;

  void See(const Extreme& seen) {
    if (!any || seen.value < low.value) low = seen;
    if (!any || seen.value > high.value) high = seen;
    any = true;
  }
};

// Axes of grids are multiplied out here, not accumulated.
float Coordinate(const float* stored, float start, float step, int k) {
  return stored ? stored[k] : static_cast<float>(k) * step + start;
}

bool Inside(float v, float low, float high) { return low <= v && v <= high; }

}  // namespace

float PrnType::NoiseLevel() const {
  if (!OwnsArrays(allocType) || nX <= 0 || nY <= 0) return 0;
  if (!Is3D()) return AddDifferences(0, SampledX(*this)) / static_cast<float>(nY);
  float sum = 0;
  for (int i = 0; i < nX; ++i) sum = AddDifferences(sum, FirstOf(zArray[i], nY));
  return sum / static_cast<float>(nY) / static_cast<float>(nX);
}

void PrnType::Histogram(int nBins, float* const counts, float& lo, float& hi) const {
  if (!*this || nBins < 2) return;
  const Bins bins{{counts, static_cast<std::size_t>(nBins)},
                  Is3D() ? zMin : std::min(yStart, yEnd),
                  Is3D() ? zMax : std::max(yStart, yEnd)};
  std::fill(bins.counts.begin(), bins.counts.end(), 0.0f);
  if (OwnsArrays(allocType)) {
    if (!Is3D()) bins.Add(FirstOf(yArray, nY));
    for (int i = 0; Is3D() && i < nX; ++i) bins.Add(FirstOf(zArray[i], nY));
  }
  lo = bins.lo;
  hi = bins.hi;
}

void PrnType::MinMaxY(float x1, float x2, float& low, float& high, float& xAtLow, float& xAtHigh) const {
  low = high = 0;
  if (x1 > x2) std::swap(x1, x2);
  if (Is3D()) return;
  const AxisValues x = SampledX(*this);
  Extremes found;
  for (std::size_t k = 0; k < x.size(); ++k)
    if (Inside(x[k], x1, x2)) found.See({yArray[k], x[k]});
  if (!found.any) return;
  low = found.low.value;
  high = found.high.value;
  xAtLow = found.low.x;
  xAtHigh = found.high.x;
}

void PrnType::MinMaxZ(float x1, float x2, float y1, float y2, float& low, float& high, float& xAtLow, float& yAtLow,
                      float& xAtHigh, float& yAtHigh) const {
  low = high = 0;
  if (!OwnsArrays(allocType) || !Is3D()) return;
  Extremes found;
  for (int i = 0; i < nX; ++i) {
    const float x = Coordinate(HasX() ? xArray : nullptr, xStart, xStep, i);
    if (!Inside(x, x1, x2)) continue;
    for (int j = 0; j < nY; ++j) {
      const float y = Coordinate(HasY() ? yArray : nullptr, yStart, yStep, j);
      if (Inside(y, y1, y2)) found.See({zArray[i][j], x, y});
    }
  }
  if (!found.any) return;
  low = found.low.value;
  high = found.high.value;
  xAtLow = found.low.x;
  yAtLow = found.low.y;
  xAtHigh = found.high.x;
  yAtHigh = found.high.y;
}
