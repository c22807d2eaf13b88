#include "support/records.h"

using namespace kem::test;

namespace {

void CheckMade(const PrnType& result, const PrnType& source, int allocType, int fileType) {
  CHECK(result.allocType == allocType);
  CHECK(result.fileType == fileType);
  CHECK(result.active == 1);
  CHECK(std::string(result.fileName) == source.fileName);
}

struct Window {
  std::size_t first, end;
};

Window Search(const Floats& axis, float a, float b) {
  Window w{0, axis.size()};
  while (w.first < axis.size() && axis[w.first] < std::min(a, b)) ++w.first;
  while (w.end > 0 && axis[w.end - 1] > std::max(a, b)) --w.end;
  return w;
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
    const float y1 = Bound(rng, ys), y2 = Bound(rng, ys);
    const auto slice = Take(r.XSlice(y1, y2, average));
    CheckMade(*slice, r, r.HasX() ? AllocXY : AllocY, FileCvt);
    CHECK_SAME(XOf(*slice), XOf(r));
    CHECK_BITS(slice->xEnd, r.xEnd);
    for (int i = 0; i < r.nX; ++i) {
      float sum = 0;
      int members = 0;
      for (int j = 0; j < r.nY; ++j)
        if ((y1 <= ys[j] && ys[j] <= y2) || (y2 <= ys[j] && ys[j] <= y1)) sum += r.zArray[i][j], ++members;
      CHECK_BITS(slice->yArray[i], average && members ? sum / static_cast<float>(members) : sum);
    }
    const auto mirrored = Take(Swapped(r).YSlice(y1, y2, average));
    CheckMade(*mirrored, r, slice->allocType, FileCvt);
    CHECK(SameData(*mirrored, *slice));
  });
  CHECK(!*Take(Curve({1}, {1}).XSlice(0, 2, 1)));
  CHECK(!*Take(Curve({1}, {1}).YSlice(0, 2, 1)));
}

TEST_CASE("reshape: cutting keeps the window of the sorted data") {
  ForRandomRecords(AllocY, [](const PrnType& r, Rng& rng) {
    PrnType sorted(r);
    sorted.SortAxes();
    const Floats xs = XOf(sorted), ys = YOf(sorted);
    const float x1 = Bound(rng, xs), x2 = Bound(rng, xs), y1 = Bound(rng, ys), y2 = Bound(rng, ys);
    const Window x = Search(xs, x1, x2), y = r.Is3D() ? Search(ys, y1, y2) : x;
    const auto cut = Take(r.Cut(x1, x2, y1, y2));
    const bool beyond = x.first == xs.size() || x.end == 0 || (r.Is3D() && (y.first == ys.size() || y.end == 0));
    if (x1 == x2 || (r.Is3D() && y1 == y2) || beyond) return CheckEmpty(*cut);
    CheckMade(*cut, r, r.allocType, r.fileType);
    CHECK(cut->nY == static_cast<int>(y.end - y.first));
    REQUIRE(cut->nX == static_cast<int>(x.end - x.first));
    if (r.HasX()) CHECK_SAME(XOf(*cut), Floats(xs.begin() + x.first, xs.begin() + x.end));
    if (!r.HasX()) CHECK_BITS(cut->xStart, static_cast<float>(x.first) * sorted.xStep + sorted.xStart);
    if (!r.HasX()) CHECK_BITS(cut->xEnd, (static_cast<float>(x.end) - 1) * sorted.xStep + sorted.xStart);
    if (r.HasY()) CHECK_SAME(YOf(*cut), Floats(ys.begin() + y.first, ys.begin() + y.end));
    if (r.Is3D() && !r.HasY()) CHECK_BITS(cut->yStart, static_cast<float>(y.first) * sorted.yStep + sorted.yStart);
    for (int i = 0; r.Is3D() && i < cut->nX; ++i)
      for (int j = 0; j < cut->nY; ++j) CHECK_BITS(cut->zArray[i][j], sorted.zArray[x.first + i][y.first + j]);
  });
  const PrnType descending = Curve({4, 3, 2, 1}, {40, 30, 20, 10});
  CHECK_SAME(XOf(*Take(descending.Cut(3.5f, 2, 0, 0))), Floats({2, 3}));
  CHECK(!*Take(descending.Cut(5, 6, 0, 0)));
  const auto between = Take(descending.Cut(2.2f, 2.8f, 0, 0));
  CHECK(between->allocType == AllocXY);
  CHECK(between->nY == 0);
}

TEST_CASE("reshape: the closest point of a curve is deleted, the earlier of two") {
  CHECK_SAME(XOf(*Take(Curve({1, 3}, {0, 0}).DeleteClosest(2, 0))), Floats({3}));
  CHECK_SAME(ValuesOf(*Take(Curve(10, 2, {5, 9, 5}).DeleteClosest(11, 8))), Floats({5, 5}));
  CHECK_SAME(XOf(*Take(Curve(10, 2, {5, 9, 5}).DeleteClosest(13, 5))), Floats({10, 12}));
  CHECK(!*Take(Curve({1}, {1}).DeleteClosest(1, 1)));
}

TEST_CASE("reshape: blocks are averaged, a remainder is dropped") {
  ForRandomRecords(AllocY, [](PrnType& r, Rng& rng) {
    r.fileType = FileBES3T;  // the block of an instrument comes along
    r.bes3t.bes3tGain = 47;
    const int fx = static_cast<int>(rng() % 7), fy = static_cast<int>(rng() % 7);
    const auto reduced = Take(r.Reduce(fx, fy));
    if (fx < 1 || fx > r.nX || (r.Is3D() && (fy < 1 || fy > r.nY))) return CheckEmpty(*reduced);
    CheckMade(*reduced, r, r.Is3D() ? AllocXYZ : AllocXY, FileBES3T);
    CHECK_BITS(reduced->bes3t.bes3tGain, 47);
    CHECK_SAME(XOf(*reduced), Means(XOf(r), fx));
    CHECK_SAME(YOf(*reduced), Means(YOf(r), r.Is3D() ? fy : fx));
    for (int a = 0; r.Is3D() && a < r.nX / fx; ++a)
      for (int b = 0; b < r.nY / fy; ++b) {
        float sum = 0;
        for (int i = 0; i < fx; ++i)
          for (int j = 0; j < fy; ++j) sum += r.zArray[a * fx + i][b * fy + j];
        CHECK_BITS(reduced->zArray[a][b], sum / static_cast<float>(fx * fy));
      }
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
    const PrnType r = Swapped(PrnType(static_cast<AllocType>(type)));
    CHECK(Take(r.XSlice(0, 1, 1))->nX == 0);
    CHECK(Take(r.YSlice(0, 1, 1))->nX == 0);
    CHECK(!*Take(r.Cut(0, 1, 0, 1)));
    CHECK(!*Take(r.DeleteClosest(0, 0)));
    CHECK(!*Take(r.Reduce(1, 1)));
  }
  PrnType curve = Curve({1, 2, 3}, {10, 20, 30});
  curve.nX = 5;
  curve.SwapXY();
  CHECK(Take(curve.Cut(0, 100, 0, 0))->nY == 3);
}
