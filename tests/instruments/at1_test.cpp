#include "support/loads.h"

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
  for (const char* text : {image.xTitle.c_str(), "y title", "", "z title"}) card(text);
  bytes.PadTo(2880);
  for (int k = 0; k < image.nX * image.nY; ++k) bytes.Put(static_cast<std::uint16_t>(65535 - k));
  return bytes;
}

}  // namespace

TEST_CASE("at1: axes by position, pixels row by row; what a short file lacks is 0") {
  CHECK(Facts(Load("a.ccd", AT1File())) ==
        "4 Z 3x2 x 100 102 1 y 0 2 2 z 65530 65535 = 65535 65534 / 65533 65532 / 65531 65530 | x title|y title|z "
        "title");
  CHECK(Facts(Load("a.ccd", AT1File().substr(0, 2883))) ==
        "4 Z 3x2 x 100 102 1 y 0 2 2 z 0 65535 = 65535 0 / 0 0 / 0 0 | x title|y title|z title");
  CHECK(std::string(Load("a.ccd", AT1File({.xTitle = std::string(80, 'x')})).xLabel) == std::string(80, 'x'));
  CHECK(!Load("a.ccd", AT1File({.nX = -3})));
}
