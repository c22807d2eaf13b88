#include "support/support.h"

using namespace kem::test;

namespace {

struct Image {
  int nY = 2, nX = 3, yStart = 0, xStart = 100, yStep = 2, xStep = 1;
  std::string xTitle = "x title";
};

std::string AT1File(const Image& image = {}) {
  Bytes bytes;
  auto card = [&bytes, at = std::size_t{0}](const std::string& text) mutable {
    bytes.Text(text).PadTo(at += 80, ' ');
  };
  for (const char* text : {"SIMPLE  = T", "", "", ""}) card(text);
  for (const int v : {image.nY, image.nX, image.yStart, image.xStart, image.yStep, image.xStep})
    card("KEYWORD = " + std::to_string(v));
  card(image.xTitle);
  card("y title");
  card("");
  card("z title");
  bytes.PadTo(2880);
  for (int k = 0; k < image.nX * image.nY; ++k) bytes.Put(static_cast<std::uint16_t>(65535 - k));
  return bytes;
}

}  // namespace

TEST_CASE("at1: axes by position, pixels row by row") {
  const TempFolder folder;
  const PrnType r(folder.Write("a.ccd", AT1File()).c_str(), 0);
  REQUIRE(r.allocType == AllocZ);
  CHECK(r.fileType == FileAT1);
  CHECK(r.active == 1);
  CHECK(r.nX == 3);
  CHECK(r.nY == 2);
  CHECK_BITS(r.zArray[0][0], 65535);
  CHECK_BITS(r.zArray[0][1], 65534);
  CHECK_BITS(r.zArray[2][1], 65530);
  CHECK_BITS(r.xEnd, 102);
  CHECK_BITS(r.yEnd, 2);
  CHECK_BITS(r.yStep, 2);
  CHECK(std::string(r.zLabel).substr(0, 8) == "z title ");
  const PrnType full(folder.Write("b.ccd", AT1File({.xTitle = std::string(80, 'x')})).c_str(), 0);
  CHECK(std::string(full.xLabel) == std::string(80, 'x'));
}

TEST_CASE("at1: counts of nothing, missing cards and short files") {
  const TempFolder folder;
  CHECK(!PrnType(folder.Write("a.ccd", AT1File({.nX = -3})).c_str(), 0));
  const PrnType cut(folder.Write("a.ccd", AT1File().substr(0, 2883)).c_str(), 0);
  REQUIRE(cut.nX == 3);
  CHECK_BITS(cut.zArray[0][0], 65535);
  CHECK_BITS(cut.zArray[0][1], 0);
  CHECK_BITS(cut.zArray[2][1], 0);
  LoadEveryPrefix("cut.ccd", AT1File(), 100);
  LoadDamaged("hurt.ccd", AT1File(), 100);
  if (HaveSamples()) CHECK(PrnType((SampleFolder() + "/fits/arange.fits").c_str(), 0).fileType == FileAT1);
}
