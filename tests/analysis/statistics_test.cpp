#include "support/records.h"

using namespace kem::test;

TEST_CASE("statistics: noise of a grid between its columns, of a curve between its abscissae") {
  CHECK_BITS(Curve({1, 4, 2}, {9, 9, 9}).NoiseLevel(), 5.0f / 3);
  CHECK_BITS(Curve(7, -0.5f, {9, 1, 3, 4}).NoiseLevel(), 1.5f / 4);
  CHECK_BITS(Curve({}, {}).NoiseLevel(), 0);
  CHECK_BITS(PrnType().NoiseLevel(), 0);
  ForRandomRecords(AllocZ, [](const PrnType& r, Rng&) {
    float sum = 0;
    for (int i = 0; i < r.nX; ++i)
      for (int j = 1; j < r.nY; ++j) sum += std::fabs(r.zArray[i][j - 1] - r.zArray[i][j]);
    CHECK_BITS(r.NoiseLevel(), sum / static_cast<float>(r.nY) / static_cast<float>(r.nX));
  });
}

TEST_CASE("statistics: a histogram counts what lies in the range, the largest in the last bin") {
  constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
  const auto count = [](PrnType r, int bins, const Floats& later) {
    std::ranges::copy(later, r.yArray);
    Floats counts(static_cast<std::size_t>(bins), -1);
    float lo = -9, hi = -9;
    r.Histogram(bins, counts.data(), lo, hi);
    counts.insert(counts.end(), {lo, hi});
    return counts;
  };
  CHECK_SAME(count(Curve(0, 1, {0, 0.5f, 1}), 2, {}), Floats({1, 2, 0, 1}));
  CHECK_SAME(count(Curve(0, 1, {3, 3}), 3, {}), Floats({2, 0, 0, 3, 3}));
  CHECK_SAME(count(Curve(0, 1, {0, 0, 0, 2}), 2, {-1, kNaN, 9, 0}), Floats({1, 1, 0, 2}));
  CHECK_SAME(count(Curve(0, 1, {0, 1}), 1, {}), Floats({-1, -9, -9}));
  ForRandomRecords(AllocZ, [](const PrnType& r, Rng&) {
    Floats counts(7), rule(7);
    float lo = 0, hi = 0;
    r.Histogram(7, counts.data(), lo, hi);
    for (const float v : ValuesOf(r))
      rule[lo == hi ? 0 : std::min(6, static_cast<int>(std::floor((v - r.zMin) / (r.zMax - r.zMin) * 7)))] += 1;
    CHECK_SAME(counts, rule);
  });
}

TEST_CASE("statistics: extremes between bounds, the first of equal ones") {
  const auto y = [](const PrnType& r, float x1, float x2) {
    Floats f{-9, -9, -9, -9};
    r.MinMaxY(x1, x2, f[0], f[1], f[2], f[3]);
    return f;
  };
  const PrnType curve = Curve(10, 1, {-50, 3, 1, 3, 1, 50});
  CHECK_SAME(y(curve, 14, 11), Floats({1, 3, 12, 11}));
  CHECK_SAME(y(curve, 20, 30), Floats({0, 0, -9, -9}));
  CHECK_SAME(y(PrnType(AllocZ, 2, 2), 0, 1), Floats({0, 0, -9, -9}));
  const auto z = [](const PrnType& r, float x1, float x2, float y1, float y2) {
    Floats f{-9, -9, -9, -9, -9, -9};
    r.MinMaxZ(x1, x2, y1, y2, f[0], f[1], f[2], f[3], f[4], f[5]);
    return f;
  };
  CHECK_SAME(z(curve, 0, 99, 0, 99), Floats({0, 0, -9, -9, -9, -9}));
  ForRandomRecords(AllocZ, [&z](PrnType& r, Rng&) {
    for (int i = 0; i < r.nX; ++i)
      for (int j = 0; j < r.nY; ++j) r.zArray[i][j] = std::round(r.zArray[i][j]);
    const Floats found = z(r, -10, 15, -5, 18);
    Floats rule{0, 0, -9, -9, -9, -9};
    for (int i = 0; i < r.nX; ++i)
      for (int j = 0; j < r.nY; ++j) {
        const float x = r.HasX() ? r.xArray[i] : static_cast<float>(i) * r.xStep + r.xStart;
        const float v = r.HasY() ? r.yArray[j] : static_cast<float>(j) * r.yStep + r.yStart, at = r.zArray[i][j];
        if (!(-10 <= x && x <= 15 && -5 <= v && v <= 18)) continue;
        const bool first = rule[2] == -9;
        if (first || at < rule[0]) rule[0] = at, rule[2] = x, rule[3] = v;
        if (first || at > rule[1]) rule[1] = at, rule[4] = x, rule[5] = v;
      }
    CHECK_SAME(found, rule);
    CHECK_SAME(z(r, 15, -10, -5, 18), Floats({0, 0, -9, -9, -9, -9}));
  });
}
