#include "support/formats.h"
#include "support/records.h"

using namespace kem::test;

namespace {

const std::string kGrid =
    "[P3D]\nwavelength\ntime\nsignal\nfirst\nthird\n\n[X] ARRAY 3\n400 410 425 \n[Y] DEFINITION\n0 2 1\n[Z]\n"
    "1 2 3 \n4 5 6 \n";
const std::string kCurve = "[P2D]\nfield\nsignal\n\n[X] DEFINITION\n0 10 5\n[Y]\n7 8.5 -9 \n";

PrnType Grid() {
  PrnType grid(AllocXZ, 3, 2);
  std::ranges::copy(Floats{400, 410, 425}, grid.xArray);
  for (int k = 0; k < 6; ++k) grid.zArray[k % 3][k / 3] = static_cast<float>(k + 1);
  grid.yEnd = 2;
  std::snprintf(grid.xLabel, kTextSize, "wavelength");
  std::snprintf(grid.yLabel, kTextSize, "time");
  std::snprintf(grid.zLabel, kTextSize, "signal");
  std::snprintf(grid.commentLines[0], kTextSize, "first");
  std::snprintf(grid.commentLines[2], kTextSize, "third");
  return grid;
}

}  // namespace

TEST_CASE("p3d: a grid as text, and back, with either line end") {
  CHECK(Written(Grid(), &PrnType::WriteP3D) == kGrid);
  for (const std::string& text : {kGrid, WithCrLf(kGrid), "leading lines\n" + kGrid}) {
    const Read file(text, &PrnType::ReadP3D);
    const PrnType& r = file.record;
    REQUIRE(file.result == 1);
    CHECK(r.fileType == FileP3D);
    CHECK(r.allocType == AllocXZ);
    CHECK(r.active == 1);
    REQUIRE(r.nX == 3);
    REQUIRE(r.nY == 2);
    CHECK_SAME(XOf(r), (Floats{400, 410, 425}));
    CHECK_SAME(ValuesOf(r), ValuesOf(Grid()));
    CHECK_BITS(r.xStart, 400);
    CHECK_BITS(r.yEnd, 2);
    CHECK_BITS(r.zMax, 6);
    CHECK(std::string(r.xLabel) == "wavelength");
    CHECK(std::string(r.zLabel) == "signal");
    CHECK(std::string(r.commentLines[0]) == "first");
    CHECK(std::string(r.commentLines[1]) == "third");
    CHECK(std::string(r.commentLines[2]).empty());
  }
}

TEST_CASE("p3d: a curve as text, and back") {
  PrnType curve = Curve(0, 5, {7, 8.5f, -9});
  std::snprintf(curve.xLabel, kTextSize, "field");
  std::snprintf(curve.yLabel, kTextSize, "signal");
  CHECK(Written(curve, &PrnType::WriteP2D) == kCurve);
  for (const std::string& text : {kCurve, WithCrLf(kCurve)}) {
    const Read file(text, &PrnType::ReadP2D);
    const PrnType& r = file.record;
    CHECK(r.fileType == FileP2D);
    CHECK(r.allocType == AllocY);
    CHECK(r.nX == 3);
    CHECK_SAME(ValuesOf(r), (Floats{7, 8.5f, -9}));
    CHECK_BITS(r.xStep, 5);
    CHECK_BITS(r.yStart, -9);
    CHECK(std::string(r.yLabel) == "signal");
  }
  const TempFolder folder;
  CHECK(PrnType(folder.Write("a.p2d", kCurve).c_str(), 0).nY == 3);
  CHECK(PrnType(folder.Write("a.txt", kGrid).c_str(), 0).nX == 3);
}

TEST_CASE("p3d: the points of a defined axis") {
  struct Case {
    const char* axis;
    int steps;
  };
  for (const Case& c :
       {Case{"0 10 1", 10}, {"10 0 1", 10}, {"0 10 -1", 10}, {"0 1 0.3", 3}, {"0 1 0.4", 3}, {"5 5 1", 0}}) {
    CAPTURE(c.axis);
    const std::string axis = std::string(" DEFINITION\n") + c.axis + "\n";
    const Read grid("[P3D]\nx\ny\nz\n[X]" + axis + "[Y]" + axis + "[Z]\n1 2", &PrnType::ReadP3D);
    CHECK(grid.record.allocType == AllocZ);
    CHECK(grid.record.nX == c.steps);
    CHECK(grid.record.nY == c.steps);
    CHECK(Read("[P2D]\nx\ny\n[X]" + axis + "[Y]\n1 2", &PrnType::ReadP2D).record.nY == c.steps + 1);
  }
}

TEST_CASE("p3d: sections in any layout, incomplete ones, and counts that are absurd") {
  const auto grid = [](const std::string& rest) { return "[P3D]\nx\ny\nz\n" + rest; };
  const Read wrapped(grid("[X] ARRAY 2\n1\n2 [Y] ARRAY 2\n5\n6\n[Z]\n1\n2 3\n\n4"), &PrnType::ReadP3D);
  CHECK(wrapped.record.allocType == AllocXYZ);
  CHECK_SAME(ValuesOf(wrapped.record), (Floats{1, 3, 2, 4}));
  const Read noCount(grid("[X] ARRAY\n[Y] ARRAY 1\n5\n[Z]\n1"), &PrnType::ReadP3D);
  CHECK(noCount.record.allocType == AllocYZ);
  CHECK(noCount.record.nX == 0);
  const Read noValues(grid("[X] ARRAY 2\n1 x\n"), &PrnType::ReadP3D);
  CHECK(noValues.record.nX == 2);
  CHECK_SAME(ValuesOf(noValues.record), (Floats{0, 0}));
  CHECK(Read("[P2D]\nx\ny\n[X] ARRAY 2\n1 2\n", &PrnType::ReadP2D).record.yEnd == 0);
  CHECK(Read("no tag\n", &PrnType::ReadP3D).result == 0);
  CHECK(Read(std::string(132, 'x') + "\n" + kGrid, &PrnType::ReadP3D).result == 0);
  for (const char* section :
       {"[X] ARRAY -1\n", "[X] ARRAY 99999999999\n", "[X] DEFINITION\n0 1 0\n", "[X] DEFINITION\n0 nan 1\n"}) {
    CAPTURE(section);
    CHECK(ThrowsBadAlloc(grid(section), &PrnType::ReadP3D));
    CHECK(ThrowsBadAlloc(std::string("[P2D]\nx\ny\n") + section, &PrnType::ReadP2D));
  }
}

TEST_CASE("p3d: twelve comment lines are kept, the rest is passed over") {
  std::string text = "[P2D]\nx\ny\n";
  for (int k = 0; k < 20; ++k) text += "comment " + std::to_string(k) + "\n";
  const Read file(text + "[X] ARRAY 1\n3\n[Y]\n4", &PrnType::ReadP2D);
  CHECK(std::string(file.record.commentLines[11]) == "comment 11");
  CHECK_SAME(XOf(file.record), Floats{3});
  CHECK_SAME(ValuesOf(file.record), Floats{4});
}

TEST_CASE("p3d: any shape comes back to six digits; the others are refused") {
  Rng rng(kSeed);
  CAPTURE(kSeed);
  for (int type = AllocY; type <= AllocXYZ; ++type) {
    PrnType record = RandomRecord(rng, type);
    record.yEnd += record.Is3D() ? record.yStep : 0;  // a grid has as many steps as points
    record.xEnd += record.Is3D() ? record.xStep : 0;
    const bool grid = record.Is3D() != 0;
    const std::string text = Written(record, grid ? &PrnType::WriteP3D : &PrnType::WriteP2D);
    const Read back(text, grid ? &PrnType::ReadP3D : &PrnType::ReadP2D);
    CHECK(back.record.allocType == type);
    // The titles and comment lines of a curve that was read are those of its new type.
    const std::string again = Written(back.record, grid ? &PrnType::WriteP3D : &PrnType::WriteP2D);
    CHECK(again.substr(again.find("[X]")) == text.substr(text.find("[X]")));
    CHECK(Written(record, grid ? &PrnType::WriteP2D : &PrnType::WriteP3D).empty());
  }
  CHECK(Written(PrnType(), &PrnType::WriteP3D).empty());
  CHECK(Written(PrnType(), &PrnType::WriteP2D).empty());
}

TEST_CASE("p3d: short and damaged files do no harm") {
  LoadEveryPrefix("cut.p3d", kGrid, 200);
  LoadEveryPrefix("cut.p2d", kCurve, 200);
  LoadDamaged("hurt.p3d", kGrid, 150);
  LoadDamaged("hurt.p2d", kCurve, 150);
}
