#include <cmath>
#include <locale>

#include "support/support.h"

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

// A file read by one of the column readers.
struct Read {
  TempFolder folder;
  PrnType record;
  int count = 0;
  int result = 0;

  Read(const std::string& bytes, int (PrnType::*reader)(std::ifstream&)) {
    std::ifstream in(folder.Write("in.txt", bytes), std::ios::binary);
    result = (record.*reader)(in);
  }
  Read(const std::string& bytes, int index) {
    std::ifstream in(folder.Write("in.txt", bytes), std::ios::binary);
    in.imbue(std::locale(std::locale::classic(), new Grouping));
    result = record.ReadNXYPrn(in, count, index);
  }
};

std::string Row(int k) { return std::to_string(k) + " " + std::to_string(-k) + "\n"; }

}  // namespace

TEST_CASE("columns: XY prn header and points") {
  const Read file(kHeader + "1 4\n2 -5\n3 6\n", &PrnType::ReadXYPrn);
  const PrnType& r = file.record;
  REQUIRE(file.result == 1);
  CHECK(r.fileType == FileXY);
  CHECK(r.allocType == AllocXY);
  CHECK(r.active == 1);
  REQUIRE(r.nY == 3);
  CHECK_BITS(r.xArray[2], 3);
  CHECK_BITS(r.yStart, -5);
  CHECK_BITS(r.xEnd, 3);
  CHECK(std::string(r.xLabel) == "nm");
  CHECK(std::string(r.yLabel) == "counts");
  CHECK(std::string(r.zLabel) == "run.prn");
}

TEST_CASE("columns: where a list of pairs ends") {
  struct Case {
    std::string text;
    int points;
  };
  std::string many;
  for (int k = 0; k < 129; ++k) many += Row(k);
  const Case cases[] = {
      {"1 2\n3 4\n", 2}, {"1 2\n3 4", 1}, {"1 2\n3\n", 1},        {"1 2 end 3 4\n", 1}, {"", 0},
      {"no number", 0},  {many, 129},     {"1\n2\n\n3\t4 \n", 2}, {"1 2 1e99 4\n", 1},  {"1 2 3 4\n5 6 \n", 3},
      {"1 2\r\n", 1}};
  for (const Case& c : cases) {
    CAPTURE(c.text.substr(0, 40));
    const Read file(c.text, &PrnType::ReadDumbTwo);
    CHECK(file.result == 1);
    CHECK(file.record.nX == c.points);
    CHECK(file.record.nY == c.points);
  }
  const Read empty("", &PrnType::ReadDumbTwo);
  CHECK_BITS(empty.record.xStart, 0);
  CHECK_BITS(empty.record.yEnd, 0);
}

TEST_CASE("columns: a single column is a curve over its index") {
  const Read file("1 2 3\n", &PrnType::ReadDumbOne);
  CHECK(file.record.allocType == AllocY);
  CHECK(file.record.nY == 3);
  CHECK_BITS(file.record.xEnd, 2);
  CHECK_BITS(file.record.xStep, 0);
  CHECK_BITS(file.record.yEnd, 3);
}

TEST_CASE("columns: XY prn with an overlong header line, or cut inside its header") {
  CHECK(Read("XY\n" + std::string(132, 'x') + "\n1\n2\n3\n4\n5\n1 2\n", &PrnType::ReadXYPrn).result == 0);
  CHECK(Read("XY\n" + std::string(131, 'x') + "\n1\n2\n3\n4\n5\n1 2\n", &PrnType::ReadXYPrn).result == 1);
  const Read cut("XY\nnm\ncou", &PrnType::ReadXYPrn);
  CHECK(cut.result == 1);
  CHECK(std::string(cut.record.yLabel) == "cou");
  CHECK(std::string(cut.record.zLabel).empty());
  CHECK(cut.record.nY == 0);
}

TEST_CASE("columns: one column of several") {
  struct Case {
    int index;
    float first;
    const char* title;
    int next;
  };
  for (const Case& c : {Case{0, 10, "one", 1}, {1, 10, "one", 1}, {2, 20, "two", 2}, {3, 30, "three", 0}}) {
    const Read file(NXYText(), c.index);
    REQUIRE(file.result == 1);
    CHECK(file.count == 3);
    CHECK(file.record.fileType == FileCvt);
    CHECK_BITS(file.record.yArray[0], c.first);
    CHECK_BITS(file.record.yArray[1], c.first + 1);
    CHECK(std::string(file.record.xLabel) == " time (s)\r");
    CHECK(std::string(file.record.yLabel) == c.title);
    CHECK(std::string(file.record.zLabel) == "the name");
    CHECK(ReadNextFlag == c.next);
  }
  for (const int index : {4, -1}) CHECK(Read(NXYText(), index).result == 0);
  const std::string noLastLine = "NXY 1 t\none\nskip\nskip\nname\n";
  for (const char* text : {"NXY 0 t\n", "NXY many\n", "NXY 2147483647 t\na\nb\nc\nd\n", noLastLine.c_str()})
    CHECK(Read(text, 1).result == 0);
  CHECK(Read(NXYText("1 10 20 30\n2 11 x 31\n"), 1).record.nY == 1);
  CHECK(Read(NXYText(""), 2).record.nY == 0);
}

TEST_CASE("columns: what is written is read back, with a running X of a defined axis") {
  const TempFolder folder;
  std::string path = folder.Path("out.prn");
  PrnType curve(AllocY, 4);
  curve.xStart = 400;
  curve.xStep = 0.1f;
  curve.xEnd = 400.3f;
  std::snprintf(curve.fileName, sizeof curve.fileName, "source");
  for (int k = 0; k < 4; ++k) curve.yArray[k] = static_cast<float>(k) * 1e7f;
  REQUIRE(curve.WriteXYPrn(path.data()) == 1);
  CHECK(WriteFailedFlag == 0);
  CHECK(ReadLines(path).substr(0, 63) ==
        "XY\nX\nY\n\"Start : \"400\n\"Stop  : \"400.3\nsource\n\n400   0\n400.1   1e");
  const PrnType back(path.c_str(), -1);
  REQUIRE(back.nY == 4);
  CHECK_BITS(back.xArray[3], 400.3f);
  CHECK_BITS(back.yArray[3], 3e7f);
  CHECK(std::string(back.zLabel) == "source");

  PrnType empty;
  std::string none = folder.Path("none.prn");
  CHECK(empty.WriteXYPrn(none.data()) == 0);
  CHECK(PrnType(AllocZ, 2, 2).WriteXYPrn(none.data()) == 0);
  PrnType named(AllocX);
  named.nY = 3;  // a shape that stores nothing, whatever its counts say
  CHECK(named.WriteXYPrn(none.data()) == 0);
  CHECK_FALSE(std::filesystem::exists(none));
  std::string nowhere = folder.Path("no/such/folder.prn");
  CHECK(curve.WriteXYPrn(nowhere.data()) == 0);
}

TEST_CASE("columns: short and damaged files do no harm") {
  LoadEveryPrefix("cut.txt", kHeader + "1 4\n2 -5\n", 100);
  LoadEveryPrefix("cut.txt", NXYText(), 100);
  LoadDamaged("hurt.txt", NXYText(), 200);
}

TEST_CASE("columns: real column text without a signature loads when it is not to be sniffed") {
  if (!HaveSamples()) return;
  const std::string raman = SampleFolder() + "/xy_text/LDS821_raman.txt";
  const PrnType r(raman.c_str(), -1);
  REQUIRE(r.nY == 1333);  // the first seven lines count as header
  CHECK_BITS(r.xArray[0], 793.28035f);
  CHECK_BITS(r.yArray[0], -1082.7f);
  CHECK_BITS(r.xEnd, 2059.03003f);
  CHECK(PrnType((SampleFolder() + "/xy_text/JASCO_PbSe.txt").c_str(), -1).nY == 0);
}
