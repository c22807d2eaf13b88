#include "support/records.h"

using namespace kem::test;

namespace {

// Sorts by exchanging neighbours; not-a-number goes last.
template <class Exchange>
void SortByRule(bool stored, const float* axis, float& start, float& end, float& step, int count,
                Exchange exchange) {
  for (int last = count; last > 1; --last)
    for (int k = 1; k < last; ++k)
      if (stored ? axis[k - 1] > axis[k] || (std::isnan(axis[k - 1]) && !std::isnan(axis[k])) : step < 0)
        exchange(k - 1, k);
  if (stored || step >= 0) return;
  std::swap(start, end);
  step = -step;
}

void CheckSorted(PrnType r) {
  PrnType rule(r);
  SortByRule(r.HasX(), rule.xArray, rule.xStart, rule.xEnd, rule.xStep, r.nX, [&rule](int a, int b) {
    if (rule.HasX()) std::swap(rule.xArray[a], rule.xArray[b]);
    rule.Is3D() ? std::swap(rule.zArray[a], rule.zArray[b]) : std::swap(rule.yArray[a], rule.yArray[b]);
  });
  if (r.Is3D())
    SortByRule(r.HasY(), rule.yArray, rule.yStart, rule.yEnd, rule.yStep, r.nY, [&rule](int a, int b) {
      if (rule.HasY()) std::swap(rule.yArray[a], rule.yArray[b]);
      for (int i = 0; i < rule.nX; ++i) std::swap(rule.zArray[i][a], rule.zArray[i][b]);
    });
  r.SortAxes();
  CHECK(SameData(r, rule));
}

}  // namespace

TEST_CASE("sort: every shape comes out in ascending order, values moved along, not-a-number last") {
  constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
  ForRandomRecords(AllocY, [](PrnType& r, Rng& rng) {
    CheckSorted(r);
    for (int k = 0; r.HasX() && k < r.nX; k += 1 + static_cast<int>(rng() % 3)) r.xArray[k] = kNaN;
    for (int k = 0; r.Is3D() && r.HasY() && k < r.nY; k += 2) r.yArray[k] = kNaN;
    CheckSorted(r);
  });
}
