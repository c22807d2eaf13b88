#include <limits>
#include <new>

#include "support/records.h"

using namespace kem::test;

TEST_CASE("interpolate: a curve is drawn between the samples around each abscissa") {
  const PrnType curve = Curve({2.3f, 0.1f, 1.9f, 0.7f, 1.9f}, {9, 3, 4, 7, 6});
  Floats x{1.7f, 0.3f, 2.3f, 1.9f, 2.4f, 0, NAN, INFINITY};
  const Floats y{4 + (7.0f - 4) / (0.7f - 1.9f) * (1.7f - 1.9f),
                 3 + (7.0f - 3) / (0.7f - 0.1f) * (0.3f - 0.1f),
                 9,
                 (6.0f - 4) * 0.5f,
                 0,
                 0,
                 0,
                 0};
  CheckResult(*Take(curve.InterpolateXY(x.data(), 8)), Curve(x, y), curve, FileXY);
}

TEST_CASE("interpolate: an even axis is accumulated, then defined") {
  const PrnType curve = Curve({0, 2}, {0, 2});
  for (const auto& [from, to, step, count] : {std::tuple(0.0f, 1.0f, 0.1f, 11), {1.0f, 0.0f, 0.5f, 3}}) {
    PrnType rule = Curve(from, step, Coordinates(false, nullptr, from, step, count));  // upwards, also from 1 to 0
    rule.xEnd = to;
    CheckResult(*Take(curve.InterpolateY(from, to, step)), rule, curve, FileXY);
  }
}

TEST_CASE("interpolate: a grid resampled in any order has the values of At") {
  ForRandomRecords(AllocZ, [](PrnType& r, Rng& rng) {
    r.fileType = FileHPDTA;  // whose header stays behind
    const Floats xs = XOf(r), ys = YOf(r);
    PrnType rule(AllocXYZ, 10, 14);
    const auto inside = [&rng](const Floats& axis, float start, float end) {
      return std::clamp(Bound(rng, axis), std::min(start, end), std::max(start, end));
    };
    std::generate_n(rule.xArray, rule.nX, [&] { return inside(xs, r.xStart, r.xEnd); });
    std::generate_n(rule.yArray, rule.nY, [&] { return inside(ys, r.yStart, r.yEnd); });
    for (int i = 0; i < rule.nX; ++i)
      for (int j = 0; j < rule.nY; ++j) rule.zArray[i][j] = r.At(rule.xArray[i], rule.yArray[j]);
    rule.MinMax();
    CheckResult(*Take(r.InterpolateXYZ(rule.xArray, rule.nX, rule.yArray, rule.nY)), rule, r, FileP3D);
  });
}

TEST_CASE("interpolate: even axes of a grid become defined ones") {
  ForRandomRecords(AllocZ, [](const PrnType& r, Rng&) {
    Floats x{0, 0.25f, 0.5f, 0.75f, 1}, y{1, 0.5f, 0};
    PrnType rule(*Take(r.InterpolateXYZ(x.data(), 5, y.data(), 3)));
    const auto xz = Take(r.InterpolateXZ(x.data(), 5, 1, 0, -0.5f));
    const auto yz = Take(r.InterpolateYZ(0, 1, 0.25f, y.data(), 3));
    const auto z = Take(r.InterpolateZ(0, 1, 0.25f, 1, 0, -0.5f));
    for (const auto& [result, type] : {std::pair(xz.get(), AllocXZ), {yz.get(), AllocYZ}, {z.get(), AllocZ}}) {
      CHECK((result->allocType == type && result->fileType == FileP3D && Name(*result) == r.fileName));
      CHECK((result->HasX() || (result->xStart == 0 && result->xEnd == 1 && result->xStep == 0.25f)));
      CHECK((result->HasY() || (result->yStart == 1 && result->yEnd == 0 && result->yStep == -0.5f)));
      CHECK_SAME(ValuesOf(*result), ValuesOf(rule));
    }
  });
}

TEST_CASE("interpolate: sources that do not suit give the empty record, impossible counts none") {
  const PrnType grid(AllocXYZ, 2, 2), curve = Curve({0, 1}, {0, 1}), none;
  float t[] = {0.5f};
  for (const PrnType* notGrid : {&curve, &none}) CheckEmpty(*Take(notGrid->InterpolateXYZ(t, 1, t, 1)));
  for (const PrnType* notCurve : {&grid, &none}) CheckEmpty(*Take(notCurve->InterpolateXY(t, 1)));
  for (const int n : {0, -1}) CHECK((!*Take(curve.InterpolateXY(t, n)) && !*Take(grid.InterpolateXYZ(t, 1, t, n))));
  CheckEmpty(*Take(curve.InterpolateY(0, 1, 0)));
  for (const float step : {NAN, 1e-30f, 1e-45f}) CHECK_THROWS_AS(curve.InterpolateY(0, 1, step), std::bad_alloc);
  CHECK_THROWS_AS(grid.InterpolateYZ(0, 1, 0, t, 1), std::bad_alloc);
}
