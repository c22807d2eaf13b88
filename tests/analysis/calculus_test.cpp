#include "support/records.h"

using namespace kem::test;

namespace {

// The derivative at the eighth of 15 samples.
float Derivative(const float* v) {
  const float weights[] = {1.7842f, 1.8334f, 1.415f, 0.4121f};
  float sum = (v[5] - v[9]) * 1.3843f + (v[6] - v[8]) * 0.7506f;
  for (int m = 3; m <= 6; ++m) sum += (v[7 - m] - v[7 + m]) * weights[m - 3];
  return (sum - (v[0] - v[14]) * 1.2922f) / -33.4152f;
}

bool Near(float a, float b) {
  if (a == 0 && b == 0) return true;
  return a + b != 0 && std::fabs((a - b) / (a + b)) < 1e-5f;
}

float Half(float width, float a, float b) { return static_cast<float>(width * (a + b) * 0.5); }

// Integral and AbsIntegral by their rule.
float ByRule(const PrnType& r, float x1, float x2, float y1, float y2, bool absolute) {
  if (x1 == x2 || (r.Is3D() && y1 == y2)) return 0;
  if (x1 > x2) std::swap(x1, x2);
  if (y1 > y2) std::swap(y1, y2);
  PrnType s(r);
  s.SortAxes();
  const Floats x = XOf(s), y = YOf(s);
  const int nX = s.nX, nY = s.nY;
  const auto from = [](const Floats& axis, float low) {
    int k = 0;
    while (k < static_cast<int>(axis.size()) && axis[k] < low) ++k;
    return k;
  };
  float sum = 0;
  const auto add = [&](float piece) { sum += absolute ? std::fabs(piece) : piece; };
  if (!r.Is3D()) {
    const int i = from(x, x1);
    if (i == nX) return 0;
    if (!Near(x[i], x1)) add(Half(x[i] - x1, r.At(x1, 0), y[i]));
    int k = i + 1;
    for (; k < nX && x[k] <= x2; ++k) add(Half(x[k] - x[k - 1], y[k - 1], y[k]));
    const int m = k - 1;
    if (m > 0 && !Near(x[m], x2)) add(Half(x2 - x[m], r.At(x2, 0), y[m]));
    return sum;
  }
  const auto band = [&from](const Floats& axis, float low, float high, Floats& w) {
    const int n = static_cast<int>(axis.size()), first = std::min(from(axis, low), n - 1);
    int last = n - 1;
    while (last > 0 && axis[last] > high) --last;
    w.assign(n, 0);
    for (int k = first + 1; k < last; ++k) w[k] = (axis[k + 1] - axis[k - 1]) * 0.5f;
    w[first] = axis[first] - low;
    w[last] = high - axis[last];
    return std::pair(first, last);
  };
  Floats w, v;
  const auto [i1, i2] = band(x, x1, x2, w);
  const auto [j1, j2] = band(y, y1, y2, v);
  for (int k = i1; k <= i2; ++k)
    for (int j = j1; j <= j2; ++j) add(w[k] * v[j] * s.zArray[k][j]);
  CHECK((i1 <= i2 || sum == 0));
  CHECK(nY == static_cast<int>(y.size()));
  return sum;
}

}  // namespace

TEST_CASE("calculus: derivatives follow the filter, sample by sample, on every shape") {
  ForRandomRecords(AllocY, [](const PrnType& r, Rng&) {
    const auto d = Take(r.XDiff());
    if (r.Is3D()) {
      const auto mirrored = Take(Swapped(r).YDiff());
      CHECK(SameData(Swapped(*mirrored), *d));
    }
    if (r.nX < 16) return CheckEmpty(*d);
    PrnType s(r);
    s.SortAxes();
    REQUIRE(d->nX == r.nX - 14);
    CHECK(d->allocType == r.allocType);
    CHECK(d->active == 1);
    CHECK(std::string(d->fileName) == r.fileName);
    const Floats xs = XOf(s);
    if (r.HasX()) CHECK_SAME(XOf(*d), Floats(xs.begin() + 7, xs.end() - 7));
    if (!r.HasX()) CHECK_BITS(d->xStart, s.xStart + 7 * s.xStep);
    if (!r.HasX()) CHECK_BITS(d->xEnd, s.xEnd - 7 * s.xStep);
    if (r.Is3D()) CHECK_SAME(YOf(*d), YOf(s));
    for (int k = 0; k < d->nX; ++k)
      for (int j = 0; j < (r.Is3D() ? r.nY : 1); ++j) {
        float v[15];
        for (int m = 0; m < 15; ++m) v[m] = r.Is3D() ? s.zArray[k + m][j] : s.yArray[k + m];
        CHECK_BITS(r.Is3D() ? d->zArray[k][j] : d->yArray[k], Derivative(v));
      }
  });
  Floats line(20);
  for (int k = 0; k < 20; ++k) line[k] = static_cast<float>(3 * k + 5);
  const auto d = Take(Curve(0, 1, line).XDiff());
  REQUIRE(d->nY == 6);
  CHECK_BITS(d->xStart, 7);
  CHECK_BITS(d->xEnd, 12);
  for (int k = 0; k < 6; ++k) CHECK(d->yArray[k] == doctest::Approx(3));
}

TEST_CASE("calculus: integrals follow their rule on every shape") {
  ForRandomRecords(AllocY, [](const PrnType& r, Rng& rng) {
    const Floats x = XOf(r), y = YOf(r);
    const float x1 = Bound(rng, x), x2 = Bound(rng, x), y1 = Bound(rng, y), y2 = Bound(rng, y);
    CHECK_BITS(r.Integral(x1, x2, y1, y2), ByRule(r, x1, x2, y1, y2, false));
    CHECK_BITS(r.AbsIntegral(x1, x2, y1, y2), ByRule(r, x1, x2, y1, y2, true));
  });
}

TEST_CASE("calculus: integrals of known curves") {
  struct {
    Floats x, y;
    float x1, x2, integral, absolute;
  } const cases[] = {
      {{0, 1, 2, 3}, {2, 2, 2, 2}, 2.5f, 0.5f, 4, 4}, {{0, 1, 2, 3}, {2, 2, 2, 2}, 1, 3, 4, 4},
      {{0, 1, 2, 3}, {-1, -1, 1, 1}, 0, 3, 0, 2},     {{0, 1}, {0, 1}, 0.2f, 0.4f, 0.06f, 0.9f},
      {{0, 1, 2, 3}, {2, 2, 2, 2}, 1.5f, 1.5f, 0, 0}, {{0, 1}, {1, 1}, 2, 3, 0, 0},
  };
  for (const auto& c : cases) {
    CHECK(Curve(c.x, c.y).Integral(c.x1, c.x2, 0, 0) == doctest::Approx(c.integral));
    CHECK(Curve(c.x, c.y).AbsIntegral(c.x1, c.x2, 0, 0) == doctest::Approx(c.absolute));
  }
}

TEST_CASE("calculus: a grid integrated across a band, a curve integrated up to each point") {
  ForRandomRecords(AllocY, [](const PrnType& r, Rng& rng) {
    const Floats x = XOf(r);
    if (!r.Is3D()) {
      Floats running{r.yArray[0]};
      for (int k = 1; k < r.nY; ++k)
        running.push_back(running[k - 1] + Half(x[k] - x[k - 1], r.yArray[k - 1], r.yArray[k]));
      PrnType expected(r);
      std::ranges::copy(running, expected.yArray);
      expected.MinMax();
      expected.yStep = 1;
      CHECK(SameData(*Take(r.RunningIntegral()), expected));
      return;
    }
    CHECK(!*Take(r.RunningIntegral()));
    PrnType s(r);
    s.SortAxes();
    const Floats ys = YOf(s);
    const float a = Bound(rng, ys), b = Bound(rng, ys);
    int j1 = 0, j2 = r.nY - 1;
    while (j1 < r.nY && ys[j1] < std::min(a, b)) ++j1;
    while (j2 >= 0 && ys[j2] > std::max(a, b)) --j2;
    const auto profile = Take(r.IntegrateY(a, b));
    CHECK(SameData(*Take(Swapped(r).IntegrateX(a, b)), *profile));
    if (j2 < j1) return CheckEmpty(*profile);
    CHECK(profile->fileType == FileCvt);
    CHECK(profile->active == 1);
    CHECK_SAME(XOf(*profile), XOf(s));
    for (int i = 0; i < r.nX; ++i) {
      float sum = 0;
      for (int j = j1; j < j2; ++j) sum += Half(ys[j + 1] - ys[j], s.zArray[i][j], s.zArray[i][j + 1]);
      CHECK_BITS(profile->yArray[i], sum / static_cast<float>(j2 - j1 + 1));
    }
  });
}

TEST_CASE("calculus: no data and no points") {
  for (int type = AllocNone; type <= AllocXYZ; ++type) {
    const PrnType r(static_cast<AllocType>(type), 0, 0);
    CHECK(!*Take(r.XDiff()));
    CHECK(!*Take(r.YDiff()));
    CHECK(r.Integral(0, 1, 0, 1) == 0);
    CHECK(!*Take(r.IntegrateX(0, 1)));
    CHECK(!*Take(r.IntegrateY(0, 1)));
    CHECK(Take(r.RunningIntegral())->nX == 0);
  }
}
