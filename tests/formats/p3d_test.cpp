#include "support/formats.h"

using namespace kem::test;

namespace {

const std::string kGrid =
    "[P3D]\nwavelength\nY\nsignal\nfirst\nthird\n\n[X] ARRAY 3\n400 410 425 \n[Y] DEFINITION\n0 2 1\n[Z]\n"
    "1 2 3 \n4 5 6 \n";
const std::string kCurve = "[P2D]\nfield\nY\n\n[X] DEFINITION\n0 10 5\n[Y]\n7 8.5 -9 \n";

}  // namespace

TEST_CASE("p3d: a grid and a curve as text, and back, with either line end") {
  PrnType grid(AllocXZ, 3, 2);
  Put({400, 410, 425}, grid.xArray);
  for (int k = 0; k < 6; ++k) grid.zArray[k % 3][k / 3] = static_cast<float>(k + 1);
  grid.yEnd = 2;
  std::snprintf(grid.xLabel, kTextSize, "wavelength");
  std::snprintf(grid.zLabel, kTextSize, "signal");
  std::snprintf(grid.commentLines[0], kTextSize, "first");
  std::snprintf(grid.commentLines[2], kTextSize, "third");
  PrnType wordy = grid;
  for (auto* text : {wordy.xLabel, wordy.commentLines[0], wordy.commentLines[5]})
    std::fill_n(text, kTextSize - 1, 'w');
  CHECK_SAME(ValuesOf(Read(Written(wordy, &PrnType::WriteP3D), &PrnType::ReadP3D).record), ValuesOf(grid));
  CHECK(Written(grid, &PrnType::WriteP3D) == kGrid);
  for (const std::string& text : {kGrid, WithCrLf(kGrid), "leading lines\n" + kGrid}) {
    const Read file(text, &PrnType::ReadP3D);
    CHECK(Facts(file.record) ==
          "2 XZ 3x2 x 400 425 1: 400 410 425 y 0 2 1 z 1 6 = 1 4 / 2 5 / 3 6 | wavelength|Y|signal");
    CHECK(std::string(file.record.commentLines[1]) == "third");
  }
  PrnType curve = Curve(0, 5, {7, 8.5f, -9});
  std::snprintf(curve.xLabel, kTextSize, "field");
  CHECK(Written(curve, &PrnType::WriteP2D) == kCurve);
  const Read file(WithCrLf(kCurve), &PrnType::ReadP2D);
  CHECK(Facts(file.record) == "12 Y 3x3 x 0 10 5 y -9 8.5 1 = 7 8.5 -9 | field|Y|");
  for (const auto writer : {&PrnType::WriteP2D, &PrnType::WriteP3D}) CHECK(Written(PrnType(), writer).empty());
  CHECK(Written(curve, &PrnType::WriteP3D).empty());
  CHECK(Written(grid, &PrnType::WriteP2D).empty());
}

TEST_CASE("p3d: the points of a defined axis") {
  struct Case {
    std::string axis;
    int steps;
  };
  for (const Case& c : {Case{"0 10 1", 10}, {"10 0 1", 10}, {"0 1 0.3", 3}, {"0 1 0.4", 3}, {"5 5 1", 0}}) {
    CAPTURE(c.axis);
    const Read grid("[P3D]\n\n\n\n[X] DEFINITION\n" + c.axis + "\n[Y] DEFINITION\n0 4 2\n", &PrnType::ReadP3D);
    CHECK(grid.record.allocType == AllocZ);
    CHECK(grid.record.nX == c.steps);
    CHECK(Read("[P2D]\n\n\n[X] DEFINITION\n" + c.axis + "\n", &PrnType::ReadP2D).record.nY == c.steps + 1);
  }
}

TEST_CASE("p3d: sections in any layout, incomplete, or with absurd counts") {
  struct Case {
    std::string sections;
    int allocType;
    Floats values;
  };
  for (const Case& c : {Case{"[X] ARRAY 2\n1\n2 [Y] ARRAY 2\n5\n6\n[Z]\n1\n2 3\n\n4", AllocXYZ, {1, 3, 2, 4}},
                        {"[X] ARRAY\n[Y] ARRAY 1\n5\n[Z]\n1", AllocYZ, {}},
                        {"[X] ARRAY 2\n1 x\n", AllocXZ, {0, 0}},
                        {std::string(30, '\n') + "[X] ARRAY 1\n1\n[Y]\n[Z]\n7\n", AllocXZ, {7}}}) {
    const Read file("[P3D]\n\n\n\n" + c.sections, &PrnType::ReadP3D);
    CHECK(file.record.allocType == c.allocType);
    CHECK_SAME(ValuesOf(file.record), c.values);
  }
  for (const char* axis : {"ARRAY -1", "ARRAY 99999999999", "DEFINITION\n0 1 0", "DEFINITION\n0 nan 1"}) {
    CHECK_THROWS_AS(Read(std::string("[P3D]\n\n\n\n[X] ") + axis, &PrnType::ReadP3D), std::bad_alloc);
    CHECK_THROWS_AS(Read(std::string("[P2D]\n\n\n[X] ") + axis, &PrnType::ReadP2D), std::bad_alloc);
  }
  CHECK(Read("no tag\n", &PrnType::ReadP3D).result == 0);
  CHECK(Read(std::string(132, 'x') + "\n" + kGrid, &PrnType::ReadP3D).result == 0);
}
