#include "support/records.h"

using namespace kem::test;

TEST_CASE("axes: coordinates are equal within a relative 1e-5, never with their own negative") {
  struct Case {
    float a, b;
    int same;
  } const cases[] = {{1, 1.000015f, 1}, {1, 1.00003f, 0}, {0, -0.0f, 1},    {0, 1e-30f, 0}, {1, -1, 0},
                     {-5, -5, 1},       {NAN, NAN, 0},    {3e38f, 2e38f, 1}};  // the last sum overflows
  for (const Case& c : cases) {
    CAPTURE(c.a);
    CAPTURE(c.b);
    float given = c.b;
    const PrnType stored = Curve(Floats{c.a}, {0});
    CHECK(stored.SameAxes(Curve(Floats{c.b}, {1})) == c.same);
    CHECK(stored.XAxisEqArray(&given, 1) == c.same);
    PrnType defined(AllocZ, 1, 1);
    defined.zArray[0][0] = 0;
    PrnType other = defined;
    defined.yStart = c.a;
    other.yStart = c.b;
    CHECK(defined.SameAxes(other) == c.same);
    CHECK(defined.YAxisEqArray(&given, 1) == c.same);
  }
}

TEST_CASE("axes: every start, end, step and coordinate of every shape counts") {
  Rng rng(kSeed);
  CAPTURE(kSeed);
  for (int type = 2; type < 8; ++type) {
    CAPTURE(type);
    const PrnType a = RandomRecord(rng, type, 4, 3);
    CHECK(a.SameAxes(RandomRecord(rng, type ^ 1, 4, 3)) == 0);
    for (const auto field :
         {&PrnType::xStart, &PrnType::xEnd, &PrnType::xStep, &PrnType::yStart, &PrnType::yEnd, &PrnType::yStep}) {
      PrnType b = a;
      b.*field += 1;
      const bool isX = field == &PrnType::xStart || field == &PrnType::xEnd || field == &PrnType::xStep;
      CHECK(a.SameAxes(b) == (isX ? a.HasX() != 0 : a.HasY() != 0));
    }
    Floats x = XOf(a);
    Floats y = YOf(a);
    CHECK((a.XAxisEqArray(x.data(), a.nX) && !a.XAxisEqArray(x.data(), a.nX - 1)));
    CHECK((a.YAxisEqArray(y.data(), a.nY) && !a.YAxisEqArray(y.data(), a.nY + 1)));
    y[1] += 1;
    CHECK(!a.YAxisEqArray(y.data(), a.nY));
  }
  // The first record's count governs; a shorter array differs.
  CHECK(Curve({1, 2}, {0, 0}).SameAxes(Curve({1, 2, 3}, {5, 5, 5})) == 1);
  CHECK(Curve({1, 2, 3}, {0, 0, 0}).SameAxes(Curve({1, 2}, {0, 0})) == 0);
}
