#include "support/records.h"

using namespace kem::test;

namespace {

struct Point {
  float x, y, value;
};

// z = 100 * row + 3 * column squared over x = 90, 100, 110 and the given y.
PrnType Grid(const Floats& y) {
  PrnType grid(AllocYZ, 3, static_cast<int>(y.size()));
  Put(y, grid.yArray);
  for (int i = 0; i < grid.nX; ++i)
    for (int j = 0; j < grid.nY; ++j) grid.zArray[i][j] = static_cast<float>(100 * i + 3 * j * j);
  grid.xStart = 90, grid.xStep = 10, grid.xEnd = 110;
  grid.MinMax();
  return grid;
}

void CheckAll(const PrnType& r, float (PrnType::*at)(float, float) const, const std::vector<Point>& points) {
  for (const Point& p : points) {
    INFO(p.x, ", ", p.y);
    CHECK_BITS((r.*at)(p.x, p.y), p.value);
  }
}

}  // namespace

TEST_CASE("lookup: Nearest searches stored axes and bins defined ones, inside their ranges") {
  CheckAll(Curve({5, 4, 2, 1}, {50, 40, 20, 10}), &PrnType::Nearest,
           {{5, 0, 50}, {1, 0, 10}, {3, 0, 40}, {2.9f, 0, 20}, {5.1f, 0, 0}, {NAN, 0, 0}});
  PrnType defined = Curve(0, 1, {1, 2, 3, 4});
  CheckAll(defined, &PrnType::Nearest, {{0, 0, 1}, {0.7f, 0, 1}, {0.8f, 0, 2}, {3, 0, 4}, {-0.1f, 0, 0}});
  CheckAll(Grid({3, 1, 2}), &PrnType::Nearest,
           {{90, 3, 0}, {110, 2, 212}, {97, 1.4f, 103}, {97, 3.1f, 0}, {97, NAN, 0}});
  defined.xStart = 3;  // without width
  CheckAll(defined, &PrnType::Nearest, {{3, 0, 1}});
}

TEST_CASE("lookup: At draws its line through the two nearest samples, of a grid along x and then along y") {
  CheckAll(Curve({0.1f, 0.7f, 1.9f, 2.3f}, {3, 7, 4, 9}), &PrnType::At,
           {{0.2f, 0, 3 + (7.0f - 3) / (0.7f - 0.1f) * (0.2f - 0.1f)},
            {1.7f, 0, 4 + (9.0f - 4) / (2.3f - 1.9f) * (1.7f - 1.9f)},  // although 0.7 lies below
            {2.3f, 0, 9},
            {2.3000002f, 0, 0},
            {NAN, 0, 0}});
  CheckAll(Curve({5}, {8}), &PrnType::At, {{5, 0, 8}});
  CheckAll(Curve(2, -1, {1, 2, 4}), &PrnType::At, {{0.5f, 0, 3}});
  // Between y = 1 and y = 3: 2 is taken first, then keeps 98 as its distance, from x, which 3 undercuts.
  CheckAll(Grid({0, 1, 2, 3}), &PrnType::At,
           {{100, 1.2f, 103 + (127.0f - 103) / (3 - 1) * (1.2f - 1)},
            {92.5f, 0.25f, 25 + (28.0f - 25) / 1 * 0.25f},
            {100, 1, 103},
            {100, 3.1f, 0},
            {89, 1, 0}});
  CheckAll(Grid({7}), &PrnType::At, {{95, 7, 50}});
}

TEST_CASE("lookup: counts that do not fit the arrays lead nowhere outside them") {
  PrnType curve = Curve({1, 2, 3}, {1, 2, 3});
  for (const int nX : {1000, 1, 0, -5}) {
    curve.nX = nX;
    const float last = nX > 3 ? 3.0f : nX == 1 ? 1.0f : 0.0f;
    CHECK((curve.Nearest(3, 0) == last && curve.At(3, 0) == last));
  }
  CHECK((PrnType().At(0, 0) == 0 && PrnType().Nearest(0, 0) == 0));
}
