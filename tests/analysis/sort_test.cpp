#include <numeric>

#include "support/records.h"

using namespace kem::test;

namespace {

constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

// Where each sample of a sorted axis comes from, by exchanging neighbours.
std::vector<int> OrderOf(const float* stored, float step, int count) {
  std::vector<int> order(count);
  std::iota(order.begin(), order.end(), 0);
  if (!stored && step < 0) std::ranges::reverse(order);
  const auto after = [stored](int a, int b) {
    return stored && (stored[a] > stored[b] || (std::isnan(stored[a]) && !std::isnan(stored[b])));
  };
  for (int round = 0; round < count; ++round)
    for (int k = 1; k < count; ++k)
      if (after(order[k - 1], order[k])) std::swap(order[k - 1], order[k]);
  return order;
}

void CheckAxis(const float* now, Floats range, const float* before, Floats old, const std::vector<int>& order) {
  for (std::size_t k = 0; before && k < order.size(); ++k) CHECK_BITS(now[k], before[order[k]]);
  if (!before && old[2] < 0) old = {old[1], old[0], -old[2]};
  CHECK_SAME(range, old);
}

void CheckSorted(const PrnType& r) {
  PrnType sorted(r);
  sorted.SortAxes();
  const auto rows = OrderOf(r.HasX() ? r.xArray : nullptr, r.xStep, r.nX);
  CheckAxis(sorted.xArray, {sorted.xStart, sorted.xEnd, sorted.xStep}, r.HasX() ? r.xArray : nullptr,
            {r.xStart, r.xEnd, r.xStep}, rows);
  for (int k = 0; !r.Is3D() && k < r.nY; ++k) CHECK_BITS(sorted.yArray[k], r.yArray[rows[k]]);
  if (!r.Is3D()) return;
  const auto columns = OrderOf(r.HasY() ? r.yArray : nullptr, r.yStep, r.nY);
  CheckAxis(sorted.yArray, {sorted.yStart, sorted.yEnd, sorted.yStep}, r.HasY() ? r.yArray : nullptr,
            {r.yStart, r.yEnd, r.yStep}, columns);
  for (int a = 0; a < r.nX; ++a)
    for (int b = 0; b < r.nY; ++b) CHECK_BITS(sorted.zArray[a][b], r.zArray[rows[a]][columns[b]]);
}

}  // namespace

TEST_CASE("sort: every shape comes out in ascending order, values moved along, not-a-number last") {
  ForRandomRecords(AllocY, [](PrnType& r, Rng& rng) {
    CheckSorted(r);
    for (int k = 0; r.HasX() && k < r.nX; k += 1 + static_cast<int>(rng() % 3)) r.xArray[k] = kNaN;
    for (int k = 0; r.Is3D() && r.HasY() && k < r.nY; k += 2) r.yArray[k] = kNaN;
    CheckSorted(r);
  });
}

TEST_CASE("sort: no data, no points, counts that a host set apart") {
  for (int type = AllocNone; type <= AllocXYZ; ++type) {
    PrnType record(static_cast<AllocType>(type), 0, 0);
    record.xStep = record.yStep = -1;
    record.SortAxes();
    CHECK(record.nX == 0);
  }
  PrnType curve = Curve({3, 1, 2}, {30, 10, 20});
  curve.nX = 5;
  curve.SortAxes();
  CHECK_SAME(ValuesOf(curve), Floats({10, 20, 30}));
}
