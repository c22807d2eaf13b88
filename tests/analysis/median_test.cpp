#include "support/records.h"

using namespace kem::test;

namespace {

bool Before(float a, float b) {
  if (std::isnan(a) || std::isnan(b)) return !std::isnan(a);
  return a < b || (a == b && std::signbit(a) && !std::signbit(b));
}

// The record with the median of each span, collected column by column, for its values. Ranges are carried over, not
// found anew.
PrnType ByRule(const PrnType& r, int w) {
  const int half = std::max(w, 0) / 2, halfX = r.Is3D() ? half : 0;  // an even width counts as the next odd one
  const auto from = Rows(r);
  const int rows = static_cast<int>(from.size());
  PrnType rule(r);
  Floats span;
  for (int i = 0; i < rows; ++i)
    for (int j = 0; j < r.nY; ++j) {
      span.clear();
      for (int b = std::max(0, j - half); b <= std::min(r.nY - 1, j + half); ++b)
        for (int a = std::max(0, i - halfX); a <= std::min(rows - 1, i + halfX); ++a) span.push_back(from[a][b]);
      const std::size_t place = span.size() == 1 ? 0 : (span.size() - 1) / 2 + (r.Is3D() ? 1 : 0);
      std::nth_element(span.begin(), span.begin() + static_cast<std::ptrdiff_t>(place), span.end() - 1, Before);
      Rows(rule)[i][j] = span[place];
    }
  return rule;
}

// Ties everywhere, or the values that are hard to put in order, or neither.
PrnType Spoilt(Rng& rng, int type, int nX, int nY) {
  constexpr float kInf = std::numeric_limits<float>::infinity();
  const float hard[] = {0.0f, -0.0f, kInf, -kInf, std::nanf(""), -std::nanf(""), 1e-45f, -1e-45f, 3e38f};
  PrnType r = RandomRecord(rng, type, nX, nY);
  const auto kind = rng() % 4;
  for (float* values : Rows(r))
    for (int k = 0; k < r.nY; ++k) {
      if (kind == 1) values[k] = std::round(values[k] / 3);
      if (kind == 2 || (kind == 3 && rng() % 8 == 0)) values[k] = hard[rng() % std::size(hard)];
    }
  return r;
}

void CheckMedian(const PrnType& r, int w) {
  INFO(kSeed, ": ", r.nX, " x ", r.nY, ", width ", w);
  const auto result = Take(r.Is3D() ? r.Median3D(w) : r.Median2D(w));
  CheckResult(*result, ByRule(r, w), r, r.fileType);
  if (r.Is3D()) CHECK_BITS(result->zMax, r.zMax);
}

}  // namespace

TEST_CASE("median: all small widths and shapes agree with a sort per value") {
  Rng rng(kSeed);
  for (int n = 1; n <= 40; ++n)
    for (int w = -1; w <= 2 * n + 3; ++w) CheckMedian(Spoilt(rng, AllocY, n, n), w);
  for (const auto& [nX, nY] : std::vector<std::pair<int, int>>{
           {1, 1}, {1, 2}, {2, 1}, {2, 2}, {1, 3}, {3, 1}, {1, 9}, {9, 1}, {3, 3}, {4, 7}, {12, 5}, {10, 10}})
    for (int w = -2; w <= 2 * std::max(nX, nY) + 2; ++w)
      for (int round = 0; round < 4; ++round) CheckMedian(Spoilt(rng, AllocZ, nX, nY), w);
}

TEST_CASE("median: data of many tiles, and spans wider than the data") {
  Rng rng(kSeed);
  for (int w = 3; w < 40; w += 2) CheckMedian(Spoilt(rng, AllocXY, 400 + 10 * w, 0), w);
  for (const int w : {3, 17, 51, 300, 501, 2101, 9999, std::numeric_limits<int>::max()})
    CheckMedian(Spoilt(rng, AllocXY, w < 5000 ? 5000 : 700, 0), w);
  for (const int w : {2, 3, 4, 5, 6, 7, 9, 21}) CheckMedian(Spoilt(rng, AllocZ, 75, 150), w);
  CheckMedian(Spoilt(rng, AllocZ, 30, 40), std::numeric_limits<int>::max() - 1);
  PrnType ramp(AllocY, 6000);  // the median moves as far as it can
  for (int k = 0; k < ramp.nY; ++k) ramp.yArray[k] = static_cast<float>((k / 40 % 2 == 0 ? k : -k) % 1500);
  PrnType close(AllocY, 6000);  // all but one next to each other
  for (int k = 0; k < close.nY; ++k)
    close.yArray[k] = k == 0 ? -3e38f : 1 + static_cast<float>(k * 79 % 997) * 2e-7f;
  for (const int w : {33, 51, 301}) {
    CheckMedian(ramp, w);
    CheckMedian(close, w);
  }
}

TEST_CASE("median: two levels, whose ranks lie far apart") {
  constexpr int kCount = 60000, kHalf = 20000;
  PrnType levels(AllocY, kCount);
  std::vector<int> ones(kCount + 1);  // before each value
  for (int k = 0; k < kCount; ++k) {
    levels.yArray[k] = static_cast<float>(k / 2 % 2);
    ones[k + 1] = ones[k] + k / 2 % 2;
  }
  Floats rule;
  for (int k = 0; k < kCount; ++k) {
    const int from = std::max(0, k - kHalf), last = std::min(kCount - 1, k + kHalf);
    const int zeros = last - from - (ones[last] - ones[from]);
    rule.push_back((last - from) / 2 < zeros ? 0.0f : 1.0f);
  }
  CHECK_SAME(ValuesOf(*Take(levels.Median2D(2 * kHalf + 1))), rule);
}

TEST_CASE("median: the last value of a span stays out of the sort") {
  CHECK_SAME(ValuesOf(*Take(Curve(0, 1, {1, 5, 2}).Median2D(3))), (Floats{1, 5, 5}));
  PrnType grid(AllocZ, 3, 3);
  for (int k = 0; k < 9; ++k) grid.zArray[k % 3][k / 3] = static_cast<float>(k == 8 ? -1 : k);
  CHECK_BITS(Take(grid.Median3D(3))->zArray[1][1], 5);
}

TEST_CASE("median: every shape, and what has none") {
  ForRandomRecords(AllocY, [](const PrnType& r, Rng&) {
    CheckMedian(r, 3);
    CheckEmpty(*Take(r.Is3D() ? r.Median2D(3) : r.Median3D(3)));
  });
  for (const int type : {0, 1, 8}) {
    PrnType r;
    r.allocType = type;
    CHECK((!*Take(r.Median2D(3)) && !*Take(r.Median3D(3))));
    r.allocType = AllocNone;
  }
  PrnType uneven = Curve({1, 2, 3}, {1, 5, 2});
  uneven.nX = 2;
  CHECK((Take(uneven.Median2D(3))->nY == 2 && Take(PrnType(AllocZ, 0, 5).Median3D(3))->nY == 5));
}
