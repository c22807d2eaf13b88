#include <sstream>

#include "support/support.h"

using namespace kem::test;

namespace {

struct Descriptor {
  std::string order = "BIG";
  std::string columns = "REAL";
  std::string format = "S";
  std::string yType = "NODATA";
  int xPoints = 3;
  int yPoints = -3;       // counts only where the axis is used
  std::string more = "";  // further #DESC lines
};

std::string DescriptorText(const Descriptor& d = {}) {
  std::ostringstream text;
  text << "#DESC\t1.2 * DESCRIPTOR INFORMATION ***\n* a comment line\n"
       << "DSRC\t" << std::string(200, 'x') << "\nBSEQ\t" << d.order << "\nIKKF\t" << d.columns
       << "\nXTYP\tIDX\nYTYP\t" << d.yType << "\nZTYP\tNODATA\nIRFMT\t" << d.format << "\nIIFMT\t" << d.format
       << "\nXPTS\t" << d.xPoints << " * points\nXMIN\t3000\nXWID\t100\nYPTS\t" << d.yPoints
       << "\nZPTS\t-2000000000\nYMIN\t1\nYWID\t2\n"
       << "TITL\t'strong pitch'\nIRNAM\t'Intensity'\nIRUNI\t''\nXNAM\t'Field'\nXUNI\t'G'\n"
       << d.more << "#SPL\t1.2 * STANDARD PARAMETER LAYER\n"
       << "OPER    " << std::string(132, 'x')
       << "\nCMNT    a long comment\nEXPT    CW\nOXS1    IADC\nAXS1    B0VL\n"
       << "MWFQ    9.5e+09\nMWPW    0.02\nRCAG    47\nRCTC    0.01\nRCPH    1.5\nRCHM    2\nRCOF    3\n"
       << "B0MA    0.0001\nB0MF    100000\nSPTP    0.04\n#DSL\t1.0\nMWFQ 1\n";
  return text.str();
}

// A pair of files and the record loaded from it.
struct Loaded {
  TempFolder folder;
  int columns = 0;
  PrnType record;
  int result = 0;
  std::string printed;

  Loaded(const std::string& descriptor, const std::string& values, int which = 0) {
    const std::string path = folder.Write("測定.DSC", descriptor);
    folder.Write("測定.DTA", values);
    printed = Printed([&] { result = record.ReadBES3T(path.c_str(), columns, which); });
  }
};

std::string Shorts(std::initializer_list<int> values, std::endian order = std::endian::big) {
  Bytes bytes(order);
  for (const int v : values) bytes.Put(static_cast<std::int16_t>(v));
  return bytes;
}

}  // namespace

TEST_CASE("bes3t: a curve with its axis, labels and parameters") {
  const Loaded file(DescriptorText(), Shorts({1, -2, 300}));
  const PrnType& r = file.record;
  REQUIRE(file.result == 1);
  CHECK(file.columns == 1);
  CHECK(r.fileType == FileBES3T);
  CHECK(r.allocType == AllocY);
  CHECK(r.active == 1);
  REQUIRE(r.nY == 3);
  CHECK(r.nX == 3);
  CHECK_BITS(r.yArray[0], 1);
  CHECK_BITS(r.yArray[1], -2);
  CHECK_BITS(r.yArray[2], 300);
  CHECK_BITS(r.xStart, 3000);
  CHECK_BITS(r.xEnd, 3100);
  CHECK_BITS(r.xStep, 50);
  CHECK_BITS(r.yStep, 0);
  CHECK_BITS(r.yStart, -2);
  CHECK_BITS(r.yEnd, 300);
  CHECK(std::string(r.xLabel) == "Field (G)");
  CHECK(std::string(r.yLabel) == "Intensity ()");
  CHECK(std::string(r.zLabel) == "strong pitch");
  CHECK(std::string(r.bes3t.bes3tComment) == "a long comment");
  CHECK(std::string(r.bes3t.bes3tExperiment) == "Continuous Wave");
  CHECK(std::string(r.bes3t.bes3tOrdinateSource) == "High-Res Integrating ADC");
  CHECK(std::string(r.bes3t.bes3tAbscissaSource) == "Magnetic Field (T)");
  CHECK_BITS(r.bes3t.bes3tMwFrequency, 9.5e9f);  // the #DSL section is not read
  CHECK_BITS(r.bes3t.bes3tTimeConstant, 0.01f);
  CHECK_BITS(r.bes3t.bes3tGain, 47);
  CHECK_BITS(r.bes3t.bes3tSptp, 0.04f);
  CHECK_BITS(r.bes3t.bes3tModFrequency, 1e5f);
}

TEST_CASE("bes3t: value formats and byte orders") {
  const auto first = [](const std::string& format, const std::string& order, const std::string& bytes) {
    const Loaded file(DescriptorText({.order = order, .format = format, .xPoints = 1}), bytes);
    REQUIRE(file.result == 1);
    return file.record.yArray[0];
  };
  const auto big = [] { return Bytes(std::endian::big); };
  CHECK_BITS(first("C", "BIG", big().Put(std::int8_t{-3})), -3);
  CHECK_BITS(first("S", "BIG", std::string("\0\1", 2)), 1);
  CHECK_BITS(first("S", "LIT", std::string("\0\1", 2)), 256);
  CHECK_BITS(first("I", "BIG", big().Put(-70000)), -70000);
  CHECK_BITS(first("F", "LIT", Bytes().Put(1.5f)), 1.5f);
  CHECK_BITS(first("D", "BIG", big().Put(0.1)), 0.1f);
  CHECK_BITS(first("  \tD,D", "BIG", big().Put(-2.5)), -2.5f);
}

TEST_CASE("bes3t: columns of a point are loaded one per call and announced by ReadNextFlag") {
  const std::string complex = DescriptorText({.columns = "CPLX", .xPoints = 2});
  const std::string values = Shorts({1, 10, 2, 20});
  const Loaded real(complex, values, 1);
  CHECK(real.columns == 2);
  CHECK(ReadNextFlag == 1);
  CHECK_BITS(real.record.yArray[1], 2);
  const Loaded imaginary(complex, values, 2);
  CHECK(ReadNextFlag == 0);
  CHECK_BITS(imaginary.record.yArray[1], 20);
  CHECK(Loaded(complex, values, 3).result == 0);
  CHECK(Loaded(complex, values, -1).result == 0);
  CHECK(Loaded(DescriptorText({.columns = "REAL,CPLX,REAL"}), "", 4).columns == 4);
}

TEST_CASE("bes3t: a grid is read with X varying fastest, square or not") {
  const Loaded file(DescriptorText({.yType = "IDX", .xPoints = 3, .yPoints = 2}), Shorts({0, 1, 2, 10, 11, 12}));
  const PrnType& r = file.record;
  REQUIRE(file.result == 1);
  CHECK(r.allocType == AllocZ);
  CHECK(r.fileType == FileCvt);  // a grid keeps the type that the record had
  REQUIRE(r.nX == 3);
  REQUIRE(r.nY == 2);
  for (int i = 0; i < 3; ++i)
    for (int j = 0; j < 2; ++j) CHECK_BITS(r.zArray[i][j], static_cast<float>(10 * j + i));
  CHECK_BITS(r.yStart, 1);
  CHECK_BITS(r.yEnd, 3);
  CHECK_BITS(r.yStep, 2);
  CHECK_BITS(r.zMax, 12);
}

TEST_CASE("bes3t: stored axis values come from the first bytes of the descriptor") {
  std::string text = DescriptorText({.more = "XFMT\tC\nXTYP\tIGD\n"});
  const Loaded file(text, Shorts({1, 2, 3}));
  REQUIRE(file.result == 1);
  CHECK(file.record.allocType == AllocXY);
  CHECK_BITS(file.record.xArray[0], '#');
  CHECK_BITS(file.record.xArray[2], 'E');
  CHECK_BITS(file.record.xStep, 0);
}

TEST_CASE("bes3t: what cannot be read is refused with one line") {
  struct Case {
    const char* more;
    const char* message;
  };
  const Case cases[] = {
      {"BSEQ\tODD\n", "DESC: BSEQ in #DESC: Keyword absent!\n"},
      {"IKKF\tNONE\n", "DESC: IKKF in #DESC: No columns!\n"},
      {"XTYP\tNTUP\n", "DESC: ?TYP in #DESC: NTUP not supported!\n"},
      {"ZTYP\tODD\n", "DESC: ?TYP in #DESC: Unknown keyword!\n"},
      {"IRTOF\t1\n", "DESC: Transformations not supported!\n"},
      {"YTYP\tIGD\n", "DATA: 3D Data not supported yet!\n"},
      {"ZTYP\tIDX\n", "DATA: 3D Data not supported yet!\n"},
      {"XTYP\tNODATA\n", "DATA: No data present to read!\n"},
      {"IRFMT\tQ\n", "DATA: Can't read No Data Format!\n"},
      {"IRFMT\tA\n", "DATA: Can't read ASCII Data Format!\n"},
      {"XTYP\tIGD\n", "AX: Can't read No Data Format!\n"},
      {"XTYP\tIGD\nXFMT\tA\n", "AX: Can't read ASCII Data Format!\n"},
      {"XPTS\t-1\n", ""},
      {"YTYP\tIDX\n", ""},
      {"YTYP\tIDX\nYPTS\t1\nXTYP\tNODATA\n", ""},
      {"YTYP\tIDX\nYPTS\t1\nXTYP\tIGD\n", ""},
  };
  for (const Case& c : cases) {
    CAPTURE(c.more);
    const Loaded file(DescriptorText({.more = c.more}), Shorts({1, 2, 3}));
    CHECK(file.result == 0);
    CHECK(file.printed == c.message);
  }
  CHECK(Loaded("#DESC\nBSEQ BIG\n", "").result == 0);
  CHECK(Loaded("no section at all", "").result == 0);
}

TEST_CASE("bes3t: one message per load, also when the value file is named") {
  const TempFolder folder;
  folder.Write("bad.DSC", DescriptorText({.more = "IRTOF 1\n"}));
  const std::string bad = folder.Write("bad.DTA", "");
  CHECK(Printed([&bad] { CHECK(!PrnType(bad.c_str(), 0)); }) == "DESC: Transformations not supported!\n");
}

TEST_CASE("bes3t: CR LF, a last line without end, long lines and short values") {
  std::string text = DescriptorText();
  for (auto at = text.find('\n'); at != text.npos; at = text.find('\n', at + 2)) text.insert(at, "\r");
  CHECK(std::string(Loaded(text, Shorts({1})).record.xLabel) == "Field (G)");
  const Loaded shortFile(DescriptorText() + std::string(300, 'x'), Shorts({7}));
  REQUIRE(shortFile.result == 1);
  LoadWithReadErrors(shortFile.folder.Path("測定.DSC"));
  CHECK_BITS(shortFile.record.yArray[0], 7);
  CHECK_BITS(shortFile.record.yArray[2], 0);
  const Loaded lastLine("#DESC\nIKKF REAL\nXTYP IDX\nXPTS 1\nIRFMT C\n#SPL\nMWFQ 5", "A");
  REQUIRE(lastLine.result == 1);
  CHECK_BITS(lastLine.record.bes3t.bes3tMwFrequency, 5);
  CHECK_BITS(lastLine.record.xStep, 0);
  LoadEveryPrefix("cut.DSC", DescriptorText(), 40, "cut.DTA");
  LoadDamaged("hurt.DSC", DescriptorText({.yType = "IDX", .xPoints = 4, .yPoints = 4}), 200);
}

TEST_CASE("bes3t: real spectra") {
  if (!HaveSamples()) return;
  const auto load = [](const char* name, int index) {
    return PrnType((SampleFolder() + "/bes3t/" + name).c_str(), index);
  };
  const PrnType strong = load("strong1.dsc", 0);
  REQUIRE(strong.nY == 1024);
  CHECK_BITS(strong.xStart, 3375);
  CHECK_BITS(strong.xEnd, 3425);
  CHECK(Sum({strong.yArray, 1024}) == 838687);
  std::ifstream truth(SampleFolder() + "/truth/strong1.eco");
  std::string header;
  std::getline(truth, header);
  for (int k = 0; k < 1024; ++k) {
    float expected = 0;
    REQUIRE((truth >> expected).good());
    CHECK_BITS(strong.yArray[k], expected);
  }
  CHECK_BITS(load("E580_cwX.DSC", 0).yArray[0], -0.188630894f);
  CHECK(Sum({load("DNPLab_1D_CW.DSC", 0).yArray, 2250}) == doctest::Approx(-1210.85340776));
  CHECK(load("00012107.dsc", 2).nY == 512);
  CHECK_BITS(load("00012107.dsc", 1).xStep, 8);
  const PrnType fourth = load("calib_4col.DSC", 4);
  CHECK(fourth.nY == 2801);
  CHECK(Sum({fourth.yArray, 2801}) == -77531);
  CHECK(!load("calib_4col.DSC", 5));
  const PrnType little = load("DeerLab_ridme_LIT.DSC", 2);
  CHECK_BITS(little.yArray[0], -0.146794841f);
  const PrnType grid = load("trepr_pentacene.DSC", 0);
  CHECK(grid.nX == 4096);
  REQUIRE(grid.nY == 21);
  CHECK_BITS(grid.zArray[1][0], 70);
  CHECK_BITS(grid.zArray[4095][20], 69);
  CHECK(Printed([&load] { CHECK(!load("cwepr_2DFieldDelay.DSC", 0)); }) == "DATA: 3D Data not supported yet!\n");
}
