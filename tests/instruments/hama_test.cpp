#include "support/support.h"

using namespace kem::test;

namespace {

std::string Image(int sweepRange, int values) {
  Bytes bytes(std::endian::big);
  bytes.Text("HPK8TMAP").Put(3).Put(1).Put(sweepRange).Put(500.0f).Put(0.1f).Put(320).PadTo(256, 'x');
  for (int k = 0; k < values; ++k) bytes.Put(static_cast<std::uint16_t>(k == 0 ? 0x1234 : k));
  return bytes;
}

}  // namespace

TEST_CASE("hama: header, axes and values; what a short file lacks is 0") {
  const TempFolder folder;
  const PrnType r(folder.Write("streak.raw", Image(7, 642)).c_str(), 0);
  LoadWithReadErrors(folder.Path("streak.raw"));
  REQUIRE(r.allocType == AllocZ);
  CHECK(r.fileType == FileHama);
  CHECK(r.active == 1);
  REQUIRE(r.nX == 640);
  REQUIRE(r.nY == 480);
  CHECK(r.hama.hamaIntegrationTime == 3);
  CHECK(r.hama.hamaSweepCondition == 1);
  const std::pair<float, float> values[] = {
      {r.xStart, 468},        {r.xEnd, 532.1f},        {r.xStep, 0.1f},
      {r.yStart, 0},          {r.yEnd, 99.8f},         {r.yStep, static_cast<float>(99.8f / 479.0)},
      {r.zArray[0][0], 4660}, {r.zArray[639][0], 639}, {r.zArray[1][1], 641},
      {r.zArray[2][1], 0},    {r.zArray[639][479], 0}, {r.zMax, 4660}};
  for (const auto& [value, expected] : values) CHECK_BITS(value, expected);
  CHECK(PrnType(folder.Write("last.raw", Image(16, 0)).c_str(), 0).yEnd == 100000);
  for (const int code : {0, 17, -1, 1 << 24}) CHECK(!PrnType(folder.Write("odd.raw", Image(code, 0)).c_str(), 0));
}
