#include <cmath>

#include "support/support.h"

using namespace kem::test;

namespace {

std::string SingleFile(bool multi, const std::string& numbers, const std::string& time = "2") {
  std::string text = "Version 2\r\n" + std::string(multi ? "Multi\r\n" : "Single\r\n") +
                     "2\r\n3\r\n4\r\n5\r\n6\r\n" +
                     "\"Wavenumber \"rest\r\ncounts\r\n9\r\n3000\r\n1000\r\n12\r\n13\r\n14\r\n15\r\n" + numbers +
                     std::string(140, ' ') + "\r\n";
  for (const char* line :
       {"\"operator\"", "date", "sample", "detector", "grating", "filter", "514.5", "10 mW", "1", "2", "3", "4"})
    text += std::string(line) + "\r\n";
  return text + time + "\r\n5\r\ncomment\r\n0.25\r\nlast\r\n";
}

Bytes& PutNumber(Bytes& bytes, float value) {
  int exponent = 0;
  const float mantissa = std::frexp(std::fabs(value), &exponent);
  const auto bits = static_cast<std::uint32_t>(std::ldexp(mantissa, 24)) & 0x7FFFFFu;
  return bytes.Put(bits | (value < 0 ? 0x800000u : 0u) | static_cast<std::uint32_t>(exponent + 128) << 24);
}

// A series whose abscissae are k + 0.5 and whose spectrum s has the values 100 * s + k.
std::string Series(int spectra, int points) {
  Bytes bytes;
  bytes.Text("Multi-3D").PadTo(32).Put(static_cast<std::int16_t>(spectra)).Put(static_cast<std::int16_t>(points));
  bytes.Text("Wavenumber").PadTo(51).Text("Counts").PadTo(111);
  PutNumber(bytes, -7);
  PutNumber(bytes, 1000.25f).PadTo(135).Text("operator").PadTo(170).Text("11.10.99").PadTo(178).Text("sample");
  bytes.PadTo(291).Text("514.5").PadTo(351).Text("4").PadTo(361).Text("3").PadTo(371).Text("comment").PadTo(536);
  const std::size_t group = static_cast<std::size_t>((points + 6 + 63) / 64) * 256;
  for (int s = 0; s <= spectra; ++s) {
    for (int k = 0; k < points; ++k)
      PutNumber(bytes, s == 0 ? static_cast<float>(k) + 0.5f : static_cast<float>(100 * s + k));
    bytes.PadTo(536 + group * static_cast<std::size_t>(s + 1));
  }
  return bytes;
}

PrnType Load(const std::string& name, const std::string& bytes, int index = 0) {
  const TempFolder folder;
  return PrnType(folder.Write(name, bytes).c_str(), index);
}

}  // namespace

TEST_CASE("dilor: one spectrum as text runs from the last point to the first") {
  const PrnType r = Load("a.ms0", SingleFile(false, "10 20\n30"));
  REQUIRE(r.nY == 3);
  CHECK(r.fileType == FileDilor);
  CHECK(r.allocType == AllocY);
  CHECK_BITS(r.yArray[0], 15);
  CHECK_BITS(r.yArray[2], 5);
  CHECK_BITS(r.xStart, 1000);
  CHECK_BITS(r.xEnd, 3000);
  CHECK_BITS(r.xStep, 0.25f);
  CHECK(std::string(r.dilor.dilorXLabel) == "Wavenumber ");
  CHECK(std::string(r.dilor.dilorOperator) == "operator");
  CHECK(std::string(r.dilor.dilorPower) == "10 mW");
  CHECK_BITS(r.dilor.dilorExcLine, 514.5f);
  CHECK_BITS(r.dilor.dilorSpecWidth, 4);
  CHECK(std::string(r.dilor.dilorComment) == "comment");
  const PrnType pairs = Load("a.ms0", SingleFile(true, "1 10 2 20 3 30"));
  CHECK(pairs.allocType == AllocXY);
  CHECK_BITS(pairs.xArray[0], 3);
  CHECK_BITS(pairs.yArray[0], 15);
  CHECK_BITS(pairs.xStep, 1);
}

TEST_CASE("dilor: a spectrum of a series") {
  for (const int points : {2, 58, 59}) {
    for (const int which : {0, 1, 2}) {
      const PrnType r = Load("a.m3d", Series(2, points), which);
      REQUIRE(r.nY == points);
      CHECK_BITS(r.xArray[1], 1.5f);
      CHECK_BITS(r.yArray[points - 1], static_cast<float>(100 * std::max(which, 1) + points - 1) / 4);
      CHECK(ReadNextFlag == (which == 2 ? 0 : 1));
      CHECK_BITS(r.dilor.dilorIntTime, 4);
      CHECK(std::string(r.dilor.dilorDate) == "11.10.99");
    }
  }
  TempFolder folder;
  std::ifstream in(folder.Write("b", Series(3, 2)), std::ios::binary);
  PrnType beyond;
  int count = 0;
  CHECK(beyond.ReadDilorM3D(in, count, 5) == 1);
  CHECK(count == 3);
  CHECK(beyond.allocType == AllocNone);
  CHECK_BITS(beyond.xStart, -7);
  CHECK_BITS(beyond.xEnd, 1000.25f);
}

TEST_CASE("dilor: an exponent byte of 0 is a tiny number, not 0") {
  std::string bytes = Series(1, 2);
  bytes.replace(536, 4, std::string("\0\0\x40\0", 4));
  const PrnType r = Load("a.m3d", bytes);
  CHECK_BITS(r.xArray[0], std::ldexp(1.5f, -129));
}

TEST_CASE("dilor: short and damaged files") {
  const PrnType cut = Load("a.m3d", Series(2, 4).substr(0, 536 + 256 + 9), 1);
  CHECK_BITS(cut.yArray[1], 101.0f / 4);
  CHECK_BITS(cut.yArray[3], 0);
  CHECK_BITS(Load("a.ms0", SingleFile(false, "10 end")).yArray[0], 0);
  LoadEveryPrefix("cut.ms0", SingleFile(true, "1 10 2 20 3 30"), 300);
  LoadEveryPrefix("cut.m3d", Series(1, 4), 300);
}
