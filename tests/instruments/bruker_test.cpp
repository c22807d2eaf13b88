#include "support/support.h"

using namespace kem::test;

namespace {

using Floats = std::vector<float>;
using Texts = std::vector<std::string>;

PrnType Loaded(const std::string& par, const std::string& spc, int which = 0) {
  const TempFolder folder;
  folder.Write("scan.spc", spc);
  LoadWithReadErrors(folder.Write("scan.par", par));
  return {folder.Path("scan.par").c_str(), which};
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
  const BrukerHeaderType& b = r.bruker;
  CHECK(Floats{b.brukerGain, b.brukerPhase, b.brukerModFrequency, b.brukerModAmplitude, b.brukerConvTime} ==
        Floats{1e4f, 90, 50, 2, 3});
  CHECK(Floats{b.brukerTimeConstant, b.brukerMwFrequency, b.brukerMwPower, b.brukerCenterField, b.brukerSweepWidth,
               b.brukerStaticField} == Floats{4, -1, -1, 3400, 100, 3450});
  CHECK(Texts{b.brukerOperator, b.brukerMode, b.brukerComment, b.brukerDate} ==
        Texts{"A.", "field-sweep", "one", "1-MAY-2009 15:26 "});
  CHECK(b.brukerResolution == 512);
  CHECK(r.fileType == FileBruker);
  CHECK(r.active == 1);
  REQUIRE(r.nY == 3);
  CHECK(Floats{r.yArray[1], r.yEnd, r.xStart, r.xEnd, r.xStep} == Floats{-8, 1 << 24, 3350, 3450, 50});
}

TEST_CASE("bruker: the sweep by experiment") {
  const std::pair<const char*, Floats> cases[] = {{"JEX EPR\nKRON\nGST 10\nGSI 5\n", {10, 15, 0}},
                                                  {"JEX time\nGST 10\nGSI 5\n", {10, 5, 0}},
                                                  {"my JEX time\nGST 10\nGSI 5\n", {3455, 3505, 0}},
                                                  {"JEX time\n", {0, 0, 0}}};
  for (const auto& [par, sweep] : cases) {
    CAPTURE(par);
    const PrnType r = Loaded(par, Integers({1}));
    CHECK(Floats{r.xStart, r.xEnd, r.xStep} == sweep);
  }
}

TEST_CASE("bruker: value layouts, two spectra in a file, images") {
  const std::string floats = Bytes().Put(1.5f).Put(-2.0f);
  CHECK(Loaded("DOS  Format\n", floats).yArray[1] == -2);
  CHECK(Loaded("", floats).yArray[0] == 0xc03f);
  const std::string values = Integers({0, 1, 2, 10, 11});
  const PrnType first = Loaded("FDUA\n", values, 0);
  CHECK(ReadNextFlag == 1);
  REQUIRE(first.nY == 2);
  CHECK(first.yArray[1] == 1);
  CHECK(Loaded("FDUA\n", values, 1).yArray[1] == 10);
  CHECK(ReadNextFlag == 0);

  const PrnType r = Loaded("XPLS 1\nSSX 3\nSSY 2\nXXWI 5\nXYWI 9\nFDUA\nDOS\n", values, 0);
  CHECK(ReadNextFlag == 1);
  ReadNextFlag = 0;
  REQUIRE(r.allocType == AllocZ);
  REQUIRE(r.nX * r.nY == 6);
  CHECK(Floats{r.zArray[1][1], r.zArray[2][1], r.xEnd, r.xStep, r.yStep, r.yEnd} == Floats{11, 0, 5, 2.5f, 9, 9});
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

TEST_CASE("bruker: real spectra") {
  if (!HaveSamples()) return;
  // first and last value, range, sweep, gain, power
  const std::tuple<const char*, int, Floats> cases[] = {
      {"strong1esp.par", 1024, {118600000, 38900000, -1.46510003e9f, 1.5748e9f, 3455, 3505, 47, 20.0195f}},
      {"PNOX120DB.PAR", 1024, {390, -132, -2530, 1628, 3421.1f, 3471.1f, 3200, 0.000222168f}},
      {"eth_sband_qese_2d.PAR", 12000, {2413, 19, -62, 2990, 3455, 3505, 20000, -1}},
      {"cwepr_ESP.par", 1024, {-4517, 4522, -78434, 139275, 3395, 3495, 500000, -1}},
      {"winepr.spc", 2048, {3608.95898f, -16034.041f, -3325565, 3455259, 3450, 3570, 10023.74f, 0.2144f}},
      {"Example2D.par", 15360, {4.50976562f, 7.60839844f, -20198.4902f, 24303.5098f, 3400, 3600, 10023.74f, 15}},
      {"ExampleESP.par", 1024, {-66, 31, -28908, 51926, 1000, 4000, 10000, -1}},
      {"Example1D.par", 512, {55.78125f, 40, -28268, 25210.5f, 3305, 3405, 5636.766f, 30}}};
  for (const auto& [name, points, facts] : cases) {
    CAPTURE(name);
    const PrnType r((SampleFolder() + "/esp/" + name).c_str(), 0);
    REQUIRE(r.nY == points);
    CHECK(Floats{r.yArray[0], r.yArray[points - 1], r.yStart, r.yEnd, r.xStart, r.xEnd, r.bruker.brukerGain,
                 r.bruker.brukerMwPower} == facts);
  }
}
