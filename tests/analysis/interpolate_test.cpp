#include <algorithm>
#include <limits>
#include <memory>
#include <new>

#include "support/support.h"

using namespace kem::test;
using Floats = std::vector<float>;
using Result = std::unique_ptr<PrnType>;

namespace {

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();

PrnType Curve(const Floats& x, const Floats& y) {
  PrnType curve(AllocXY, static_cast<int>(x.size()), 0);
  std::copy(x.begin(), x.end(), curve.xArray);
  std::copy(y.begin(), y.end(), curve.yArray);
  curve.fileName[0] = 'c';
  return curve;
}

// Values and axes between 0 and 1, the y axis in order.
PrnType Grid(Rng& rng, int nx, int ny, bool descending) {
  const auto unit = [&rng] { return static_cast<float>(rng() >> 8) * 0x1p-24f; };
  PrnType grid(AllocXYZ, nx, ny);
  std::generate_n(grid.xArray, nx, unit);
  std::generate_n(grid.yArray, ny, unit);
  std::sort(grid.yArray, grid.yArray + ny);
  if (descending) std::reverse(grid.yArray, grid.yArray + ny);
  for (int i = 0; i < nx; ++i) std::generate_n(grid.zArray[i], ny, unit);
  grid.fileName[0] = 'g';
  grid.MinMax();
  return grid;
}

}  // namespace

TEST_CASE("interpolate: a curve is drawn between the samples around each abscissa") {
  const PrnType curve = Curve({2.3f, 0.1f, 1.9f, 0.7f, 1.9f}, {9, 3, 4, 7, 6});
  Floats x{1.7f, 0.3f, 2.3f, 1.9f, 2.4f, 0, kNaN, kInfinity};
  const Floats y{4 + (7.0f - 4) / (0.7f - 1.9f) * (1.7f - 1.9f), 3 + (7.0f - 3) / (0.7f - 0.1f) * (0.3f - 0.1f), 9,
                 (6.0f - 4) * 0.5f};  // and 0 outside
  const Result r(&curve.InterpolateXY(x.data(), 8));
  REQUIRE(r->nX == 8);
  REQUIRE(r->nY == 8);
  for (std::size_t k = 0; k < x.size(); ++k) CHECK_BITS(r->xArray[k], x[k]);
  for (std::size_t k = 0; k < x.size(); ++k) CHECK_BITS(r->yArray[k], k < y.size() ? y[k] : 0);
  CHECK(r->allocType == AllocXY);
  CHECK(r->fileType == FileXY);
  CHECK(r->active == 1);
  CHECK(r->fileName == std::string("c"));
  CHECK_BITS(r->yEnd, 9);
}

TEST_CASE("interpolate: an even axis is accumulated, then defined") {
  const PrnType curve = Curve({0, 2}, {0, 2});
  float last = 0;
  for (int k = 0; k < 10; ++k) last += 0.1f;
  const Result r(&curve.InterpolateY(0, 1, 0.1f));
  REQUIRE(r->nY == 11);
  CHECK_BITS(r->yArray[10], last);
  CHECK((r->allocType == AllocY && r->fileType == FileXY && r->xEnd == 1 && r->xStep == 0.1f));
  const Result away(&curve.InterpolateY(1, 0, 0.5f));  // runs upwards from 1
  REQUIRE(away->nY == 3);
  CHECK_BITS(away->yArray[2], 2);
  CHECK((away->xStart == 1 && away->xEnd == 0));
}

TEST_CASE("interpolate: a grid resampled in any order has the values of At") {
  Rng rng(kSeed);
  CAPTURE(kSeed);
  for (int round = 0; round < 40; ++round) {
    CAPTURE(round);
    const PrnType grid = Grid(rng, 1 + round % 9, 1 + round % 13, round % 2);
    Floats x(10), y(14);
    for (float& t : x) t = std::clamp(static_cast<float>(rng() % 9) / 8, grid.xStart, grid.xEnd);
    for (float& t : y) t = std::clamp(static_cast<float>(rng() % 99) / 98, grid.yStart, grid.yEnd);
    const Result r(&grid.InterpolateXYZ(x.data(), 10, y.data(), 14));
    for (std::size_t i = 0; i < x.size(); ++i)
      for (std::size_t j = 0; j < y.size(); ++j) CHECK_BITS(r->zArray[i][j], grid.At(x[i], y[j]));
  }
}

TEST_CASE("interpolate: even axes of a grid become defined ones") {
  Rng rng(kSeed);
  const PrnType grid = Grid(rng, 5, 6, false);
  Floats x{0, 0.25f, 0.5f, 0.75f, 1}, y{1, 0.5f, 0};
  const Result full(&grid.InterpolateXYZ(x.data(), 5, y.data(), 3));
  const Result z(&grid.InterpolateZ(0, 1, 0.25f, 1, 0, -0.5f));
  const Result xz(&grid.InterpolateXZ(x.data(), 5, 1, 0, -0.5f));
  const Result yz(&grid.InterpolateYZ(0, 1, 0.25f, y.data(), 3));
  for (const auto& [r, allocType] : {std::pair(z.get(), AllocZ), {xz.get(), AllocXZ}, {yz.get(), AllocYZ}}) {
    CAPTURE(allocType);
    CHECK(r->allocType == allocType);
    CHECK(r->fileType == FileP3D);
    CHECK(r->fileName == std::string("g"));
    if (!r->HasX()) CHECK((r->xStart == 0 && r->xEnd == 1 && r->xStep == 0.25f));
    if (!r->HasY()) CHECK((r->yStart == 1 && r->yEnd == 0 && r->yStep == -0.5f));
    REQUIRE(r->nX == 5);
    REQUIRE(r->nY == 3);
    for (int i = 0; i < 5; ++i)
      for (int j = 0; j < 3; ++j) CHECK_BITS(r->zArray[i][j], full->zArray[i][j]);
  }
}

TEST_CASE("interpolate: sources that do not suit give the empty record, impossible counts none") {
  Rng rng(kSeed);
  const PrnType grid = Grid(rng, 2, 2, false), curve = Curve({0, 1}, {0, 1}), none;
  float t[] = {0.5f};
  for (const PrnType* notGrid : {&curve, &none}) CHECK(!*Result(&notGrid->InterpolateXYZ(t, 1, t, 1)));
  for (const PrnType* notCurve : {&grid, &none}) CHECK(!*Result(&notCurve->InterpolateXY(t, 1)));
  for (const int n : {0, -1}) CHECK(!*Result(&curve.InterpolateXY(t, n)));
  for (const int n : {0, -1}) CHECK(!*Result(&grid.InterpolateXYZ(t, 1, t, n)));
  CHECK(!*Result(&curve.InterpolateY(0, 1, 0)));
  for (const float step : {kNaN, 1e-30f, 1e-45f}) CHECK_THROWS_AS(curve.InterpolateY(0, 1, step), std::bad_alloc);
  CHECK_THROWS_AS(grid.InterpolateYZ(0, 1, 0, t, 1), std::bad_alloc);
}
