#include "support/formats.h"
#include "support/records.h"

using namespace kem::test;

namespace {

const std::string kDefined =
    "ca          5\nfield\nsignal\n\"start      :\" 10\n\"increment  :\" 2\n\n1\n-2\n3.5\n4\n5\n";
const std::string kStored =
    " \"XY: #points:\"   2\nfield\nsignal\n\"start      :\" 3\n\"end        :\" 4\n\n7\n8\n3\n4\n";

PrnType Titled(PrnType curve) {
  std::snprintf(curve.xLabel, kTextSize, "field");
  std::snprintf(curve.yLabel, kTextSize, "signal");
  return curve;
}

}  // namespace

TEST_CASE("cvt: both variants as text, and back, with either line end") {
  const PrnType defined = Titled(Curve(10, 2, {1, -2, 3.5f, 4, 5}));
  const PrnType stored = Titled(Curve({3, 4}, {7, 8}));
  CHECK(Written(defined, &PrnType::WriteCvt) == kDefined);
  CHECK(Written(stored, &PrnType::WriteCvt) == kStored);
  CHECK(Written(PrnType(), &PrnType::WriteCvt).empty());
  CHECK(Written(PrnType(AllocZ, 2, 2), &PrnType::WriteCvt).empty());
  for (const PrnType* curve : {&defined, &stored})
    for (const bool windows : {false, true}) {
      const std::string text = Written(*curve, &PrnType::WriteCvt);
      const Read back(windows ? WithCrLf(text) : text, &PrnType::ReadCvt);
      const PrnType& r = back.record;
      REQUIRE(back.result == 1);
      CHECK(r.fileType == FileCvt);
      CHECK(r.allocType == curve->allocType);
      CHECK(r.active == 1);
      CHECK_SAME(XOf(r), XOf(*curve));
      CHECK_SAME(ValuesOf(r), ValuesOf(*curve));
      CHECK_BITS(r.xEnd, curve->xEnd);
      CHECK(std::string(r.xLabel) == "field");
      CHECK(std::string(r.yLabel) == "signal");
    }
}

TEST_CASE("cvt: the axis lines are lenient, the count line does not count") {
  struct Case {
    const char* start;
    const char* step;
    float xStart;
    float xEnd;
  };
  for (const Case& c : {Case{"\"start:\"10", "\"increment     :\"   -2", 10, 6},
                        {"start 1e3", "increment .5", 1e3f, 1001},
                        {"10", "2", 0, 2},
                        {"\"begin\" 5", "", 0, 2}}) {
    const Read file(std::string("ca 99\nx\ny\n") + c.start + "\n" + c.step + "\n\n1 2 3\n", &PrnType::ReadCvt);
    CHECK(file.record.nY == 3);
    CHECK_BITS(file.record.xStart, c.xStart);
    CHECK_BITS(file.record.xEnd, c.xEnd);
  }
}

TEST_CASE("cvt: stored X values, where a file may end, and what is refused") {
  const auto stored = [](const std::string& count, const std::string& values) {
    return Read(" \"XY: #points:\"   " + count + "\nx\ny\n\n\n\n" + values, &PrnType::ReadCvt);
  };
  CHECK(stored("0", "").result == 1);
  CHECK(stored("0", "").record.nY == 0);
  const Read shortX = stored("2", "7 8\n3");
  CHECK_SAME(XOf(shortX.record), (Floats{3, 0}));
  CHECK(stored("2", "7").record.nY == 2);  // ended by the end of the file, not by a failure
  for (const char* values : {"7\n", "7 x 8\n"}) CHECK(stored("2", values).result == 0);
  for (const char* count : {"-1", "many"}) CHECK(stored(count, "1 2 3 4\n").result == 0);
  CHECK(ThrowsBadAlloc("XY: 99999999999\n\n\n\n\n\n", &PrnType::ReadCvt));
  CHECK(Read("ca 1\nx\ny\n\n\n", &PrnType::ReadCvt).result == 0);
  CHECK(Read("ca 1\nx\n" + std::string(132, 'y') + "\n\n\n\n1\n", &PrnType::ReadCvt).result == 0);
  for (const std::string& text : {kDefined, kStored}) {
    LoadEveryPrefix("cut.cvt", text, 200);
    LoadDamaged("hurt.cvt", text, 100);
  }
}
