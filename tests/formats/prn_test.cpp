#include <locale>

#include "support/formats.h"

using namespace kem::test;

namespace {

const std::string kHeader = "XY\nnm\r\ncounts\n\"Start : \"1\n\"Stop  : \"3\nrun.prn\n\n";

std::string NXYText(const std::string& rows = "1 10 20 30\n2 11 21 31\n") {
  return "NXY 3 time (s)\r\none\ntwo\nthree\nskip\nskip\nthe name\nskip\n" + rows;
}

// Digits in groups of three with a blank between, as many languages have them.
struct Grouping : std::numpunct<char> {
  char do_thousands_sep() const override { return ' '; }
  std::string do_grouping() const override { return "\3"; }
};

// One column of several: result, count and facts.
std::string Column(const std::string& bytes, int index) {
  const TempFolder folder;
  std::ifstream in(folder.Write("in.txt", bytes), std::ios::binary);
  in.imbue(std::locale(std::locale::classic(), new Grouping));
  PrnType r;
  int count = 0;
  const int result = r.ReadNXYPrn(in, count, index);
  return result == 0 ? "refused" : std::to_string(count) + ": " + Facts(r);
}

std::string Row(int k) { return std::to_string(k) + " " + std::to_string(-k) + "\n"; }

std::string Loaded(const std::string& bytes, int (PrnType::*reader)(std::ifstream&)) {
  const Read file(bytes, reader);
  return file.result == 0 ? "refused" : Facts(file.record);
}

}  // namespace

TEST_CASE("columns: XY prn header and points; its header may be cut, but no line of it too long") {
  CHECK(Loaded(kHeader + "1 4\n2 -5\n3 6\n", &PrnType::ReadXYPrn) ==
        "1 XY 3x3 x 1 3 0: 1 2 3 y -5 6 0 = 4 -5 6 | nm|counts|run.prn");
  CHECK(Loaded("XY\nnm\ncou", &PrnType::ReadXYPrn) == "1 XY 0x0 x 0 0 0: y 0 0 0 = | nm|cou|");
  for (const auto& [length, result] : {std::pair{132, 0}, {131, 1}}) {
    const std::string title(static_cast<std::size_t>(length), 'x');
    CHECK(Read("XY\n" + title + "\n1\n2\n3\n4\n5\n1 2\n", &PrnType::ReadXYPrn).result == result);
  }
}

TEST_CASE("columns: where a list of pairs or values ends") {
  std::string many;
  for (int k = 0; k < 129; ++k) many += Row(k);
  const std::pair<std::string, int> cases[] = {
      {"1 2\n3 4\n", 2}, {"1 2\n3 4", 1}, {"1 2\n3\n", 1},        {"1 2 end 3 4\n", 1}, {"", 0},
      {"no number", 0},  {many, 129},     {"1\n2\n\n3\t4 \n", 2}, {"1 2 1e99 4\n", 1},  {"1 2 3 4\n5 6 \n", 3},
      {"1 2\r\n", 1}};
  for (const auto& [text, points] : cases) {
    const std::string start = text.substr(0, 40);
    CAPTURE(start);
    const Read file(text, &PrnType::ReadDumbTwo);
    CHECK((file.result == 1 && file.record.nX == points && file.record.nY == points));
  }
  CHECK(Loaded("", &PrnType::ReadDumbTwo) == "1 XY 0x0 x 0 0 0: y 0 0 0 = | X|Y|");
  CHECK(Loaded("1 2 3\n", &PrnType::ReadDumbOne) == "0 Y 3x3 x 0 2 0 y 1 3 0 = 1 2 3 | X|Y|");
}

TEST_CASE("columns: one column of several") {
  CHECK(Column(NXYText(), 0) == "3: 0 XY 2x2 x 1 2 1: 1 2 y 10 11 1 = 10 11 |  time (s)\r|one|the name");
  CHECK(ReadNextFlag == 1);
  CHECK(Column(NXYText(), 2) == "3: 0 XY 2x2 x 1 2 1: 1 2 y 20 21 1 = 20 21 |  time (s)\r|two|the name");
  CHECK(ReadNextFlag == 2);
  CHECK(Column(NXYText(), 3) == "3: 0 XY 2x2 x 1 2 1: 1 2 y 30 31 1 = 30 31 |  time (s)\r|three|the name");
  CHECK(ReadNextFlag == 0);
  CHECK(Column(NXYText("1 10 20 30\n2 11 x 31\n"), 1) ==
        "3: 0 XY 1x1 x 1 1 1: 1 y 10 10 1 = 10 |  time (s)\r|one|the name");
  CHECK(Column(NXYText(""), 2) == "3: 0 XY 0x0 x 0 0 1: y 0 0 1 = |  time (s)\r|two|the name");
  for (const int index : {4, -1}) CHECK(Column(NXYText(), index) == "refused");
  for (const char* text :
       {"NXY 0 t\n", "NXY many\n", "NXY 2147483647 t\na\nb\nc\nd\n", "NXY 1 t\none\nskip\nskip\nname\n"})
    CHECK(Column(text, 1) == "refused");
}

TEST_CASE("columns: what is written is read back, with a running X of a defined axis") {
  PrnType curve = Curve(400, 0.1f, {0, 1e7f, 2e7f});
  std::snprintf(curve.fileName, sizeof curve.fileName, "source");
  const std::string text = Written(curve, &PrnType::WriteXYPrn);
  CHECK(text == "XY\nX\nY\n\"Start : \"400\n\"Stop  : \"400.2\nsource\n\n400   0\n400.1   1e+07\n400.2   2e+07\n");
  CHECK(Loaded(text, &PrnType::ReadXYPrn) ==
        "1 XY 3x3 x 400 400.200012 0: 400 400.100006 400.200012 y 0 20000000 0 = 0 10000000 20000000 | X|Y|source");
  CHECK(Written(Curve({3, 1, 2}, {7, 8, 9}), &PrnType::WriteXYPrn) ==
        "XY\nX\nY\n\"Start : \"3\n\"Stop  : \"2\n\n\n3   7\n1   8\n2   9\n");
  CHECK(WriteFailedFlag == 0);
  PrnType named(AllocX);
  named.nY = 3;  // a shape that stores nothing, whatever its counts say
  for (const PrnType& none : {PrnType(), PrnType(AllocZ, 2, 2), named})
    CHECK(Written(none, &PrnType::WriteXYPrn).empty());
}

TEST_CASE("columns: text that is longer than what goes to the disk at once") {
  constexpr int kCount = 60'000;
  PrnType curve(AllocXY, kCount);
  std::string rows;
  for (int k = 0; k < kCount; ++k) {
    curve.xArray[k] = -1e-9f / static_cast<float>(k + 1);
    curve.yArray[k] = static_cast<float>(k % 100);
    char row[64];
    std::snprintf(row, sizeof row, "%g   %g\n", curve.xArray[k], curve.yArray[k]);
    rows += row;
  }
  CHECK(rows.size() > 1 << 20);
  CHECK(Written(curve, &PrnType::WriteXYPrn).ends_with("\n\n" + rows));
}
