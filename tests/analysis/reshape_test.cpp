#include "support/records.h"

using namespace kem::test;

namespace {

struct Window {
  int first, count;
  bool beyond;
};

Window Search(const Floats& axis, float a, float b) {
  int first = 0, end = static_cast<int>(axis.size());
  while (first < static_cast<int>(axis.size()) && axis[first] < std::min(a, b)) ++first;
  while (end > 0 && axis[end - 1] > std::max(a, b)) --end;
  return {first, end - first, end == 0 || first == static_cast<int>(axis.size())};
}

void CutByRule(const Window& w, bool stored, const float* from, float* to, float& start, float& end, float step) {
  if (stored) std::copy_n(from + w.first, w.count, to);
  const float origin = start;
  start = static_cast<float>(w.first) * step + origin;
  end = static_cast<float>(w.first + w.count - 1) * step + origin;
}

Floats Means(const Floats& values, int width) {
  Floats means;
  for (std::size_t a = 0; a + width <= values.size(); a += width) {
    float sum = 0;
    for (int k = 0; k < width; ++k) sum += values[a + k];
    means.push_back(sum / static_cast<float>(width));
  }
  return means;
}

}  // namespace

TEST_CASE("reshape: a slice sums or averages a band of a grid, bounds included and in either order") {
  ForRandomRecords(AllocZ, [](const PrnType& r, Rng& rng) {
    const Floats ys = YOf(r);
    const int average = static_cast<int>(rng() % 2);
    const float a = Bound(rng, ys), b = Bound(rng, ys);
    Floats slice;
    for (int i = 0; i < r.nX; ++i) {
      float sum = 0, members = 0;
      for (int j = 0; j < r.nY; ++j)
        if (std::min(a, b) <= ys[j] && ys[j] <= std::max(a, b)) sum += r.zArray[i][j], ++members;
      slice.push_back(average && members > 0 ? sum / members : sum);
    }
    CheckResult(*Take(r.XSlice(a, b, average)), CurveOver(r, slice), r, FileCvt);
    CheckResult(*Take(Swapped(r).YSlice(a, b, average)), CurveOver(r, slice), r, FileCvt);
  });
}

TEST_CASE("reshape: cutting keeps the window of the sorted data, with no points between two samples") {
  ForRandomRecords(AllocY, [](const PrnType& r, Rng& rng) {
    PrnType sorted(r);
    sorted.SortAxes();
    const Floats xs = XOf(sorted), ys = YOf(sorted);
    const float x1 = Bound(rng, xs), x2 = Bound(rng, xs), y1 = Bound(rng, ys), y2 = Bound(rng, ys);
    const Window x = Search(xs, x1, x2), y = r.Is3D() ? Search(ys, y1, y2) : x;
    const auto cut = Take(r.Cut(x1, x2, y1, y2));
    if (x1 == x2 || (r.Is3D() && y1 == y2) || x.beyond || y.beyond) return CheckEmpty(*cut);
    PrnType rule(static_cast<AllocType>(r.allocType), x.count, y.count);
    rule.xStart = sorted.xStart, rule.xStep = sorted.xStep, rule.yStart = sorted.yStart, rule.yStep = sorted.yStep;
    CutByRule(x, r.HasX(), sorted.xArray, rule.xArray, rule.xStart, rule.xEnd, rule.xStep);
    CutByRule(y, r.HasY(), sorted.yArray, rule.yArray, rule.yStart, rule.yEnd, rule.yStep);
    for (int i = 0; r.Is3D() && i < x.count; ++i)
      std::copy_n(sorted.zArray[x.first + i] + y.first, y.count, rule.zArray[i]);
    rule.MinMax();
    CheckResult(*cut, rule, r, r.fileType);
  });
}

TEST_CASE("reshape: the closest point of a curve is deleted, the earlier of two") {
  CHECK_SAME(XOf(*Take(Curve({1, 3}, {0, 0}).DeleteClosest(2, 0))), Floats({3}));
  CHECK_SAME(ValuesOf(*Take(Curve(10, 2, {5, 9, 5}).DeleteClosest(11, 8))), Floats({5, 5}));
  CHECK_SAME(XOf(*Take(Curve(10, 2, {5, 9, 5}).DeleteClosest(13, 5))), Floats({10, 12}));
  CheckEmpty(*Take(Curve({1}, {1}).DeleteClosest(1, 1)));
}

TEST_CASE("reshape: blocks are averaged, a remainder is dropped, the header comes along") {
  ForRandomRecords(AllocY, [](PrnType& r, Rng& rng) {
    r.fileType = FileBES3T;
    r.bes3t.bes3tGain = 47;
    const int fx = static_cast<int>(rng() % 7), fy = r.Is3D() ? static_cast<int>(rng() % 7) : fx;
    const auto reduced = Take(r.Reduce(fx, fy));
    if (fx < 1 || fx > r.nX || fy < 1 || fy > r.nY) return CheckEmpty(*reduced);
    PrnType rule(r.Is3D() ? AllocXYZ : AllocXY, r.nX / fx, r.nY / fy);
    Put(Means(XOf(r), fx), rule.xArray);
    Put(Means(YOf(r), fy), rule.yArray);
    for (int a = 0; r.Is3D() && a < r.nX / fx; ++a)
      for (int b = 0; b < r.nY / fy; ++b) {
        float sum = 0;
        for (int k = 0; k < fx * fy; ++k) sum += r.zArray[a * fx + k / fy][b * fy + k % fy];
        rule.zArray[a][b] = sum / static_cast<float>(fx * fy);
      }
    rule.MinMax();
    CheckResult(*reduced, rule, r, FileBES3T);
    CHECK_BITS(reduced->bes3t.bes3tGain, 47);
  });
}

TEST_CASE("reshape: exchanging X and Y transposes a grid and turns a curve over") {
  ForRandomRecords(AllocY, [](const PrnType& r, Rng&) {
    const PrnType swapped = Swapped(r);
    CHECK_SAME(XOf(swapped), YOf(r));
    CHECK_SAME(YOf(swapped), XOf(r));
    CHECK_BITS(swapped.xStep, r.Is3D() ? r.yStep : r.xStep);
    for (int i = 0; r.Is3D() && i < r.nX; ++i)
      for (int j = 0; j < r.nY; ++j) CHECK_BITS(swapped.zArray[j][i], r.zArray[i][j]);
    CHECK((r.Is3D() ? SameData(Swapped(swapped), r) : swapped.allocType == AllocXY));
  });
}

TEST_CASE("reshape: no data, no points, counts that a host set apart") {
  for (int type = AllocNone; type <= AllocXYZ; ++type) {
    PrnType r = Swapped(PrnType(static_cast<AllocType>(type)));
    r.xStep = r.yStep = -1;
    r.SortAxes();
    CHECK(Take(r.XSlice(0, 1, 1))->nX + Take(r.YSlice(0, 1, 1))->nX == 0);
    CheckEmpty(*Take(r.Cut(0, 1, 0, 1)));
    CheckEmpty(*Take(r.DeleteClosest(0, 0)));
    CheckEmpty(*Take(r.Reduce(1, 1)));
  }
  PrnType curve = Curve({3, 1, 2}, {30, 10, 20});
  curve.nX = 5;
  curve.SwapXY();
  CHECK_SAME(ValuesOf(*Take(curve.Cut(0, 100, 0, 0))), Floats({1, 2, 3}));
}
