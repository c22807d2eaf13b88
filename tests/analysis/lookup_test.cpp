#include <limits>

#include "support/support.h"

using namespace kem::test;

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

struct Point {
  float x, y, value;
};

PrnType Curve(std::vector<float> x, std::vector<float> y) {
  PrnType curve(x.empty() ? AllocY : AllocXY, static_cast<int>(y.size()), 0);
  std::copy(x.begin(), x.end(), curve.xArray);
  std::copy(y.begin(), y.end(), curve.yArray);
  curve.MinMax();
  return curve;
}

// z = 100 * row + 3 * column squared over x = 90, 100, 110 and the given y.
PrnType Grid(std::vector<float> y) {
  PrnType grid(AllocYZ, 3, static_cast<int>(y.size()));
  std::copy(y.begin(), y.end(), grid.yArray);
  for (int i = 0; i < grid.nX; ++i)
    for (int j = 0; j < grid.nY; ++j) grid.zArray[i][j] = static_cast<float>(100 * i + 3 * j * j);
  grid.xStart = 90;
  grid.xStep = 10;
  grid.xEnd = 110;
  grid.MinMax();
  return grid;
}

}  // namespace

TEST_CASE("lookup: Nearest searches stored axes and bins defined ones, inside their ranges") {
  const PrnType stored = Curve({5, 4, 2, 1}, {50, 40, 20, 10});
  PrnType defined = Curve({}, {1, 2, 3, 4});
  defined.xEnd = 3;
  const PrnType grid = Grid({3, 1, 2});
  const std::pair<const PrnType*, Point> cases[] = {
      {&stored, {5, 0, 50}},    {&stored, {1, 0, 10}},    {&stored, {3, 0, 40}},     {&stored, {2.9f, 0, 20}},
      {&stored, {5.1f, 0, 0}},  {&stored, {kNaN, 0, 0}},  {&defined, {0, 0, 1}},     {&defined, {0.7f, 0, 1}},
      {&defined, {0.8f, 0, 2}}, {&defined, {3, 0, 4}},    {&defined, {-0.1f, 0, 0}}, {&grid, {90, 3, 0}},
      {&grid, {110, 2, 212}},   {&grid, {97, 1.4f, 103}}, {&grid, {97, 3.1f, 0}},    {&grid, {97, kNaN, 0}},
  };
  for (const auto& [record, p] : cases) CHECK_BITS(record->Nearest(p.x, p.y), p.value);
  defined.xStart = 3;  // without width
  CHECK_BITS(defined.Nearest(3, 0), 1);
}

TEST_CASE("lookup: At draws its line through the two nearest samples") {
  const PrnType curve = Curve({0.1f, 0.7f, 1.9f, 2.3f}, {3, 7, 4, 9});
  CHECK_BITS(curve.At(0.2f, 0), 3 + (7.0f - 3) / (0.7f - 0.1f) * (0.2f - 0.1f));
  CHECK_BITS(curve.At(1.7f, 0), 4 + (9.0f - 4) / (2.3f - 1.9f) * (1.7f - 1.9f));  // although 0.7 lies below
  for (const Point& p : {Point{2.3f, 0, 9}, {2.3000002f, 0, 0}, {kNaN, 0, 0}})
    CHECK_BITS(curve.At(p.x, 0), p.value);
  CHECK_BITS(Curve({5}, {8}).At(5, 0), 8);
  PrnType defined = Curve({}, {1, 2, 4});
  defined.xStart = 2;  // down to 0
  defined.xStep = -1;
  CHECK_BITS(defined.At(0.5f, 0), 3);
}

TEST_CASE("lookup: At of a grid measures its second y neighbour from x") {
  const PrnType grid = Grid({0, 1, 2, 3});
  // Between y = 1 and y = 3: 2 is taken first, then keeps 98 as its distance, which 3 undercuts.
  CHECK_BITS(grid.At(100, 1.2f), 103 + (127.0f - 103) / (3 - 1) * (1.2f - 1));
  CHECK_BITS(grid.At(92.5f, 0.25f), 25 + (28.0f - 25) / 1 * 0.25f);
  for (const Point& p : {Point{100, 1, 103}, {100, 3.1f, 0}, {89, 1, 0}}) CHECK_BITS(grid.At(p.x, p.y), p.value);
  CHECK_BITS(Grid({7}).At(95, 7), 50);
}

TEST_CASE("lookup: counts that do not fit the arrays lead nowhere outside them") {
  PrnType curve = Curve({1, 2, 3}, {1, 2, 3});
  for (const int nX : {1000, 1, 0, -5}) {
    curve.nX = nX;
    CHECK_BITS(curve.Nearest(3, 0), nX > 3 ? 3 : nX == 1 ? 1 : 0);
    CHECK_BITS(curve.At(3, 0), nX > 3 ? 3 : nX == 1 ? 1 : 0);
  }
  CHECK_BITS(PrnType().At(0, 0), 0);
  CHECK_BITS(PrnType().Nearest(0, 0), 0);
}
