#include <memory>

#include "support/records.h"

using namespace kem::test;

namespace {

using Result = std::unique_ptr<PrnType>;

Result Take(PrnType& handedOut) { return Result(&handedOut); }

// Runs a case over many random records of every shape, curves and grids, one sample and more.
template <class Case>
void ForRandomRecords(int rounds, Case run) {
  CAPTURE(kSeed);
  Rng rng(kSeed);
  for (int round = 0; round < rounds; ++round)
    for (int type = AllocY; type <= AllocXYZ; ++type) {
      CAPTURE(type);
      run(RandomRecord(rng, type), rng);
    }
}

bool Between(float v, float a, float b) { return (a <= v && v <= b) || (b <= v && v <= a); }

// A bound near or on a coordinate.
float Bound(Rng& rng, const Floats& axis) {
  return axis[rng() % axis.size()] + (rng() % 2 ? 0 : Uniform(rng, -3, 3));
}

Floats Slice(const PrnType& grid, const Floats& across, float from, float to, bool alongX, int average) {
  Floats slice;
  for (int k = 0; k < (alongX ? grid.nX : grid.nY); ++k) {
    float sum = 0;
    int members = 0;
    for (std::size_t m = 0; m < across.size(); ++m)
      if (Between(across[m], from, to)) {
        sum += alongX ? grid.zArray[k][m] : grid.zArray[m][k];
        ++members;
      }
    slice.push_back(average && members ? sum / static_cast<float>(members) : sum);
  }
  return slice;
}

void CheckMade(const PrnType& result, const PrnType& source, int allocType, int fileType) {
  CHECK(result.allocType == allocType);
  CHECK(result.fileType == fileType);
  CHECK(result.active == 1);
  CHECK(std::string(result.fileName) == source.fileName);
}

struct Window {
  std::size_t first, last;
  bool beyond;
};

Window Search(const Floats& axis, float low, float high) {
  std::size_t first = 0;
  while (first < axis.size() && axis[first] < low) ++first;
  std::size_t last = axis.size();  // one more than the rule's index
  while (last > 0 && axis[last - 1] > high) --last;
  return {first, last, first == axis.size() || last == 0};
}

}  // namespace

TEST_CASE("reshape: a slice sums or averages a band of a grid, bounds included and in either order") {
  ForRandomRecords(40, [](const PrnType& r, Rng& rng) {
    const Floats xs = XOf(r);
    const Floats ys = YOf(r);
    const int average = static_cast<int>(rng() % 2);
    const float y1 = Bound(rng, ys), y2 = Bound(rng, ys), x1 = Bound(rng, xs), x2 = Bound(rng, xs);
    const Result x = Take(r.XSlice(y1, y2, average));
    const Result y = Take(r.YSlice(x1, x2, average));
    if (!r.Is3D()) {
      CHECK(!*x);
      CHECK(!*y);
      return;
    }
    CheckMade(*x, r, r.HasX() ? AllocXY : AllocY, FileCvt);
    CheckMade(*y, r, r.HasY() ? AllocXY : AllocY, FileCvt);
    CHECK_SAME(ValuesOf(*x), Slice(r, ys, y1, y2, true, average));
    CHECK_SAME(ValuesOf(*y), Slice(r, xs, x1, x2, false, average));
    CHECK_SAME(XOf(*x), xs);
    CHECK_SAME(XOf(*y), ys);
    CHECK_BITS(x->xEnd, r.xEnd);
    CHECK_BITS(y->xEnd, r.yEnd);
  });
  PrnType grid(AllocXYZ, 1, 2);
  grid.yArray[0] = grid.zArray[0][0] = 1;
  grid.yArray[1] = grid.zArray[0][1] = 2;
  CHECK_BITS(Take(grid.XSlice(2.5f, 9, 1))->yArray[0], 0);
  CHECK_BITS(Take(grid.XSlice(2, 1, 1))->yArray[0], 1.5f);
}

TEST_CASE("reshape: cutting keeps the window of the sorted data") {
  ForRandomRecords(60, [](const PrnType& r, Rng& rng) {
    PrnType sorted(r);
    sorted.SortAxes();
    const Floats xs = XOf(sorted);
    const Floats ys = YOf(sorted);
    const float x1 = Bound(rng, xs), x2 = Bound(rng, xs), y1 = Bound(rng, ys), y2 = Bound(rng, ys);
    const Result cut = Take(r.Cut(x1, x2, y1, y2));
    const Window x = Search(xs, std::min(x1, x2), std::max(x1, x2));
    const Window y = r.Is3D() ? Search(ys, std::min(y1, y2), std::max(y1, y2)) : x;
    if (x1 == x2 || (r.Is3D() && y1 == y2) || x.beyond || y.beyond) {
      CHECK(!*cut);
      return;
    }
    CheckMade(*cut, r, r.allocType, r.fileType);
    REQUIRE(cut->nX == static_cast<int>(x.last - x.first));
    REQUIRE(cut->nY == static_cast<int>(y.last - y.first));
    for (int i = 0; r.HasX() && i < cut->nX; ++i) CHECK_BITS(cut->xArray[i], sorted.xArray[x.first + i]);
    if (!r.HasX()) CHECK_BITS(cut->xStart, static_cast<float>(x.first) * sorted.xStep + sorted.xStart);
    if (!r.HasX()) CHECK_BITS(cut->xEnd, (static_cast<float>(x.last) - 1) * sorted.xStep + sorted.xStart);
    if (r.Is3D() && !r.HasY()) CHECK_BITS(cut->yStart, static_cast<float>(y.first) * sorted.yStep + sorted.yStart);
    for (int j = 0; j < cut->nY; ++j) {
      if (r.HasY()) CHECK_BITS(cut->yArray[j], sorted.yArray[y.first + j]);
      for (int i = 0; r.Is3D() && i < cut->nX; ++i)
        CHECK_BITS(cut->zArray[i][j], sorted.zArray[x.first + i][y.first + j]);
    }
  });
  const PrnType descending = Curve({4, 3, 2, 1}, {40, 30, 20, 10});
  CHECK_SAME(XOf(*Take(descending.Cut(3.5f, 2, 0, 0))), Floats({2, 3}));
  CHECK(!*Take(descending.Cut(5, 6, 0, 0)));
  CHECK(!*Take(descending.Cut(-5, 0, 0, 0)));
  const Result between = Take(descending.Cut(2.2f, 2.8f, 0, 0));
  CHECK(between->allocType == AllocXY);
  CHECK(between->nY == 0);
}

TEST_CASE("reshape: the closest point is deleted, the earlier of two") {
  ForRandomRecords(40, [](const PrnType& r, Rng& rng) {
    const float x = Bound(rng, XOf(r)), y = Uniform(rng, -5, 5);
    const Result rest = Take(r.DeleteClosest(x, y));
    if (r.Is3D() || r.nY < 2) {
      CHECK(!*rest);
      return;
    }
    Floats xs = XOf(r);
    Floats ys = ValuesOf(r);
    std::size_t closest = 0;
    const auto distance = [&](std::size_t k) { return (xs[k] - x) * (xs[k] - x) + (ys[k] - y) * (ys[k] - y); };
    for (std::size_t k = 1; k < xs.size(); ++k)
      if (distance(k) < distance(closest)) closest = k;
    xs.erase(xs.begin() + static_cast<std::ptrdiff_t>(closest));
    ys.erase(ys.begin() + static_cast<std::ptrdiff_t>(closest));
    CheckMade(*rest, r, AllocXY, r.fileType);
    CHECK_SAME(XOf(*rest), xs);
    CHECK_SAME(ValuesOf(*rest), ys);
  });
  CHECK_SAME(XOf(*Take(Curve({1, 3}, {0, 0}).DeleteClosest(2, 0))), Floats({3}));
}

TEST_CASE("reshape: blocks are averaged, a remainder is dropped") {
  const auto means = [](const Floats& values, int width) {
    Floats result;
    for (std::size_t a = 0; a + width <= values.size(); a += width) {
      float sum = 0;
      for (int k = 0; k < width; ++k) sum += values[a + k];
      result.push_back(sum / static_cast<float>(width));
    }
    return result;
  };
  ForRandomRecords(40, [&means](PrnType r, Rng& rng) {
    r.fileType = FileBES3T;  // an instrument's block comes along
    r.bes3t.bes3tGain = 47;
    const int fx = static_cast<int>(rng() % 7), fy = static_cast<int>(rng() % 7);
    const Result reduced = Take(r.Reduce(fx, fy));
    if (fx < 1 || fx > r.nX || (r.Is3D() && (fy < 1 || fy > r.nY))) {
      CHECK(!*reduced);
      return;
    }
    CheckMade(*reduced, r, r.Is3D() ? AllocXYZ : AllocXY, FileBES3T);
    CHECK_BITS(reduced->bes3t.bes3tGain, 47);
    CHECK_SAME(XOf(*reduced), means(XOf(r), fx));
    if (!r.Is3D()) CHECK_SAME(ValuesOf(*reduced), means(ValuesOf(r), fx));
    if (r.Is3D()) CHECK_SAME(YOf(*reduced), means(YOf(r), fy));
    for (int a = 0; r.Is3D() && a < r.nX / fx; ++a)
      for (int b = 0; b < r.nY / fy; ++b) {
        float sum = 0;
        for (int i = 0; i < fx; ++i)
          for (int j = 0; j < fy; ++j) sum += r.zArray[a * fx + i][b * fy + j];
        CHECK_BITS(reduced->zArray[a][b], sum / static_cast<float>(fx * fy));
      }
  });
  CHECK(Take(Curve(0, 1, Floats(10)).Reduce(3, 0))->nY == 3);
}

TEST_CASE("reshape: exchanging X and Y transposes a grid and turns a curve over") {
  ForRandomRecords(20, [](const PrnType& r, Rng&) {
    PrnType swapped(r);
    swapped.SwapXY();
    if (!r.Is3D()) {
      CHECK(swapped.allocType == AllocXY);
      CHECK_SAME(XOf(swapped), ValuesOf(r));
      CHECK_SAME(ValuesOf(swapped), XOf(r));
      CHECK_BITS(swapped.xStep, r.xStep);
      CHECK_BITS(swapped.yStep, r.yStep);
      return;
    }
    CHECK_SAME(XOf(swapped), YOf(r));
    CHECK_SAME(YOf(swapped), XOf(r));
    for (int i = 0; i < r.nX; ++i)
      for (int j = 0; j < r.nY; ++j) CHECK_BITS(swapped.zArray[j][i], r.zArray[i][j]);
    swapped.SwapXY();
    CHECK(swapped.allocType == r.allocType);
    CHECK_SAME(ValuesOf(swapped), ValuesOf(r));
    CHECK_BITS(swapped.yEnd, r.yEnd);
  });
}

TEST_CASE("reshape: no data, no points, counts that a host set apart") {
  for (int type = AllocNone; type <= AllocXYZ; ++type) {
    PrnType r(static_cast<AllocType>(type));
    r.SwapXY();
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
  CHECK(Take(curve.Reduce(1, 1))->nX == 3);
  CHECK(Take(curve.DeleteClosest(0, 0))->nX == 2);
}
