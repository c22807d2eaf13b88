#include "support/loads.h"

using namespace kem::test;

namespace {

PrnType Loaded(const std::string& par, const std::string& spc, int which = 0) {
  return Load({{"scan.par", par}, {"scan.spc", spc}}, which);
}

std::string Integers(std::initializer_list<int> values) {
  Bytes bytes(std::endian::big);
  for (const int v : values) bytes.Put(v);
  return bytes;
}

}  // namespace

TEST_CASE("bruker: keywords of the parameter file, and their defaults") {
  const PrnType r = Loaded(
      "JSS 2\rJON  A. User\rRRG 1e4\n\nRPH 90\r\nRMF 50\rRMA 2\nRCT 3\nRTC 4\nJEXT2 ignored\nJEX field-sweep\n"
      "RES 512\nHCF 3400\nHSW 100\nEMF 3450\nJCO one two\nJDA 1-MAY-2009\nJTM\nJTM 15:26\nMP x\nHSW 1",
      Integers({7, -8, 1 << 24}));
  CHECK(Facts(r) == "5 Y 3x3 x 3350 3450 50 y -8 16777216 0 = 7 -8 16777216 | Gauss|Intensity|");
  CHECK(HeaderOf(r) == "10000|90|50|2|3|4|field-sweep|512|-1|-1|3400|100|3450|A.|one|1-MAY-2009 15:26 |");
  CHECK(HeaderOf(Loaded("", "")) == "20000|0|100|1|5.11999989|1.27999997|EPR|1024|-1|-1|3480|50|3480||||");
}

TEST_CASE("bruker: the sweep by experiment") {
  for (const auto& [par, sweep] : {std::pair{"JEX EPR\nKRON\nGST 10\nGSI 5\n", " 10 15 5"},
                                   {"JEX time\nGST 10\nGSI 5\n", " 10 5 -5"},
                                   {"my JEX time\nGST 10\nGSI 5\n", " 3455 3505 50"},
                                   {"JEX time\n", " 0 0 0"}}) {
    const std::string parameters = par;
    CAPTURE(parameters);
    const PrnType r = Loaded(parameters, Integers({1, 2}));
    CHECK(Numbers(std::array{r.xStart, r.xEnd, r.xStep}) == sweep);
  }
}

TEST_CASE("bruker: value layouts, two spectra in a file, images") {
  const std::string floats = Bytes().Put(1.5f).Put(-2.0f);
  CHECK(Facts(Loaded("DOS  Format\n", floats)) == "5 Y 2x2 x 3455 3505 50 y -2 1.5 0 = 1.5 -2 | Gauss|Intensity|");
  CHECK(Facts(Loaded("", floats)) == "5 Y 2x2 x 3455 3505 50 y 192 49215 0 = 49215 192 | Gauss|Intensity|");
  const std::string values = Integers({0, 1, 2, 10, 11});
  CHECK(Facts(Loaded("FDUA\n", values, 0)) == "5 Y 2x2 x 3455 3505 50 y 0 1 0 = 0 1 | Gauss|Intensity|");
  CHECK(ReadNextFlag == 1);
  CHECK(Facts(Loaded("FDUA\n", values, 1)) == "5 Y 2x2 x 3455 3505 50 y 2 10 0 = 2 10 | Gauss|Intensity|");
  CHECK(ReadNextFlag == 0);
  CHECK(Facts(Loaded("XPLS 1\nSSX 3\nSSY 2\nXXWI 5\nXYWI 9\nFDUA\nDOS\n", values, 0)) ==
        "5 Z 3x2 x 0 5 2.5 y 0 9 9 z 0 11 = 0 10 / 1 11 / 2 0 | Gauss|Intensity|");
  CHECK(ReadNextFlag == 1);
  ReadNextFlag = 0;
  CHECK(Loaded("XPLS 1\nSSX 1\nSSY 1\nXXWI 5\n", values).xStep == 0);
  CHECK(Loaded("XPLS 1\nSSX 3\n", values).allocType == AllocY);
  CHECK(!Loaded("XPLS 1\nSSX 3\nSSY -2\n", values));
}

TEST_CASE("bruker: bounds of the parameter file, and a partner that cannot be read") {
  std::string lines;
  for (int k = 0; k < 63; ++k) lines += "JDA 25-JUN-2009\n";
  const PrnType many = Loaded(lines + "RRG 1\nRRG 2\n", "");
  CHECK(many.bruker.brukerGain == 1);
  CHECK(std::string(many.bruker.brukerDate).size() == 131);
  const PrnType wide = Loaded(std::string(128, ' ') + "RRGHCF 5\nJCO " + std::string(300, 'c') + "\n", "");
  CHECK(std::string(wide.bruker.brukerComment) == std::string(127, 'c'));
  CHECK(wide.bruker.brukerCenterField == 3480);
  const TempFolder folder;
  std::filesystem::create_directory(folder.Path("folder.spc"));
  CHECK(!PrnType(folder.Write("folder.par", lines).c_str(), 0));
}
