#include "support/loads.h"

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
  const PrnType r = Load("streak.raw", Image(7, 642));
  CHECK(Facts(r) ==
        "3 Z 640x480 x 468 532.099976 0.100000001 y 0 99.8000031 0.208350733 z 0 4660 = 4660 640 0 ... / 1 641 0 "
        "... / 2 0 0 ... | Wavelength (nm)|Time (ns)|Intensity");
  CHECK(HeaderOf(r) == "3|1|7|500|0.100000001|320|");
  CHECK(Numbers(std::array{r.zArray[639][0], r.zArray[1][1], r.zArray[2][1], r.zArray[639][479]}) ==
        " 639 641 0 0");
  CHECK(Load("last.raw", Image(16, 0)).yEnd == 100000);
  for (const int code : {0, 17, -1, 1 << 24}) CHECK(!Load("odd.raw", Image(code, 0)));
}
