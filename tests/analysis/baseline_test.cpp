#include "support/records.h"

using namespace kem::test;

namespace {

float LineAt(float x1, float a, float x2, float b, float x) {
  const float s = (b - a) / (x2 - x1);
  return s * x + (a - s * x1);
}

// Where a written-out axis has drifted out of its range.
float Into(float t, float start, float end) { return std::clamp(t, std::min(start, end), std::max(start, end)); }

bool Acts(float start, float end, float a, float b, int samples) {
  return start <= a && a <= end && start <= b && b <= end && a != b && samples > 1;
}

}  // namespace

TEST_CASE("baseline: backgrounds are read from the record as it is corrected, column by column or row by row") {
  ForRandomRecords(AllocY, [](const PrnType& r, Rng& rng) {
    const Floats x = XOf(r), y = YOf(r);
    const float x1 = Bound(rng, x), x2 = Bound(rng, x), y1 = Bound(rng, y), y2 = Bound(rng, y);
    PrnType alongX(r), alongY(r), columns(r), rows(r);
    alongX.SubLinBackX(x1, x2);
    alongY.SubLinBackY(y1, y2);
    for (int j = 0; Acts(r.xStart, r.xEnd, x1, x2, r.nX) && j < (r.Is3D() ? r.nY : 1); ++j) {
      const float at = Into(y[j], r.yStart, r.yEnd), a = columns.At(x1, at), b = columns.At(x2, at);
      for (int i = 0; i < r.nX; ++i)
        (r.Is3D() ? columns.zArray[i][j] : columns.yArray[i]) -= LineAt(x1, a, x2, b, x[i]);
    }
    for (int i = 0; r.Is3D() && Acts(r.yStart, r.yEnd, y1, y2, r.nY) && i < r.nX; ++i) {
      const float at = Into(x[i], r.xStart, r.xEnd), a = rows.At(at, y1), b = rows.At(at, y2);
      for (int j = 0; j < r.nY; ++j) rows.zArray[i][j] -= LineAt(y1, a, y2, b, y[j]);
    }
    columns.MinMax();
    rows.MinMax();
    CHECK(SameData(alongX, columns));
    CHECK(SameData(alongY, rows));
  });
}

TEST_CASE("baseline: a straight line vanishes, a slant goes where it is wanted") {
  PrnType line = Curve(0, 1, {5, 7, 9, 11});
  line.SubLinBackX(1, 3);
  CHECK_SAME(ValuesOf(line), Floats({0, 0, 0, 0}));
  PrnType none(AllocZ, 0, 3);
  none.SubLinBackY(0, 1);
  CHECK_BITS(none.zMax, 0);  // its ranges are set all the same
  PrnType slanted = Curve(0, 1, {1, 2, 4, 0});
  slanted.Slant(0, 3, 2, 4);
  CHECK_SAME(ValuesOf(slanted), Floats({3, 4, 4, 0}));
  slanted.Slant(1, 9, 3, 9);
  slanted.Slant(1, 9, 3.5f, 9);
  CHECK_SAME(ValuesOf(slanted), Floats({3, 4, 4, 0}));
}
