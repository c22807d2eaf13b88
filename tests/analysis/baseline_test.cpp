#include "support/records.h"

using namespace kem::test;

namespace {

float LineAt(float x1, float a, float x2, float b, float x) {
  const float s = (b - a) / (x2 - x1);
  return s * x + (a - s * x1);
}

bool Acts(float start, float end, float a, float b, int samples) {
  return start <= a && a <= end && start <= b && b <= end && a != b && samples > 1;
}

}  // namespace

TEST_CASE("baseline: backgrounds are read from the record as it is corrected, column by column or row by row") {
  int acted = 0;
  ForRandomRecords(AllocY, [&acted](const PrnType& r, Rng& rng) {
    const Floats x = XOf(r), y = YOf(r);
    const float x1 = Bound(rng, x), x2 = Bound(rng, x), y1 = Bound(rng, y), y2 = Bound(rng, y);
    PrnType alongX(r), alongY(r), rule(r);
    alongX.SubLinBackX(x1, x2);
    if (Acts(r.xStart, r.xEnd, x1, x2, r.nX)) {
      ++acted;
      for (int j = 0; j < (r.Is3D() ? r.nY : 1); ++j) {
        const float a = rule.At(x1, r.Is3D() ? y[j] : 0), b = rule.At(x2, r.Is3D() ? y[j] : 0);
        for (int i = 0; i < r.nX; ++i)
          (r.Is3D() ? rule.zArray[i][j] : rule.yArray[i]) -= LineAt(x1, a, x2, b, x[i]);
      }
      rule.MinMax();
    }
    CHECK(SameData(alongX, rule));

    PrnType rows(r);
    alongY.SubLinBackY(y1, y2);
    if (r.Is3D() && Acts(r.yStart, r.yEnd, y1, y2, r.nY)) {
      ++acted;
      for (int i = 0; i < r.nX; ++i) {
        const float a = rows.At(x[i], y1), b = rows.At(x[i], y2);
        for (int j = 0; j < r.nY; ++j) rows.zArray[i][j] -= LineAt(y1, a, y2, b, y[j]);
      }
      rows.MinMax();
    }
    CHECK(SameData(alongY, rows));
  });
  CHECK(acted > 50);
}

TEST_CASE("baseline: a straight line vanishes, a slant goes where it is wanted") {
  PrnType line = Curve(0, 1, {5, 7, 9, 11});
  line.SubLinBackX(0.5f, 3);
  for (const float v : ValuesOf(line)) CHECK(std::fabs(v) < 1e-5f);
  PrnType slanted = Curve(0, 1, {1, 2, 4, 2});
  slanted.Slant(0, 3, 2, 4);
  CHECK_SAME(ValuesOf(slanted), Floats({3, 4, 4, 0}));
  const PrnType zero = Curve(0, 1, {0, 1, 2});
  PrnType same(zero);
  same.Slant(0, 1, 2, 5);
  same.Slant(1, 1, 3, 5);
  CHECK(SameData(same, zero));
}
