#include "support/support.h"

using namespace kem::test;

namespace {

PrnType Loaded(const std::string& par, const std::string& spc, int which = 0) {
  const TempFolder folder;
  folder.Write("scan.spc", spc);
  return {folder.Write("scan.par", par).c_str(), which};
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
  REQUIRE(r.nY == 3);
  const BrukerHeaderType& b = r.bruker;
  const std::pair<float, float> numbers[] = {{b.brukerGain, 1e4f},
                                             {b.brukerPhase, 90},
                                             {b.brukerModFrequency, 50},
                                             {b.brukerModAmplitude, 2},
                                             {b.brukerConvTime, 3},
                                             {b.brukerTimeConstant, 4},
                                             {b.brukerMwFrequency, -1},
                                             {b.brukerMwPower, -1},
                                             {b.brukerCenterField, 3400},
                                             {b.brukerSweepWidth, 100},
                                             {b.brukerStaticField, 3450},
                                             {r.yArray[1], -8},
                                             {r.yEnd, 1 << 24},
                                             {r.xStart, 3350},
                                             {r.xEnd, 3450},
                                             {r.xStep, 50}};
  for (const auto& [value, expected] : numbers) CHECK_BITS(value, expected);
  const std::pair<const char*, const char*> texts[] = {{b.brukerOperator, "A."},
                                                       {b.brukerMode, "field-sweep"},
                                                       {b.brukerComment, "one"},
                                                       {b.brukerDate, "1-MAY-2009 15:26 "}};
  for (const auto& [text, expected] : texts) CHECK(std::string(text) == expected);
  CHECK(b.brukerResolution == 512);
  CHECK(r.fileType == FileBruker);
  CHECK(r.active == 1);
}

TEST_CASE("bruker: the sweep by experiment") {
  const std::tuple<const char*, float, float> cases[] = {{"JEX EPR\nKRON\nGST 10\nGSI 5\n", 10, 15},
                                                         {"JEX time\nGST 10\nGSI 5\n", 10, 5},
                                                         {"my JEX time\nGST 10\nGSI 5\n", 3455, 3505},
                                                         {"JEX time\n", 0, 0}};
  for (const auto& [par, first, last] : cases) {
    CAPTURE(par);
    const PrnType r = Loaded(par, Integers({1}));
    CHECK_BITS(r.xStart, first);
    CHECK_BITS(r.xEnd, last);
    CHECK_BITS(r.xStep, 0);
  }
}

TEST_CASE("bruker: value layouts, two spectra in a file, images") {
  const std::string floats = Bytes().Put(1.5f).Put(-2.0f);
  CHECK_BITS(Loaded("DOS  Format\n", floats).yArray[1], -2);
  CHECK_BITS(Loaded("", floats).yArray[0], 0xc03f);
  const std::string values = Integers({0, 1, 2, 10, 11});
  const PrnType first = Loaded("FDUA\n", values, 0);
  CHECK(ReadNextFlag == 1);
  REQUIRE(first.nY == 2);
  CHECK_BITS(first.yArray[1], 1);
  CHECK_BITS(Loaded("FDUA\n", values, 1).yArray[1], 10);
  CHECK(ReadNextFlag == 0);

  const PrnType r = Loaded("XPLS 1\nSSX 3\nSSY 2\nXXWI 5\nXYWI 9\nFDUA\nDOS\n", values, 0);
  REQUIRE(r.allocType == AllocZ);
  CHECK(ReadNextFlag == 1);
  ReadNextFlag = 0;
  REQUIRE(r.nX == 3);
  REQUIRE(r.nY == 2);
  const std::pair<float, float> numbers[] = {{r.zArray[1][1], 11}, {r.zArray[2][1], 0}, {r.xEnd, 5},
                                             {r.xStep, 2.5f},      {r.yStep, 9},        {r.yEnd, 9}};
  for (const auto& [value, expected] : numbers) CHECK_BITS(value, expected);
  CHECK_BITS(Loaded("XPLS 1\nSSX 1\nSSY 1\nXXWI 5\n", values).xStep, 0);
  CHECK(Loaded("XPLS 1\nSSX 3\n", values).allocType == AllocY);
  CHECK(!Loaded("XPLS 1\nSSX 3\nSSY -2\n", values));
}

TEST_CASE("bruker: bounds of the parameter file, and a partner that cannot be read") {
  std::string lines;
  for (int k = 0; k < 63; ++k) lines += "JDA 25-JUN-2009\n";
  const PrnType many = Loaded(lines + "RRG 1\nRRG 2\n", "");
  CHECK_BITS(many.bruker.brukerGain, 1);
  CHECK(std::string(many.bruker.brukerDate).size() == 131);
  CHECK(many.nY == 0);
  const PrnType wide = Loaded(std::string(128, ' ') + "RRGHCF 5\nJCO " + std::string(300, 'c') + "\n", "");
  CHECK(std::string(wide.bruker.brukerComment) == std::string(127, 'c'));
  CHECK_BITS(wide.bruker.brukerCenterField, 3480);
  const TempFolder folder;
  std::filesystem::create_directory(folder.Path("folder.spc"));
  CHECK(!PrnType(folder.Write("folder.par", lines).c_str(), 0));
}

TEST_CASE("bruker: real spectra") {
  if (!HaveSamples()) return;
  struct Case {
    const char* name;
    int points;
    float first, last, min, max, start, end, gain, power;
  };
  const Case cases[] = {
      {"strong1esp.par", 1024, 118600000, 38900000, -1.46510003e9f, 1.5748e9f, 3455, 3505, 47, 20.0195f},
      {"PNOX120DB.PAR", 1024, 390, -132, -2530, 1628, 3421.1f, 3471.1f, 3200, 0.000222168f},
      {"eth_sband_qese_2d.PAR", 12000, 2413, 19, -62, 2990, 3455, 3505, 20000, -1},
      {"cwepr_ESP.par", 1024, -4517, 4522, -78434, 139275, 3395, 3495, 500000, -1},
      {"winepr.spc", 2048, 3608.95898f, -16034.041f, -3325565, 3455259, 3450, 3570, 10023.74f, 0.2144f},
      {"Example2D.par", 15360, 4.50976562f, 7.60839844f, -20198.4902f, 24303.5098f, 3400, 3600, 10023.74f, 15},
      {"ExampleESP.par", 1024, -66, 31, -28908, 51926, 1000, 4000, 10000, -1},
      {"Example1D.par", 512, 55.78125f, 40, -28268, 25210.5f, 3305, 3405, 5636.766f, 30}};
  for (const Case& c : cases) {
    CAPTURE(c.name);
    const PrnType r((SampleFolder() + "/esp/" + c.name).c_str(), 0);
    REQUIRE(r.nY == c.points);
    const float loaded[] = {r.yArray[0],         r.yArray[r.nY - 1],    r.yStart, r.yEnd, r.xStart, r.xEnd,
                            r.bruker.brukerGain, r.bruker.brukerMwPower};
    const float expected[] = {c.first, c.last, c.min, c.max, c.start, c.end, c.gain, c.power};
    for (std::size_t k = 0; k < std::size(expected); ++k) CHECK_BITS(loaded[k], expected[k]);
  }
}
