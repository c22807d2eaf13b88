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

}  // namespace

TEST_CASE("smooth: every shape by the rule along X, and along Y as along X of the transposed grid") {
  CAPTURE(kSeed);
  Rng rng(kSeed);
  for (int round = 0; round < 120; ++round) {
    const int type = AllocY + round % 6, w = kWidths[rng() % std::size(kWidths)];
    // 1,024 values are smoothed side by side; some records have more of them in a line, others more lines.
    const int n = w + 1 + static_cast<int>(rng() % 30) + (round % 30 < 6 ? 1024 : 0);
    const int lines = 1 + static_cast<int>(rng() % 40) + (round % 30 / 6 == 1 ? 1024 : 0);
    const PrnType r = RandomRecord(rng, type, n, lines);
    INFO(n, " samples, width ", w, ", type ", type);
    const auto result = Take(r.XSmooth(w));
    CheckResult(*result, Filtered(r, w / 2, [w](const float* v) { return ByRule(v, w); }), r, r.fileType);
    if (r.Is3D()) CHECK(SameData(*result, Swapped(*Take(Swapped(r).YSmooth(w)))));
  }
}

TEST_CASE("smooth: a parabola stays what it is") {
  for (const int w : kWidths) {
    Floats y;
    for (int k = 0; k < 40; ++k) y.push_back(static_cast<float>(k * k - 30 * k + 7));
    CHECK_SAME(ValuesOf(*Take(Curve(0, 1, y).XSmooth(w))), Floats(y.begin() + w / 2, y.end() - w / 2));
  }
}

TEST_CASE("smooth: what cannot be smoothed gives the empty record") {
  const PrnType curve = Curve(0, 1, Floats(40)), grid(AllocZ, 40, 40);
  for (const int w : {-5, 0, 1, 3, 6, 11, 15, 23}) CHECK((!*Take(curve.XSmooth(w)) && !*Take(grid.YSmooth(w))));
  CHECK((!*Take(PrnType(AllocZ, 5, 40).XSmooth(5)) && !*Take(PrnType(AllocZ, 40, 5).YSmooth(5))));
  CHECK((!*Take(Curve(0, 1, Floats(5)).XSmooth(5)) && !*Take(curve.YSmooth(5)) && !*Take(PrnType().XSmooth(5))));
  PrnType uneven = Curve(0, 1, Floats(8));
  uneven.nX = 40;
  CHECK((Take(Curve(0, 1, Floats(6)).XSmooth(5))->nY == 2 && Take(uneven.XSmooth(5))->nY == 4));
}
