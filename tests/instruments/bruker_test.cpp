#include "support/support.h"

using namespace kem::test;

namespace {

// A pair of files and the record loaded from it.
struct Loaded {
  TempFolder folder;
  PrnType record;

  Loaded(const std::string& par, const std::string& spc, int which = 0) {
    const std::string path = folder.Write("scan.par", par);
    folder.Write("scan.spc", spc);
    record.ReadFile(path.c_str(), which);
  }
};

std::string Integers(std::initializer_list<int> values) {
  Bytes bytes(std::endian::big);
  for (const int v : values) bytes.Put(v);
  return bytes;
}

}  // namespace

TEST_CASE("bruker: keywords of the parameter file, and their defaults") {
  const Loaded file(
      "JSS 2\rJON  A. User\rRRG 1e4\n\nRPH 90\r\nRMF 50\rRMA 2\nRCT 3\nRTC 4\nJEXT2 ignored\nJEX field-sweep\n"
      "RES 512\nHCF 3400\nHSW 100\nEMF 3450\nJCO one two\nJDA 1-MAY-2009\nJTM\nJTM 15:26\nMP x\nHSW lost",
      Integers({7, -8, 1 << 24}));
  const BrukerHeaderType& b = file.record.bruker;
  const std::pair<float, float> numbers[] = {
      {b.brukerGain, 1e4f},      {b.brukerPhase, 90},           {b.brukerModFrequency, 50},
      {b.brukerModAmplitude, 2}, {b.brukerConvTime, 3},         {b.brukerTimeConstant, 4},
      {b.brukerMwFrequency, -1}, {b.brukerMwPower, -1},         {b.brukerCenterField, 3400},
      {b.brukerSweepWidth, 100}, {b.brukerStaticField, 3450.0f}};
  for (const auto& [value, expected] : numbers) CHECK_BITS(value, expected);
  CHECK(b.brukerResolution == 512);
  CHECK(std::string(b.brukerOperator) == "A.");
  CHECK(std::string(b.brukerMode) == "field-sweep");
  CHECK(std::string(b.brukerComment) == "one");
  CHECK(std::string(b.brukerDate) == "1-MAY-2009 15:26 ");
  const PrnType& r = file.record;
  REQUIRE(r.allocType == AllocY);
  CHECK(r.fileType == FileBruker);
  CHECK(r.active == 1);
  REQUIRE(r.nY == 3);
  CHECK(r.nX == 3);
  CHECK_BITS(r.yArray[1], -8);
  CHECK_BITS(r.yEnd, 1 << 24);
  CHECK_BITS(r.xStart, 3350);
  CHECK_BITS(r.xEnd, 3450);
  CHECK_BITS(r.xStep, 50);
  CHECK_BITS(r.yStep, 0);
}

TEST_CASE("bruker: the sweep by experiment") {
  struct Case {
    const char* par;
    float first, last;
  };
  const Case cases[] = {{"JEX EPR\nKRON\nGST 10\nGSI 5\n", 10, 15},
                        {"JEX time\nGST 10\nGSI 5\n", 10, 5},
                        {"my JEX time\nGST 10\nGSI 5\n", 3455, 3505},
                        {"JEX time\n", 0, 0}};
  for (const Case& c : cases) {
    CAPTURE(c.par);
    const Loaded file(c.par, Integers({1}));
    CHECK_BITS(file.record.xStart, c.first);
    CHECK_BITS(file.record.xEnd, c.last);
    CHECK_BITS(file.record.xStep, 0);
  }
}

TEST_CASE("bruker: value layouts, two spectra in a file, images") {
  const std::string floats = Bytes().Put(1.5f).Put(-2.0f);
  const Loaded dos("DOS  Format\n", floats);
  CHECK_BITS(dos.record.yArray[0], 1.5f);
  CHECK_BITS(dos.record.yArray[1], -2);
  CHECK_BITS(Loaded("", floats).record.yArray[0], 0xc03f);

  const std::string two = Integers({1, 2, 3, 4, 5});
  const Loaded first("FDUA\n", two, 0);
  CHECK(ReadNextFlag == 1);
  REQUIRE(first.record.nY == 2);
  CHECK_BITS(first.record.yArray[1], 2);
  const Loaded second("FDUA\n", two, 1);
  CHECK(ReadNextFlag == 0);
  CHECK_BITS(second.record.yArray[1], 4);

  const Loaded image("XPLS 1\nSSX 3\nSSY 2\nXXWI 5\nXYWI 9\nFDUA\nDOS\n", Integers({0, 1, 2, 10, 11}));
  const PrnType& r = image.record;
  REQUIRE(r.allocType == AllocZ);
  CHECK(ReadNextFlag == 1);
  ReadNextFlag = 0;
  REQUIRE(r.nX == 3);
  REQUIRE(r.nY == 2);
  CHECK_BITS(r.zArray[1][1], 11);
  CHECK_BITS(r.zArray[2][1], 0);
  CHECK_BITS(r.xEnd, 5);
  CHECK_BITS(r.xStep, 2.5f);
  CHECK_BITS(r.yStep, 9);
  CHECK_BITS(Loaded("XPLS 1\nSSX 1\nSSY 1\nXXWI 5\n", two).record.xStep, 0);
  CHECK(Loaded("XPLS 1\nSSX 3\n", two).record.allocType == AllocY);
  CHECK(!Loaded("XPLS 1\nSSX 3\nSSY -2\n", two).record);
}

TEST_CASE("bruker: bounds of the parameter file") {
  std::string lines;
  for (int k = 0; k < 63; ++k) lines += "RES 7\n";
  const Loaded last(lines + "RRG 1\nRRG 2\n", "");
  CHECK_BITS(last.record.bruker.brukerGain, 1);
  CHECK(last.record.nY == 0);
  const Loaded longLine(std::string(128, ' ') + "RRGHCF 5\nJCO " + std::string(300, 'c') + "\n", "");
  CHECK(std::string(longLine.record.bruker.brukerComment) == std::string(127, 'c'));
  CHECK_BITS(longLine.record.bruker.brukerCenterField, 3480);
  std::string dates;
  for (int k = 0; k < 20; ++k) dates += "JDA 25-JUN-2009\n";
  CHECK(std::string(Loaded(dates, "").record.bruker.brukerDate).size() == 131);

  const TempFolder folder;
  std::filesystem::create_directory(folder.Path("folder.spc"));
  CHECK(!PrnType(folder.Write("folder.par", lines).c_str(), 0));
  const std::string image = "XPLS 1\nSSX 9\nSSY 8\nXXWI 5\nXYWI 9\nFDUA\n";
  const std::string values = Integers({1, 2, 3, 4, 5, 6, 7, 8, 9});
  for (std::size_t n = 0; n <= image.size(); ++n)
    CHECK(Loaded(image.substr(0, n), values.substr(0, n)).record.active == 1);
  ReadNextFlag = 0;
}

TEST_CASE("bruker: real spectra") {
  if (!HaveSamples()) return;
  struct Case {
    const char* name;
    int points;
    float first, last, min, max, start, end, gain, power;
    const char* date;
  };
  const Case cases[] = {
      {"strong1esp.par", 1024, 118600000, 38900000, -1.46510003e9f, 1.5748e9f, 3455, 3505, 47, 20.0195f,
       "11-JUN-1998 09:21:01 "},
      {"PNOX120DB.PAR", 1024, 390, -132, -2530, 1628, 3421.1f, 3471.1f, 3200, 0.000222168f, "2-APR-1908 9:31:42 "},
      {"eth_sband_qese_2d.PAR", 12000, 2413, 19, -62, 2990, 3455, 3505, 20000, -1, "MONDAY, 17:47:41 "},
      {"cwepr_ESP.par", 1024, -4517, 4522, -78434, 139275, 3395, 3495, 500000, -1, "4-APR-1999 9:32:26 "},
      {"winepr.spc", 2048, 3608.95898f, -16034.041f, -3325565, 3455259, 3450, 3570, 10023.74f, 0.2144f,
       "10/15/2021 10:37 "},
      {"Example2D.par", 15360, 4.50976562f, 7.60839844f, -20198.4902f, 24303.5098f, 3400, 3600, 10023.74f, 15,
       "05/18/2019 16:58 "},
      {"ExampleESP.par", 1024, -66, 31, -28908, 51926, 1000, 4000, 10000, -1, "25-JUN-2009 15:26:41 "},
      {"Example1D.par", 512, 55.78125f, 40, -28268, 25210.5f, 3305, 3405, 5636.766f, 30, "01/05/2018 23:38 "}};
  for (const Case& c : cases) {
    CAPTURE(c.name);
    const PrnType r((SampleFolder() + "/esp/" + c.name).c_str(), 0);
    REQUIRE(r.nY == c.points);
    const std::pair<float, float> numbers[] = {{r.yArray[0], c.first},
                                               {r.yArray[r.nY - 1], c.last},
                                               {r.yStart, c.min},
                                               {r.yEnd, c.max},
                                               {r.xStart, c.start},
                                               {r.xEnd, c.end},
                                               {r.bruker.brukerGain, c.gain},
                                               {r.bruker.brukerMwPower, c.power}};
    for (const auto& [value, expected] : numbers) CHECK_BITS(value, expected);
    CHECK(std::string(r.bruker.brukerDate) == c.date);
  }
}
