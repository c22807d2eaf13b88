// Axes: their coordinates, whether they are the same, and their order.
#include "support/records.h"

using namespace kem::test;

namespace {

Floats Axis(const PrnType& r, void (PrnType::*arrayFrom)(float**, int*) const) {
  float* values = nullptr;
  int count = -1;
  (r.*arrayFrom)(&values, &count);
  const std::unique_ptr<float[]> release(values);
  return {values, values + count};
}

// Sorts by exchanging neighbours; NaN goes last.
void SortByRule(bool stored, const float* axis, float& start, float& end, float& step, int count,
                const std::function<void(int, int)>& exchange) {
  for (int last = count; last > 1; --last)
    for (int k = 1; k < last; ++k)
      if (stored ? axis[k - 1] > axis[k] || (std::isnan(axis[k - 1]) && !std::isnan(axis[k])) : step < 0)
        exchange(k - 1, k);
  if (stored || step >= 0) return;
  std::swap(start, end);
  step = -step;
}

void CheckSorted(const PrnType& r) {
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
  CHECK(SameData(Sorted(r), rule));
}

}  // namespace

TEST_CASE("axis: coordinates are stored or add up in single precision, as many as the arrays hold") {
  ForRandomRecords(AllocY, [](const PrnType& r, Rng&) {
    CHECK_SAME(Axis(r, &PrnType::ArrayFromXAxis), XOf(r));
    CHECK_SAME(Axis(r, &PrnType::ArrayFromYAxis), YOf(r));
  });
  const int counts[][5] = {{AllocY, 2, 5, 5, 5},   {AllocXY, 9, 5, 5, 5}, {AllocXY, 3, 5, 3, 5},
                           {AllocXYZ, 5, 4, 5, 4}, {AllocX, 5, 5, 0, 0},  {AllocNone, 5, 5, 0, 0},
                           {AllocY, -1, -1, 0, 0}};
  for (const auto& [type, nX, nY, x, y] : counts) {
    PrnType r(static_cast<AllocType>(type), 5, nY);
    r.nX = nX, r.nY = nY;
    CHECK(std::ssize(Axis(r, &PrnType::ArrayFromXAxis)) == x);
    CHECK(std::ssize(Axis(r, &PrnType::ArrayFromYAxis)) == y);
  }
}

TEST_CASE("axis: coordinates are the same within a relative 1e-5, never with their own negative") {
  struct {
    float a, b;
    int same;
  } const cases[] = {{1, 1.000015f, 1}, {1, 1.00003f, 0}, {0, -0.0f, 1},    {0, 1e-30f, 0}, {1, -1, 0},
                     {-5, -5, 1},       {NAN, NAN, 0},    {3e38f, 2e38f, 1}};  // the last sum overflows
  for (const auto& c : cases) {
    CAPTURE(c.a);
    float given = c.b;
    const PrnType stored = Curve(Floats{c.a}, {0});
    PrnType defined(AllocZ, 1, 1), other(AllocZ, 1, 1);
    defined.yStart = c.a, other.yStart = c.b;
    CHECK((stored.SameAxes(Curve(Floats{c.b}, {1})) == c.same && stored.XAxisEqArray(&given, 1) == c.same));
    CHECK((defined.SameAxes(other) == c.same && defined.YAxisEqArray(&given, 1) == c.same));
  }
}

TEST_CASE("axis: every start, end, step and coordinate of every shape counts") {
  ForRandomRecords(AllocY, [](const PrnType& r, Rng& rng) {
    const auto sameWith = [&r](float PrnType::*field) {
      PrnType moved = r;
      moved.*field += 100;
      return r.SameAxes(moved) != 0;
    };
    CHECK(r.SameAxes(RandomRecord(rng, r.allocType ^ 1, r.nX, r.nY)) == 0);
    for (const auto field : {&PrnType::xStart, &PrnType::xEnd, &PrnType::xStep})
      CHECK(sameWith(field) == (r.HasX() != 0));
    for (const auto field : {&PrnType::yStart, &PrnType::yEnd, &PrnType::yStep})
      CHECK(sameWith(field) == (r.HasY() != 0));
    Floats x = XOf(r), y = YOf(r);
    CHECK((r.XAxisEqArray(x.data(), r.nX) && !r.XAxisEqArray(x.data(), r.nX - 1)));
    CHECK((r.YAxisEqArray(y.data(), r.nY) && !r.YAxisEqArray(y.data(), r.nY + 1)));
    y[rng() % y.size()] += 1;
    CHECK(!r.YAxisEqArray(y.data(), r.nY));
  });
  // The first record's count governs; a shorter array differs.
  CHECK(Curve({1, 2}, {0, 0}).SameAxes(Curve({1, 2, 3}, {5, 5, 5})) == 1);
  CHECK(Curve({1, 2, 3}, {0, 0, 0}).SameAxes(Curve({1, 2}, {0, 0})) == 0);
}

TEST_CASE("axis: sorting moves the values along, NaN goes last") {
  ForRandomRecords(AllocY, [](PrnType& r, Rng& rng) {
    CheckSorted(r);
    for (int k = 0; r.HasX() && k < r.nX; k += 1 + static_cast<int>(rng() % 3)) r.xArray[k] = NAN;
    for (int k = 0; r.Is3D() && r.HasY() && k < r.nY; k += 2) r.yArray[k] = NAN;
    CheckSorted(r);
  });
}
