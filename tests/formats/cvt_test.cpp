#include "support/formats.h"

using namespace kem::test;

TEST_CASE("cvt: both variants as text, and back, with either line end") {
  struct Case {
    PrnType curve;
    std::string text, facts;
  };
  for (const Case& c : {Case{Curve(10, 2, {1, -2, 3.5f, 4, 5}),
                             "ca          5\nX\nY\n\"start      :\" 10\n\"increment  :\" 2\n\n1\n-2\n3.5\n4\n5\n",
                             "0 Y 5x5 x 10 18 2 y -2 5 0 = 1 -2 3.5 4 5 | X|Y|"},
                        {Curve({3, 4}, {7, 8}),
                         " \"XY: #points:\"   2\nX\nY\n\"start      :\" 3\n\"end        :\" 4\n\n7\n8\n3\n4\n",
                         "0 XY 2x2 x 3 4 1: 3 4 y 7 8 1 = 7 8 | X|Y|"}}) {
    CHECK(Written(c.curve, &PrnType::WriteCvt) == c.text);
    for (const std::string& text : {c.text, WithCrLf(c.text)}) {
      const Read back(text, &PrnType::ReadCvt);
      CHECK(back.result == 1);
      CHECK(Facts(back.record) == c.facts);
    }
  }
  for (const PrnType& other : {PrnType(), PrnType(AllocZ)}) CHECK(Written(other, &PrnType::WriteCvt).empty());
}

TEST_CASE("cvt: the axis lines are lenient, the count line does not count") {
  struct Case {
    std::string axis, facts;
  };
  for (const Case& c : {Case{"\"start:\"10\n\"increment     :\"   -2", "x 10 6 -2"},
                        {"start 1e3\nincrement .5", "x 1000 1001 0.5"},
                        {"10\n2", "x 0 2 1"},
                        {"\"begin\" 5\n", "x 0 2 1"}})
    CHECK(Facts(Read("ca 99\ntitle\ny\n" + c.axis + "\n\n1 2 3\n", &PrnType::ReadCvt).record) ==
          "0 Y 3x3 " + c.facts + " y 1 3 0 = 1 2 3 | title|y|");
}

TEST_CASE("cvt: stored X values, where a file may end, and what is refused") {
  const auto stored = [](const std::string& count, const std::string& values) {
    return Read(" \"XY: #points:\"   " + count + "\nx\ny\n\n\n\n" + values, &PrnType::ReadCvt);
  };
  CHECK(stored("0", "").result == 1);
  CHECK_SAME(XOf(stored("2", "7 8\n3").record), (Floats{3, 0}));
  CHECK(stored("2", "7").record.nY == 2);  // ended by the end of the file, which is no failure
  for (const char* values : {"7\n", "7 x 8\n"}) CHECK(stored("2", values).result == 0);
  for (const char* count : {"-1", "many"}) CHECK(stored(count, "1 2 3 4\n").result == 0);
  CHECK_THROWS_AS(stored("99999999999", ""), std::bad_alloc);
  CHECK(Read("ca 1\nx\ny\n\n\n", &PrnType::ReadCvt).result == 0);
}
