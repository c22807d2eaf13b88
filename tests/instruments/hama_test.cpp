#include "support/support.h"

using namespace kem::test;

namespace {

std::string Image(int sweepRange = 7, int values = 640 * 480) {
  Bytes bytes(std::endian::big);
  bytes.Text("HPK8TMAP").Put(3).Put(1).Put(sweepRange).Put(500.0f).Put(0.1f).Put(320).PadTo(256, 'x');
  for (int k = 0; k < values; ++k) bytes.Put(static_cast<std::uint16_t>(k == 0 ? 0x1234 : k));
  return bytes;
}

}  // namespace

TEST_CASE("hama: header, axes and values; what a short file lacks is 0") {
  const TempFolder folder;
  const PrnType r(folder.Write("streak.raw", Image()).c_str(), 0);
  REQUIRE(r.allocType == AllocZ);
  CHECK(r.fileType == FileHama);
  CHECK(r.active == 1);
  REQUIRE(r.nX == 640);
  REQUIRE(r.nY == 480);
  CHECK(r.hama.hamaIntegrationTime == 3);
  CHECK(r.hama.hamaSweepCondition == 1);
  CHECK(r.hama.hamaCcdCenter == 320);
  CHECK_BITS(r.xStart, 468.0f);
  CHECK_BITS(r.xEnd, 532.1f);
  CHECK_BITS(r.xStep, 0.1f);
  CHECK_BITS(r.yStart, 0);
  CHECK_BITS(r.yEnd, 99.8f);
  CHECK_BITS(r.yStep, static_cast<float>(99.8f / 479.0));
  CHECK_BITS(r.zArray[0][0], 4660);
  CHECK_BITS(r.zArray[1][0], 1);
  CHECK_BITS(r.zArray[639][479], 307199 % 65536);
  CHECK_BITS(r.zMax, 65535);

  const PrnType cut(folder.Write("cut.raw", Image(16, 641)).c_str(), 0);
  REQUIRE(cut.nX == 640);
  CHECK_BITS(cut.yEnd, 100000);
  CHECK_BITS(cut.zArray[0][1], 640);
  CHECK_BITS(cut.zArray[1][1], 0);
  for (const int code : {0, 17, -1, 1 << 24}) CHECK(!PrnType(folder.Write("odd.raw", Image(code, 0)).c_str(), 0));
  LoadEveryPrefix("cut.raw", Image(7, 20), 40);
}
