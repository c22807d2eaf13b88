#include "support/loads.h"

using namespace kem::test;

namespace {

std::string ImageFile(bool wide, std::int16_t rows, std::int16_t columns, int values) {
  Bytes bytes;
  bytes.Text(wide ? "\xFD" : "\xFE").Text("\xFF\x04\x81").Text(std::string("\xFF\xFF\0\0\0\x0A\0\0\0\x0E", 10));
  bytes.Text("wavelength").PadTo(198, ' ').PadTo(202).Text("row").PadTo(210, ' ').PadTo(214);
  for (const std::int16_t word :
       {std::int16_t{1}, std::int16_t{2}, rows, columns, std::int16_t{5}, std::int16_t{6}})
    bytes.Put(word);
  bytes.PadTo(258);
  for (int k = 0; k < values; ++k) wide ? bytes.Put(-100000 * k) : bytes.Put(static_cast<std::int16_t>(-k));
  return bytes;
}

// Curves of one value type; curve c has the values 10 * c + k and the trailing values c and -1.
std::string CurveFile(int curves, std::uint16_t points, std::uint16_t stored, bool floats) {
  Bytes bytes;
  bytes.Text("\xFC\xFF\x04\x81").Put(static_cast<std::uint16_t>(curves)).Put(points);
  std::size_t at = 8;
  for (int c = 0; c < curves; ++c) {
    bytes.Text("delay").PadTo(at + 29, ' ').Text(std::string(140, 'y')).PadTo(at + 213, ' ');
    bytes.Put(char{0}).Put(static_cast<char>(floats ? 2 : 0)).Put(stored);
    for (int k = 0; k < stored; ++k)
      floats ? bytes.Put(static_cast<float>(10 * c + k) + 0.5f) : bytes.Put(10 * c + k);
    bytes.Put(c).Put(-1);
    at += 217 + 4u * stored + 8;
  }
  return bytes;
}

}  // namespace

TEST_CASE("iccd: an image of either width; other signatures are refused, short files keep zeros") {
  CHECK(Facts(Load("a.img", ImageFile(true, 2, 3, 6))) ==
        "18 Z 3x2 idle x 0 3 1 y 0 2 1 z -500000 0 = 0 -300000 / -100000 -400000 / -200000 -500000 | "
        "wavelength|row|");
  CHECK(printed == "3\n2\n");
  CHECK(Facts(Load("a.img", ImageFile(false, 2, 3, 4))) ==
        "18 Z 3x2 idle x 0 3 1 y 0 2 1 z -3 0 = 0 -3 / -1 0 / -2 0 | wavelength|row|");
  CHECK(HeaderOf(Load("a.img", ImageFile(false, 2, 3, 4))) == "1|2|2|3|5|6|");
  for (const std::size_t at : {0, 1, 2, 3, 4, 9, 13}) {
    std::string bytes = ImageFile(false, 2, 3, 6);
    bytes[at] ^= 0x55;
    CAPTURE(at);
    CHECK(Load("a.img", bytes).fileType != FileIccdImage);
  }
  CHECK(!Load("a.img", ImageFile(false, -1, 3, 4)));
}

TEST_CASE("iccd: a curve of several, counted from 0") {
  const std::string integers = CurveFile(3, 5, 4, false);
  const std::string yTitle = std::string(102, 'y') + "|Z";
  CHECK(Facts(Load("a.crv", integers, 0)) == "17 Y 5x5 x 0 4 1 y 0 3 1 = 0 1 2 3 0 | delay|" + yTitle);
  CHECK(ReadNextFlag == 1);
  CHECK(Facts(Load("a.crv", integers, 2)) == "17 Y 5x5 x 0 4 1 y 0 23 1 = 20 21 22 23 0 | delay|" + yTitle);
  CHECK(ReadNextFlag == 0);
  CHECK(HeaderOf(Load("a.crv", integers, 1)) == "1|0|0|0|255|255|255|255|");
  CHECK_BITS(Load("a.crv", CurveFile(2, 3, 4, true), 1).yArray[2], 12.5f);
  for (const int which : {3, -1}) CHECK(!Load("a.crv", integers, which));
  CHECK(!Load("a.crv", CurveFile(0, 3, 3, true)));
  std::string flagged = integers;
  flagged[8 + 213] = 1;
  CHECK(!Load("a.crv", flagged, 2));
}
