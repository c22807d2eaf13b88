#include "support/records.h"

using namespace kem::test;

TEST_CASE("statistics: noise of a grid between its columns, of a curve between its abscissae") {
  CHECK_BITS(Curve({1, 4, 2}, {9, 9, 9}).NoiseLevel(), 5.0f / 3);
  CHECK_BITS(Curve(7, -0.5f, {9, 1, 3, 4}).NoiseLevel(), 1.5f / 4);
  CHECK((Curve({}, {}).NoiseLevel() == 0 && PrnType(AllocZ, 0, 3).NoiseLevel() == 0));
  PrnType grid(AllocZ, 2, 3);
  Put({1, 3, 2}, grid.zArray[0]);
  Put({0, 0, 4}, grid.zArray[1]);
  CHECK_BITS(grid.NoiseLevel(), 7.0f / 3 / 2);
}

TEST_CASE("statistics: a histogram counts what lies in the range, the largest in the last bin") {
  // The counts, then the range; `later` replaces values without a new MinMax.
  const auto count = [](PrnType r, int bins, const Floats& later) {
    Put(later, Rows(r)[0]);
    Floats counts(static_cast<std::size_t>(bins) + 2, -9);
    r.Histogram(bins, counts.data(), counts[bins], counts[bins + 1]);
    return counts;
  };
  CHECK_SAME(count(Curve(0, 1, {3, 3}), 3, {}), Floats({2, 0, 0, 3, 3}));
  CHECK_SAME(count(Curve(0, 1, {0, 0, 0, 2}), 2, {-1, NAN, 9, 0}), Floats({1, 1, 0, 2}));
  CHECK_SAME(count(Curve(0, 1, {0, 1}), 1, {}), Floats({-9, -9, -9}));
  ForRandomRecords(AllocY, [&](const PrnType& r, Rng& rng) {
    const int bins = 2 + static_cast<int>(rng() % 9);
    const Floats values = ValuesOf(r);
    const auto [low, high] = std::minmax_element(values.begin(), values.end());
    Floats rule(static_cast<std::size_t>(bins));
    for (const float v : values) {
      const float place = v == *low ? 0 : (v - *low) / (*high - *low) * static_cast<float>(bins);
      ++rule[std::min(static_cast<int>(place), bins - 1)];
    }
    rule.insert(rule.end(), {*low, *high});
    CHECK_SAME(count(r, bins, {}), rule);
  });
}

TEST_CASE("statistics: extremes between bounds, the first of equal ones") {
  const auto find = [](const PrnType& r, float x1, float x2, float y1, float y2) {
    Floats f(6, -9);
    if (r.Is3D())
      r.MinMaxZ(x1, x2, y1, y2, f[0], f[1], f[2], f[3], f[4], f[5]);
    else
      r.MinMaxY(x1, x2, f[0], f[1], f[2], f[4]);
    return f;
  };
  for (const PrnType& curve :
       {Curve(10, 1, {-50, 3, 1, 3, 1, 50}), Curve({15, 11, 12, 13, 14, 10}, {50, 3, 1, 3, 1, -50})}) {
    CHECK_SAME(find(curve, 14, 11, 0, 0), Floats({1, 3, 12, -9, 11, -9}));
    CHECK_SAME(find(curve, 20, 30, 0, 0), Floats({0, 0, -9, -9, -9, -9}));
  }
  for (int type = AllocZ; type <= AllocXYZ; ++type) {
    PrnType grid(static_cast<AllocType>(type), 4, 5);
    grid.xStart = 10, grid.yStart = -2, grid.yStep = 0.5f;
    if (grid.HasX()) Put({10, 11, 12, 13}, grid.xArray);
    if (grid.HasY()) Put({-2, -1.5f, -1, -0.5f, 0}, grid.yArray);
    for (int i = 0; i < 4; ++i)
      for (int j = 0; j < 5; ++j) grid.zArray[i][j] = static_cast<float>((i + j) % 3 + 100 * (j == 0 || i == 3));
    CHECK_SAME(find(grid, 10, 12, -1.5f, 0), Floats({0, 2, 10, -0.5f, 10, -1}));
    CHECK_SAME(find(grid, 12, 10, -1.5f, 0), Floats({0, 0, -9, -9, -9, -9}));
  }
}
