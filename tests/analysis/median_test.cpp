#include "support/records.h"

using namespace kem::test;

namespace {

bool Before(float a, float b) {
  if (std::isnan(a) || std::isnan(b)) return !std::isnan(a);
  return a < b || (a == b && std::signbit(a) && !std::signbit(b));
}

// The median of values in the order in which they are collected, `above` places above the middle.
float ByRule(Floats span, std::size_t above) {
  if (span.size() == 1) return span[0];
  std::stable_sort(span.begin(), span.end() - 1, Before);
  return span[(span.size() - 1) / 2 + above];
}

Floats ByRule(const float* const* rows, int nX, int nY, int hX, int hY, std::size_t above) {
  Floats medians, span;
  for (int i = 0; i < nX; ++i)
    for (int j = 0; j < nY; ++j) {
      span.clear();
      for (int b = std::max(0, j - hY); b <= std::min(nY - 1, j + hY); ++b)
        for (int a = std::max(0, i - hX); a <= std::min(nX - 1, i + hX); ++a) span.push_back(rows[a][b]);
      medians.push_back(ByRule(span, above));
    }
  return medians;
}

int Half(int w) {
  if (w < 1) w = 1;
  if (w % 2 == 0) ++w;
  return (w - 1) / 2;
}

// Ties everywhere, or the values that are hard to put in order, or neither.
PrnType Spoilt(Rng& rng, int type, int nX, int nY) {
  constexpr float kInf = std::numeric_limits<float>::infinity();
  const float hard[] = {0.0f, -0.0f, kInf, -kInf, std::nanf(""), -std::nanf(""), 1e-45f, -1e-45f, 3e38f};
  PrnType r = RandomRecord(rng, type, nX, nY);
  const auto kind = rng() % 4;
  const auto spoil = [&](float* values) {
    for (int k = 0; k < r.nY; ++k) {
      if (kind == 1) values[k] = std::round(values[k] / 3);
      if (kind == 2 || (kind == 3 && rng() % 8 == 0)) values[k] = hard[rng() % std::size(hard)];
    }
  };
  if (!r.Is3D()) spoil(r.yArray);
  for (int i = 0; r.Is3D() && i < r.nX; ++i) spoil(r.zArray[i]);
  return r;
}

void CheckMedian(const PrnType& r, int w) {
  CAPTURE(kSeed);
  CAPTURE(r.nX);
  CAPTURE(r.nY);
  CAPTURE(w);
  const int half = Half(w);
  const auto result = Take(r.Is3D() ? r.Median3D(w) : r.Median2D(w));
  CHECK_SAME(ValuesOf(*result),
             r.Is3D() ? ByRule(r.zArray, r.nX, r.nY, half, half, 1) : ByRule(&r.yArray, 1, r.nY, 0, half, 0));
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
  for (const int w : {3, 5, 9, 15, 16, 51, 501, 9999, std::numeric_limits<int>::max()})
    CheckMedian(Spoilt(rng, AllocXY, w < 500 ? 5000 : 3000, 0), w);
  for (const int w : {2, 3, 4, 5, 6, 9, 21}) CheckMedian(Spoilt(rng, AllocZ, 75, 150), w);
  CheckMedian(Spoilt(rng, AllocZ, 30, 40), std::numeric_limits<int>::max() - 1);
  PrnType ramp(AllocY, 6000);  // the median moves as far as it can
  for (int k = 0; k < ramp.nY; ++k) ramp.yArray[k] = static_cast<float>((k / 40 % 2 == 0 ? k : -k) % 1500);
  CheckMedian(ramp, 33);
}

TEST_CASE("median: the last value of a span stays out of the sort") {
  CHECK_SAME(ValuesOf(*Take(Curve(0, 1, {1, 5, 2}).Median2D(3))), (Floats{1, 5, 5}));
  PrnType grid(AllocZ, 3, 3);
  for (int k = 0; k < 9; ++k) grid.zArray[k % 3][k / 3] = static_cast<float>(k == 8 ? -1 : k);
  CHECK_BITS(Take(grid.Median3D(3))->zArray[1][1], 5);
}

TEST_CASE("median: shape, axes and titles are those of the source") {
  ForRandomRecords(AllocY, [](const PrnType& source, Rng&) {
    PrnType r(source);
    std::snprintf(r.xLabel, sizeof r.xLabel, "delay");
    r.zMax = 77;  // ranges are carried over, not found anew
    const auto result = Take(r.Is3D() ? r.Median3D(3) : r.Median2D(3));
    CHECK(!*Take(r.Is3D() ? r.Median2D(3) : r.Median3D(3)));
    CHECK(result->active == 1);
    CHECK(result->fileType == r.fileType);
    CHECK(std::string(result->fileName) == r.fileName);
    CHECK(std::string(result->xLabel) == "delay");
    if (r.Is3D()) CHECK_BITS(result->zMax, 77);
    CHECK_SAME(XOf(*result), XOf(r));
    if (r.Is3D()) CHECK_SAME(YOf(*result), YOf(r));
    CHECK_SAME((Floats{result->xStart, result->xEnd, result->xStep, result->yStart, result->yEnd}),
               (Floats{r.xStart, r.xEnd, r.xStep, r.yStart, r.yEnd}));
  });
  for (const int type : {0, 1, 8}) {
    PrnType r;
    r.allocType = type;
    CHECK(!*Take(r.Median2D(3)));
    CHECK(!*Take(r.Median3D(3)));
    r.allocType = AllocNone;
  }
  PrnType uneven = Curve({1, 2, 3}, {1, 5, 2});
  uneven.nX = 2;
  CHECK(Take(uneven.Median2D(3))->nY == 2);
  CHECK(Take(PrnType(AllocZ, 0, 5).Median3D(3))->nY == 5);
}
