#include <numeric>

#include "support/records.h"

using namespace kem::test;

namespace {

// The sorted order of an axis by insertion; the identity when it is ordered already. Not-a-number goes last.
std::vector<int> OrderOf(const Floats& axis) {
  std::vector<int> order;
  for (int k = 0; k < static_cast<int>(axis.size()); ++k) {
    auto at = order.end();
    while (at != order.begin() &&
           (axis[*(at - 1)] > axis[k] || (std::isnan(axis[*(at - 1)]) && !std::isnan(axis[k]))))
      --at;
    order.insert(at, k);
  }
  return order;
}

std::vector<int> OrderOf(bool stored, const float* axis, float step, int count) {
  if (stored) return OrderOf(Floats(axis, axis + count));
  std::vector<int> order(count);
  std::iota(order.begin(), order.end(), 0);
  if (step < 0) std::ranges::reverse(order);
  return order;
}

// Sorts a copy by the rule and compares.
void CheckSorted(const PrnType& source) {
  PrnType sorted(source);
  sorted.SortAxes();
  const auto rows = OrderOf(source.HasX(), source.xArray, source.xStep, source.nX);
  for (int a = 0; source.HasX() && a < source.nX; ++a) CHECK_BITS(sorted.xArray[a], source.xArray[rows[a]]);
  const bool turnX = !source.HasX() && source.xStep < 0;
  CHECK_BITS(sorted.xStart, turnX ? source.xEnd : source.xStart);
  CHECK_BITS(sorted.xEnd, turnX ? source.xStart : source.xEnd);
  CHECK_BITS(sorted.xStep, turnX ? -source.xStep : source.xStep);
  if (!source.Is3D()) {
    for (int k = 0; k < source.nY; ++k) CHECK_BITS(sorted.yArray[k], source.yArray[rows[k]]);
    CHECK_BITS(sorted.yStep, source.yStep);
    return;
  }
  const auto columns = OrderOf(source.HasY(), source.yArray, source.yStep, source.nY);
  for (int b = 0; source.HasY() && b < source.nY; ++b) CHECK_BITS(sorted.yArray[b], source.yArray[columns[b]]);
  const bool turnY = !source.HasY() && source.yStep < 0;
  CHECK_BITS(sorted.yStart, turnY ? source.yEnd : source.yStart);
  CHECK_BITS(sorted.yEnd, turnY ? source.yStart : source.yEnd);
  CHECK_BITS(sorted.yStep, turnY ? -source.yStep : source.yStep);
  for (int a = 0; a < source.nX; ++a)
    for (int b = 0; b < source.nY; ++b) CHECK_BITS(sorted.zArray[a][b], source.zArray[rows[a]][columns[b]]);
}

}  // namespace

TEST_CASE("sort: curves and grids of every shape come out in ascending order, values moved along") {
  CAPTURE(kSeed);
  Rng rng(kSeed);
  for (int round = 0; round < 60; ++round)
    for (int type = AllocY; type <= AllocXYZ; ++type) CheckSorted(RandomRecord(rng, type));
}

TEST_CASE("sort: coordinates that are not a number go last and harm nothing") {
  constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
  CheckSorted(Curve({kNaN, 3, kNaN, 1, 2, kNaN}, {0, 1, 2, 3, 4, 5}));
  CheckSorted(Curve({kNaN}, {7}));
  CAPTURE(kSeed);
  Rng rng(kSeed);
  PrnType grid = RandomRecord(rng, AllocXYZ, 70, 70);
  for (int k = 0; k < 70; k += 1 + static_cast<int>(rng() % 3)) grid.xArray[k] = grid.yArray[69 - k] = kNaN;
  CheckSorted(grid);
}

TEST_CASE("sort: no data, no points, no rows") {
  PrnType empty;
  empty.SortAxes();
  CHECK(!empty);
  for (int type = AllocX; type <= AllocXYZ; ++type) {
    PrnType record(static_cast<AllocType>(type), 0, 0);
    record.xStep = record.yStep = -1;
    record.SortAxes();
    CHECK(record.nX == 0);
  }
}

TEST_CASE("sort: a curve whose counts differ is sorted as far as both arrays reach") {
  PrnType curve = Curve({3, 1, 2}, {30, 10, 20});
  curve.nX = 5;
  curve.SortAxes();
  CHECK_SAME(Floats(curve.xArray, curve.xArray + 3), Floats({1, 2, 3}));
  CHECK_SAME(ValuesOf(curve), Floats({10, 20, 30}));
}
