// Derivatives and integrals along the axes, which are put into ascending order first.
#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

#include "analysis/axis.h"
#include "analysis/equal.h"
#include "analysis/ordered_sum.h"
#include "analysis/result.h"
#include "analysis/sorted.h"
#include "analysis/window.h"
#include "record/storage.h"
#include "record/vectors.h"

using namespace kem::analysis;
using namespace kem::record;

namespace {

// ------------------------------------------------------------ derivatives

// Samples that the filter needs on either side of its centre.
constexpr int kReach = 7;
// Samples from which an axis is differentiated, one more than the filter spans.
constexpr int kLeastSamples = 2 * kReach + 2;

// The slope per sample of the sequence `v`, whose index counts from the sample in question. The order of the sum
// is part of the result.
template <class Sequence>
float Slope(Sequence v) {
  const auto e = [v](int m) { return v(-m) - v(m); };
  return (e(2) * 1.3843f + e(1) * 0.7506f + e(3) * 1.7842f + e(4) * 1.8334f + e(5) * 1.415f + e(6) * 0.4121f -
          e(7) * 1.2922f) /
         -33.4152f;
}

void SlopesAlong(const float* values, float* slopes, int count) {
  for (int k = 0; k < count; ++k) slopes[k] = Slope([at = values + k + kReach](int m) { return at[m]; });
}

// Across rows, one row of slopes at a time.
void SlopesAcross(float* const* rows, float* slopes, int count) {
  for (int j = 0; j < count; ++j) slopes[j] = Slope([at = rows + kReach, j](int m) { return at[m][j]; });
}

// ------------------------------------------------------------ integrals

// The width times the sum of both sides is single precision, its half is double.
double Trapezoid(float width, float a, float b) { return 0.5 * static_cast<double>(width * (a + b)); }

float Plus(float sum, double piece) { return static_cast<float>(static_cast<double>(sum) + piece); }

// How the pieces of an integral count.
enum class Counted { Signed, Absolute };

// Pieces add up in double precision, in their order.
struct Sum {
  Counted counted;
  OrderedSum of = {};

  // Adds piece(0), piece(1), ... up to piece(count - 1).
  template <class Piece>
  void Add(std::size_t count, Piece piece) {
    of.Add(count, [piece, absolute = counted == Counted::Absolute](std::size_t k) {
      const double p = piece(k);
      return absolute ? std::fabs(p) : p;
    });
  }
};

// Whether the samples reach up to the upper bound. Of absolute values the piece from 0 to 0 counts: its width is
// none, but times an infinite value it is NaN.
bool Reaches(float sample, float bound, Counted counted) {
  const bool zeros = sample == 0 && bound == 0;
  return kem::analysis::NearlyEqual(sample, bound) && !(zeros && counted == Counted::Absolute);
}

// Trapezoids between the samples inside the bounds, and two pieces up to the interpolated values at the bounds. The
// piece at the upper bound is left out, on purpose, where it would start at the first sample of the curve. Bounds
// between two samples give two pieces that overlap, one of negative width.
float IntegralOfCurve(const PrnType& source, float x1, float x2, Counted counted) {
  const Sorted curve(source);
  const AxisValues x = SampledX(*curve);
  const float* y = curve->yArray;
  const auto first = static_cast<std::size_t>(FirstFrom(x, x1));
  if (first == x.size()) return 0;
  Sum sum{counted};
  const auto add = [&sum](float width, float a, float b) {
    sum.Add(1, [=](std::size_t) { return Trapezoid(width, a, b); });
  };
  if (!kem::analysis::NearlyEqual(x[first], x1)) add(x[first] - x1, source.At(x1, 0), y[first]);
  const auto beyond =
      std::partition_point(x.data() + first + 1, x.data() + x.size(), [x2](float v) { return v <= x2; });
  const auto last = static_cast<std::size_t>(beyond - x.data()) - 1;
  sum.Add(last - first, [at = x.data() + first, of = y + first](std::size_t k) {
    return Trapezoid(at[k + 1] - at[k], of[k], of[k + 1]);
  });
  if (last > 0 && !Reaches(x[last], x2, counted)) add(x2 - x[last], source.At(x2, 0), y[last]);
  return static_cast<float>(sum.of.Value());
}

// The weight of each sample of a band in an integral.
struct Weights {
  int first = 0;
  std::vector<float> of;
};

// The ends weigh only as much as lies between them and the bounds, not half a cell more.
Weights WeightsOf(const AxisValues& axis, float low, float high) {
  if (axis.size() == 0) return {};
  const int first = std::min(FirstFrom(axis, low), static_cast<int>(axis.size()) - 1);
  const int last = std::max(LastUpTo(axis, high), 0);
  const auto at = [&axis](int k) { return axis[static_cast<std::size_t>(k)]; };
  Weights weights{first, {}};
  for (int k = first; k < last; ++k)
    weights.of.push_back(k == first ? at(k) - low : (at(k + 1) - at(k - 1)) * 0.5f);
  if (first <= last) weights.of.push_back(high - at(last));
  return weights;
}

float IntegralOfGrid(const PrnType& source, float x1, float x2, float y1, float y2, Counted counted) {
  const Sorted grid(source);
  const Weights w = WeightsOf(XValues(*grid), x1, x2);
  const Weights v = WeightsOf(YValues(*grid), y1, y2);
  Sum sum{counted};
  for (std::size_t k = 0; k < w.of.size(); ++k) {
    const float* row = grid->zArray[static_cast<std::size_t>(w.first) + k] + v.first;
    sum.Add(v.of.size(),
            [weight = w.of[k], of = v.of.data(), row](std::size_t j) { return weight * of[j] * row[j]; });
  }
  return static_cast<float>(sum.of.Value());
}

float IntegralOf(const PrnType& source, float x1, float x2, float y1, float y2, Counted counted) {
  if (!OwnsArrays(source.allocType) || x1 == x2 || (source.Is3D() && y1 == y2)) return 0;
  if (x1 > x2) std::swap(x1, x2);
  if (y1 > y2) std::swap(y1, y2);
  return source.Is3D() ? IntegralOfGrid(source, x1, x2, y1, y2, counted) : IntegralOfCurve(source, x1, x2, counted);
}

// The samples of an axis between two coordinates given in either order.
struct Band {
  int first;
  int last;
  bool empty;
};

Band BandOf(const AxisValues& axis, float from, float to) {
  if (from > to) std::swap(from, to);
  const int first = FirstFrom(axis, from);
  const int last = LastUpTo(axis, to);
  return {first, last, first >= static_cast<int>(axis.size()) || last < first};
}

// The integral per sample of the band, which curves over bands of different width can be compared by.
PrnType& Finish(std::unique_ptr<PrnType> profile, const Band& band) {
  for (int k = 0; k < profile->nY; ++k) profile->yArray[k] /= static_cast<float>(band.last - band.first + 1);
  profile->MinMax();
  return *profile.release();
}

}  // namespace

PrnType& PrnType::XDiff() const {
  if (!OwnsArrays(allocType) || Kept(*this, kX).count < kLeastSamples) return *new PrnType;
  const Sorted sorted(*this);
  const KeptAxis x = Inner(Kept(*sorted, kX), kReach);
  auto result = NewResult(*this, allocType, x.count, nY);
  result->CopyHeader(*sorted);
  if (Is3D()) {
    for (int k = 0; k < x.count; ++k) SlopesAcross(sorted->zArray + k, result->zArray[k], nY);
    SetAxis(*result, kY, Kept(*sorted, kY));
  } else {
    SlopesAlong(sorted->yArray, result->yArray, x.count);
  }
  SetAxis(*result, kX, x);
  result->MinMax();
  return *result.release();
}

PrnType& PrnType::YDiff() const {
  if (!OwnsArrays(allocType) || !Is3D() || nY < kLeastSamples) return *new PrnType;
  const Sorted sorted(*this);
  auto result = NewResult(*this, allocType, nX, nY - 2 * kReach);
  result->CopyHeader(*sorted);
  for (int i = 0; i < nX; ++i) SlopesAlong(sorted->zArray[i], result->zArray[i], result->nY);
  SetAxis(*result, kX, Kept(*sorted, kX));
  SetAxis(*result, kY, Inner(Kept(*sorted, kY), kReach));
  result->MinMax();
  return *result.release();
}

float PrnType::Integral(float x1, float x2, float y1, float y2) const {
  return IntegralOf(*this, x1, x2, y1, y2, Counted::Signed);
}

float PrnType::AbsIntegral(float x1, float x2, float y1, float y2) const {
  return IntegralOf(*this, x1, x2, y1, y2, Counted::Absolute);
}

PrnType& PrnType::IntegrateY(float y1, float y2) const {
  if (!OwnsArrays(allocType) || !Is3D()) return *new PrnType;
  const Sorted grid(*this);
  const AxisValues y = YValues(*grid);
  const Band band = BandOf(y, y1, y2);
  if (band.empty) return *new PrnType;
  auto profile = NewProfile(*this, Kept(*grid, kX));
  for (int i = 0; i < nX; ++i) {
    const float* row = grid->zArray[i];
    float sum = 0;
    for (auto j = static_cast<std::size_t>(band.first); j < static_cast<std::size_t>(band.last); ++j)
      sum = Plus(sum, Trapezoid(y[j + 1] - y[j], row[j], row[j + 1]));
    profile->yArray[i] = sum;
  }
  return Finish(std::move(profile), band);
}

PrnType& PrnType::IntegrateX(float x1, float x2) const {
  if (!OwnsArrays(allocType) || !Is3D()) return *new PrnType;
  const Sorted grid(*this);
  const AxisValues x = XValues(*grid);
  const Band band = BandOf(x, x1, x2);
  if (band.empty) return *new PrnType;
  auto profile = NewProfile(*this, Kept(*grid, kY));
  float* sums = profile->yArray;
  std::fill_n(sums, nY, 0.0f);
  for (auto i = static_cast<std::size_t>(band.first); i < static_cast<std::size_t>(band.last); ++i)
    for (int j = 0; j < nY; ++j)
      sums[j] = Plus(sums[j], Trapezoid(x[i + 1] - x[i], grid->zArray[i][j], grid->zArray[i + 1][j]));
  return Finish(std::move(profile), band);
}

// The first value is not an area: it is where the integral starts, so that a curve that begins in the middle of a
// signal does not begin at 0.
PrnType& PrnType::RunningIntegral() const {
  if (!OwnsArrays(allocType) || Is3D()) return *new PrnType;
  const AxisValues x = SampledX(*this);
  auto result = NewResult(*this, allocType, Kept(*this, kX).count);
  result->CopyHeader(*this);
  SetAxis(*result, kX, Kept(*this, kX));
  result->xStep = xStep;
  float sum = 0;
  for (std::size_t k = 0; k < x.size(); ++k) {
    sum = k == 0 ? yArray[0] : Plus(sum, Trapezoid(x[k] - x[k - 1], yArray[k - 1], yArray[k]));
    result->yArray[k] = sum;
  }
  result->MinMax();
  return *result.release();
}
