#include <numeric>

#include "support/records.h"

using namespace kem::test;

namespace {

constexpr int kWidths[] = {5, 7, 9, 13, 17, 21};

// The value smoothed at v[0], with the weights worked out from the least-squares parabola.
float ByRule(const float* v, int w) {
  const int m = w / 2;
  int divisor = 0, sum = 0;
  const auto weight = [m](int i) { return 3 * (3 * m * m + 3 * m - 1) - 15 * i * i; };
  for (int i = 0; i <= m; ++i) divisor = std::gcd(divisor, weight(i));
  for (int i = -m; i <= m; ++i) sum += weight(i) / divisor;
  double value = static_cast<double>(weight(0) / divisor) * v[0];
  for (int i = 1; i <= m; ++i) {
    const float pair = v[-i] + v[i];
    value += static_cast<double>(weight(i) / divisor) * pair;
  }
  return static_cast<float>(value / sum);
}

Floats Middle(const Floats& axis, int margin) { return {axis.begin() + margin, axis.end() - margin}; }

}  // namespace

TEST_CASE("smooth: values, axes and titles along X, and along Y as along X of the transposed grid") {
  CAPTURE(kSeed);
  Rng rng(kSeed);
  for (int round = 0; round < 120; ++round) {
    const int type = AllocY + round % 6, w = kWidths[rng() % std::size(kWidths)], margin = w / 2;
    const int n = w + 1 + static_cast<int>(rng() % 30);
    PrnType r = RandomRecord(rng, type, n, round % 5 == 0 ? 600 : 1 + static_cast<int>(rng() % 40));
    std::snprintf(r.xLabel, sizeof r.xLabel, "delay");
    PrnType sorted(r);
    sorted.SortAxes();
    const auto result = Take(r.XSmooth(w));
    CAPTURE(type);
    CAPTURE(w);
    REQUIRE(result->allocType == type);
    REQUIRE(result->nX == n - w + 1);
    REQUIRE(result->nY == (r.Is3D() ? r.nY : n - w + 1));
    CHECK(result->active == 1);
    CHECK(std::string(result->fileName) == r.fileName);
    CHECK(std::string(result->xLabel) == "delay");
    for (int j = 0; j < (r.Is3D() ? r.nY : 1); ++j) {
      Floats line(sorted.yArray, sorted.yArray + (r.Is3D() ? 0 : n));
      for (int i = 0; r.Is3D() && i < n; ++i) line.push_back(sorted.zArray[i][j]);
      for (int k = 0; k < result->nX; ++k)
        CHECK_BITS(r.Is3D() ? result->zArray[k][j] : result->yArray[k], ByRule(&line[k + margin], w));
    }
    if (r.HasX()) {
      CHECK_SAME(XOf(*result), Middle(XOf(sorted), margin));
    } else {
      const float cut = static_cast<float>(margin) * sorted.xStep;
      CHECK_BITS(result->xStart, sorted.xStart + cut);
      CHECK_BITS(result->xEnd, sorted.xEnd - cut);
      CHECK_BITS(result->xStep, sorted.xStep);
    }
    PrnType ranged(*result);
    ranged.MinMax();
    CHECK(SameData(*result, ranged));
    if (!r.Is3D()) continue;
    CHECK_SAME(YOf(*result), YOf(sorted));
    CHECK(SameData(*result, Swapped(*Take(Swapped(r).YSmooth(w)))));
  }
}

TEST_CASE("smooth: a parabola stays what it is") {
  for (const int w : kWidths) {
    Floats y;
    for (int k = 0; k < 40; ++k) y.push_back(static_cast<float>(k * k - 30 * k + 7));
    CHECK_SAME(ValuesOf(*Take(Curve(0, 1, y).XSmooth(w))), Middle(y, w / 2));
  }
}

TEST_CASE("smooth: what cannot be smoothed gives the empty record") {
  for (const int w : {-5, 0, 1, 3, 6, 11, 15, 23}) {
    CHECK(!*Take(Curve(0, 1, Floats(40)).XSmooth(w)));
    CHECK(!*Take(PrnType(AllocZ, 40, 40).YSmooth(w)));
  }
  CHECK(!*Take(Curve(0, 1, Floats(5)).XSmooth(5)));
  CHECK(Take(Curve(0, 1, Floats(6)).XSmooth(5))->nY == 2);
  CHECK(!*Take(PrnType(AllocZ, 5, 40).XSmooth(5)));
  CHECK(!*Take(PrnType(AllocZ, 40, 5).YSmooth(5)));
  CHECK(!*Take(Curve(0, 1, Floats(40)).YSmooth(5)));
  CHECK(!*Take(PrnType().XSmooth(5)));
  PrnType uneven = Curve(0, 1, Floats(8));
  uneven.nX = 40;
  CHECK(Take(uneven.XSmooth(5))->nY == 4);
}
