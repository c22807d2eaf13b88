#include "support/loads.h"

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

PrnType Loaded(const std::string& descriptor, const std::string& values, int which = 0) {
  return Load({{"測定.DSC", descriptor}, {"測定.DTA", values}}, which);
}

std::string Shorts(std::initializer_list<int> values, std::endian order = std::endian::big) {
  Bytes bytes(order);
  for (const int v : values) bytes.Put(static_cast<std::int16_t>(v));
  return bytes;
}

}  // namespace

TEST_CASE("bes3t: a curve with its axis, labels and parameters") {
  const PrnType r = Loaded(DescriptorText(), Shorts({1, -2, 300}));
  CHECK(Facts(r) == "14 Y 3x3 x 3000 3100 50 y -2 300 0 = 1 -2 300 | Field (G)|Intensity ()|strong pitch");
  // The #DSL section is not read.
  CHECK(HeaderOf(r) ==
        "a long comment|Continuous Wave|High-Res Integrating ADC|Magnetic Field "
        "(T)|0.0399999991|9.50000026e+09|0.0199999996|0.00999999978|47|1.5|2|3|9.99999975e-05|100000|");
  CHECK(printed.empty());
}

TEST_CASE("bes3t: value formats and byte orders") {
  const auto big = [] { return Bytes(std::endian::big); };
  const std::tuple<const char*, const char*, std::string, float> cases[] = {
      {"C", "BIG", big().Put(std::int8_t{-3}), -3.0f}, {"S", "BIG", std::string("\0\1", 2), 1.0f},
      {"S", "LIT", std::string("\0\1", 2), 256.0f},    {"I", "BIG", big().Put(-70000), -70000.0f},
      {"F", "LIT", Bytes().Put(1.5f), 1.5f},           {"D", "BIG", big().Put(0.1), 0.1f},
      {"  \tD,D", "BIG", big().Put(-2.5), -2.5f}};
  for (const auto& [format, order, bytes, value] : cases) {
    const PrnType r = Loaded(DescriptorText({.order = order, .format = format, .xPoints = 1}), bytes);
    REQUIRE(r.nY == 1);
    CHECK_BITS(r.yArray[0], value);
  }
}

TEST_CASE("bes3t: columns of a point are loaded one per call and announced by ReadNextFlag") {
  const std::string complex = DescriptorText({.columns = "CPLX", .xPoints = 2});
  const std::string values = Shorts({1, 10, 2, 20});
  for (const auto& [which, next, last] : {std::tuple{0, 1, 2.0f}, {1, 1, 2.0f}, {2, 0, 20.0f}}) {
    CHECK_BITS(Loaded(complex, values, which).yArray[1], last);
    CHECK(ReadNextFlag == next);
  }
  for (const int which : {3, -1}) CHECK(!Loaded(complex, values, which));
  const TempFolder folder;
  folder.Write("a.DTA", "");
  int columns = 0;
  const std::string four = folder.Write("a.DSC", DescriptorText({.columns = "REAL,CPLX,REAL"}));
  CHECK(PrnType().ReadBES3T(four.c_str(), columns, 4) == 1);
  CHECK(columns == 4);
}

TEST_CASE("bes3t: grids with X varying fastest, square or not, and stored axes") {
  // A grid keeps the type that the record had.
  CHECK(
      Facts(Loaded(DescriptorText({.yType = "IDX", .xPoints = 3, .yPoints = 2}), Shorts({0, 1, 2, 10, 11, 12}))) ==
      "0 Z 3x2 x 3000 3100 50 y 1 3 2 z 0 12 = 0 10 / 1 11 / 2 12 | Field (G)|Intensity ()|strong pitch");
  // Stored coordinates come from the first bytes of the descriptor.
  CHECK(Facts(Loaded(DescriptorText({.more = "XFMT\tC\nXTYP\tIGD\n"}), Shorts({1, 2, 3}))) ==
        "14 XY 3x3 x 35 69 0: 35 68 69 y 1 3 0 = 1 2 3 | Field (G)|Intensity ()|strong pitch");
}

TEST_CASE("bes3t: what cannot be read is refused with one line") {
  struct Case {
    const char *more, *message;
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
    CHECK(!Loaded(DescriptorText({.more = c.more}), Shorts({1, 2, 3})));
    CHECK(printed == c.message);
  }
  for (const char* text : {"#DESC\nBSEQ BIG\n", "no section at all"}) CHECK(!Loaded(text, ""));
  // Also when the value file is named.
  CHECK(!Load({{"a.DTA", ""}, {"a.DSC", DescriptorText({.more = "IRTOF 1\n"})}}));
  CHECK(printed == "DESC: Transformations not supported!\n");
}

TEST_CASE("bes3t: CR LF, a last line without end, long lines and short values") {
  const std::string text = DescriptorText();
  for (const std::string& other : {WithCrLf(text), text + std::string(300, 'x')})
    CHECK(Facts(Loaded(other, Shorts({7}))) ==
          "14 Y 3x3 x 3000 3100 50 y 0 7 0 = 7 0 0 | Field (G)|Intensity ()|strong pitch");
  const PrnType last = Loaded("#DESC\nIKKF REAL\nXTYP IDX\nXPTS 1\nIRFMT C\n#SPL\nMWFQ 5", "A");
  CHECK(Facts(last) + HeaderOf(last) == "14 Y 1x1 x 0 0 0 y 65 65 0 = 65 |  ()| ()|||||0|5|0|0|0|0|0|0|0|0|");
}
