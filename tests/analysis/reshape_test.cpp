#include "kem/record.h"
#include "support/records.h"

using namespace kem::test;

namespace {

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
    const PrnType s = Sorted(r);
    const Floats xs = XOf(s), ys = YOf(s);
    const float x1 = Bound(rng, xs), x2 = Bound(rng, xs), y1 = Bound(rng, ys), y2 = Bound(rng, ys);
    const auto x = Band(xs, x1, x2), y = r.Is3D() ? Band(ys, y1, y2) : x;
    const auto cut = Take(r.Cut(x1, x2, y1, y2));
    if (x1 == x2 || (r.Is3D() && y1 == y2) || std::min(x.second, y.second) < 0 || x.first == r.nX ||
        y.first == r.nY)
      return CheckEmpty(*cut);
    const int nX = x.second - x.first + 1, nY = y.second - y.first + 1;
    CheckResult(*cut, Part(s, x.first, nX, y.first, nY), r, r.fileType);
  });
}

TEST_CASE("reshape: the closest point of a curve is deleted, the earlier of two") {
  CHECK_SAME(XOf(*Take(Curve({1, 3}, {0, 0}).DeleteClosest(2, 0))), Floats({3}));
  const PrnType curve = Curve(10, 2, {5, 9, 5});
  CHECK(SameData(*Take(curve.DeleteClosest(11, 8)), Curve({10, 14}, {5, 5})));
  CHECK(SameData(*Take(curve.DeleteClosest(13, 5)), Curve({10, 12}, {5, 9})));
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
    CHECK((r.Is3D() || swapped.allocType == AllocXY));
    for (int i = 0; r.Is3D() && i < r.nX; ++i)
      for (int j = 0; j < r.nY; ++j) CHECK_BITS(swapped.zArray[j][i], r.zArray[i][j]);
    CheckResult(*kem::Record(PrnType(r)).Swapped(), swapped, r, r.fileType);
  });
}

TEST_CASE("reshape and calculus: no data, no points, counts that a host set apart") {
  for (int type = AllocNone; type <= AllocXYZ; ++type) {
    PrnType r = Swapped(PrnType(static_cast<AllocType>(type)));
    r.xStep = r.yStep = -1;
    r.SortAxes();
    for (PrnType* result : {&r.XSlice(0, 1, 1), &r.YSlice(0, 1, 1), &r.RunningIntegral()})
      CHECK(Take(*result)->nX == 0);
    for (PrnType* result : {&r.Cut(0, 1, 0, 1), &r.DeleteClosest(0, 0), &r.Reduce(1, 1), &r.XDiff(), &r.YDiff(),
                            &r.IntegrateX(0, 1), &r.IntegrateY(0, 1)})
      CheckEmpty(*Take(*result));
    CHECK(r.Integral(0, 1, 0, 1) == 0);
  }
  PrnType curve = Curve({3, 1, 2}, {30, 10, 20});
  curve.nX = 5;
  curve.SwapXY();
  CHECK_SAME(ValuesOf(*Take(curve.Cut(0, 100, 0, 0))), Floats({1, 2, 3}));
}
