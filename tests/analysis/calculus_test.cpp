#include "support/records.h"

using namespace kem::test;

namespace {

// The derivative at the eighth of 15 samples.
float Derivative(const float* v) {
  const std::pair<int, float> weights[] = {{2, 1.3843f}, {1, 0.7506f}, {3, 1.7842f}, {4, 1.8334f},
                                           {5, 1.415f},  {6, 0.4121f}, {7, -1.2922f}};
  float sum = 0;
  for (const auto& [m, weight] : weights) sum += (v[-m] - v[m]) * weight;
  return sum / -33.4152f;
}

bool Near(float a, float b) { return (a == 0 && b == 0) || (a + b != 0 && std::fabs((a - b) / (a + b)) < 1e-5f); }

float Half(float width, float a, float b) { return static_cast<float>(width * (a + b) * 0.5); }

// The pieces of an integral between ordered bounds.
Floats Pieces(const PrnType& r, float x1, float x2, float y1, float y2) {
  const PrnType s = Sorted(r);
  const Floats x = XOf(s), y = YOf(s);
  Floats pieces;
  if (!r.Is3D()) {
    const int i = Band(x, x1, x2).first;
    if (i == r.nX) return {};
    if (!Near(x[i], x1)) pieces.push_back(Half(x[i] - x1, r.At(x1, 0), y[i]));
    int k = i + 1;
    for (; k < r.nX && x[k] <= x2; ++k) pieces.push_back(Half(x[k] - x[k - 1], y[k - 1], y[k]));
    if (k > 1 && !Near(x[k - 1], x2)) pieces.push_back(Half(x2 - x[k - 1], r.At(x2, 0), y[k - 1]));
    return pieces;
  }
  const auto weigh = [](const Floats& axis, float low, float high) {
    const int first = std::min(Band(axis, low, high).first, static_cast<int>(axis.size()) - 1);
    const int last = std::max(Band(axis, low, high).second, 0);
    Floats w(axis.size());
    for (int k = first; k <= last; ++k)
      w[k] = k == last ? high - axis[k] : k == first ? axis[k] - low : (axis[k + 1] - axis[k - 1]) * 0.5f;
    return w;
  };
  const Floats w = weigh(x, x1, x2), v = weigh(y, y1, y2);
  for (int i = 0; i < r.nX; ++i)
    for (int j = 0; j < r.nY; ++j) pieces.push_back(w[i] * v[j] * s.zArray[i][j]);
  return pieces;
}

}  // namespace

TEST_CASE("calculus: derivatives follow the filter, sample by sample, on every shape") {
  ForRandomRecords(AllocY, [](const PrnType& r, Rng&) {
    const auto d = Take(r.XDiff());
    if (r.Is3D()) CHECK(SameData(Swapped(*Take(Swapped(r).YDiff())), *d));
    if (r.nX < 16) return CheckEmpty(*d);
    CheckResult(*d, Filtered(r, 7, Derivative), r, r.fileType);
  });
  Floats line;
  for (int k = 0; k < 20; ++k) line.push_back(static_cast<float>(3 * k + 5));
  for (const float slope : ValuesOf(*Take(Curve(0, 1, line).XDiff()))) CHECK(slope == doctest::Approx(3));
}

TEST_CASE("calculus: integrals add up the pieces of their rule, on every shape") {
  ForRandomRecords(AllocY, [](const PrnType& r, Rng& rng) {
    const Floats x = XOf(r), y = YOf(r);
    const float x1 = Bound(rng, x), x2 = Bound(rng, x), y1 = Bound(rng, y), y2 = Bound(rng, y);
    double sum = 0, absolute = 0;
    if (x1 != x2 && (!r.Is3D() || y1 != y2))
      for (const float piece : Pieces(r, std::min(x1, x2), std::max(x1, x2), std::min(y1, y2), std::max(y1, y2)))
        sum += piece, absolute += std::fabs(piece);
    CHECK_BITS(r.Integral(x1, x2, y1, y2), static_cast<float>(sum));
    CHECK_BITS(r.AbsIntegral(x1, x2, y1, y2), static_cast<float>(absolute));
  });
  CHECK_BITS(Curve(0, 1, {2, 2, 2, 2}).Integral(2.5f, 0.5f, 0, 0), 4);
  CHECK_BITS(Curve(0, 1, {-1, -1, 1, 1}).Integral(0, 3, 0, 0), 0);
  CHECK_BITS(Curve(0, 1, {-1, -1, 1, 1}).AbsIntegral(0, 3, 0, 0), 2);
  CHECK(std::isinf(Curve({-1, 0}, {1, INFINITY}).Integral(-1, 0, 0, 0)));
  CHECK(std::isnan(Curve({-1, 0}, {1, INFINITY}).AbsIntegral(-1, 0, 0, 0)));  // its piece from 0 to 0
  CHECK(Curve(0, 1, {0, 1}).Integral(0.2f, 0.4f, 0, 0) == doctest::Approx(0.06));
}

TEST_CASE("calculus: a grid integrated across a band, a curve integrated up to each point") {
  ForRandomRecords(AllocY, [](const PrnType& r, Rng& rng) {
    const PrnType s = Sorted(r);
    const Floats ys = YOf(s), x = XOf(r);
    const float a = Bound(rng, ys), b = Bound(rng, ys);
    const auto [first, last] = Band(ys, a, b);
    Floats values;
    for (int i = 0; i < r.nX; ++i) {
      float sum = r.Is3D() ? 0 : r.yArray[0];
      for (int k = 1; !r.Is3D() && k <= i; ++k) sum += Half(x[k] - x[k - 1], r.yArray[k - 1], r.yArray[k]);
      for (int j = first; r.Is3D() && j < last; ++j)
        sum += Half(ys[j + 1] - ys[j], s.zArray[i][j], s.zArray[i][j + 1]);
      values.push_back(r.Is3D() ? sum / static_cast<float>(last - first + 1) : sum);
    }
    if (!r.Is3D()) return CheckResult(*Take(r.RunningIntegral()), CurveOver(r, values), r, r.fileType);
    const auto profile = Take(r.IntegrateY(a, b));
    CHECK(SameData(*Take(Swapped(r).IntegrateX(a, b)), *profile));
    if (last < first) return CheckEmpty(*profile);
    CheckResult(*profile, CurveOver(s, values), r, FileCvt);
  });
}
