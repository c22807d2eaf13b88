#include "support/support.h"

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
  for (int k = 0; k < values; ++k)
    if (wide)
      bytes.Put(-100000 * k);
    else
      bytes.Put(static_cast<std::int16_t>(-k));
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
      if (floats)
        bytes.Put(static_cast<float>(10 * c + k) + 0.5f);
      else
        bytes.Put(10 * c + k);
    bytes.Put(c).Put(-1);
    at += 217 + 4u * stored + 8;
  }
  return bytes;
}

PrnType Load(const std::string& name, const std::string& bytes, int index = 0) {
  const TempFolder folder;
  PrnType r;
  (void)Printed([&] { r.ReadFile(folder.Write(name, bytes).c_str(), index); });
  return r;
}

}  // namespace

TEST_CASE("iccd: an image of either width") {
  for (const bool wide : {false, true}) {
    const PrnType r = Load("a.img", ImageFile(wide, 2, 3, 6));
    REQUIRE(r.allocType == AllocZ);
    CHECK(r.fileType == FileIccdImage);
    CHECK(r.active == 0);
    CHECK(r.nX == 3);
    CHECK(r.nY == 2);
    CHECK_BITS(r.zArray[1][1], wide ? -400000 : -4);
    CHECK_BITS(r.xEnd, 3);
    CHECK_BITS(r.yEnd, 2);
    CHECK(std::string(r.xLabel) == "wavelength");
    CHECK(std::string(r.yLabel) == "row");
    CHECK(r.iccdImage.iccdImageHeader[5] == 6);
  }
  const TempFolder folder;
  const std::string path = folder.Write("a.img", ImageFile(false, 2, 3, 6));
  CHECK(Printed([&] { const PrnType r(path.c_str(), 0); }) == "3\n2\n");
}

TEST_CASE("iccd: images with another signature are refused, short ones keep zeros") {
  for (const std::size_t at : {0, 1, 2, 3, 4, 9, 13}) {
    std::string bytes = ImageFile(false, 2, 3, 6);
    bytes[at] ^= 0x55;
    CAPTURE(at);
    CHECK(Load("a.img", bytes).fileType != FileIccdImage);
  }
  const PrnType cut = Load("a.img", ImageFile(false, 2, 3, 4));
  CHECK_BITS(cut.zArray[0][1], -3);
  CHECK_BITS(cut.zArray[2][1], 0);
  CHECK(!Load("a.img", ImageFile(false, -1, 3, 4)));
  LoadEveryPrefix("cut.img", ImageFile(true, 2, 3, 6), 300);
}

TEST_CASE("iccd: a curve of several, counted from 0") {
  const std::string integers = CurveFile(3, 5, 4, false);
  for (const int which : {0, 1, 2}) {
    const PrnType r = Load("a.crv", integers, which);
    REQUIRE(r.nY == 5);
    CHECK(r.fileType == FileIccdCurve);
    CHECK_BITS(r.yArray[3], static_cast<float>(10 * which + 3));
    CHECK_BITS(r.yArray[4], 0);
    CHECK_BITS(r.xEnd, 4);
    CHECK(ReadNextFlag == (which < 2 ? 1 : 0));
    CHECK(r.iccdCurve.iccdCurveExtra[0][0] == which);
    CHECK(r.iccdCurve.iccdCurveExtra[1][3] == 0xFF);
    CHECK(std::string(r.xLabel) == "delay");
    CHECK(std::string(r.yLabel) == std::string(102, 'y'));
  }
  CHECK_BITS(Load("a.crv", CurveFile(2, 3, 4, true), 1).yArray[2], 12.5f);
  CHECK(!Load("a.crv", integers, 3));
  CHECK(!Load("a.crv", integers, -1));
  CHECK(!Load("a.crv", CurveFile(0, 3, 3, true)));
  std::string flagged = integers;
  flagged[8 + 213] = 1;
  CHECK(!Load("a.crv", flagged, 2));
  LoadEveryPrefix("cut.crv", CurveFile(1, 3, 3, true), 300);
}
