#include "support/loads.h"

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
  for (const auto& [at, text] : {std::pair{36, "Wavenumber"}, {51, "Counts"}})
    bytes.PadTo(static_cast<std::size_t>(at)).Text(text);
  PutNumber(bytes.PadTo(111), -7);
  PutNumber(bytes, 1000.25f);
  for (const auto& [at, text] : {std::pair{135, "operator"},
                                 {170, "11.10.99"},
                                 {178, "sample"},
                                 {213, "detector"},
                                 {223, "grating"},
                                 {256, "filter"},
                                 {291, "514.5"},
                                 {301, "power"},
                                 {311, "1"},
                                 {321, "2"},
                                 {331, "3"},
                                 {341, "5"},
                                 {351, "4"},
                                 {361, "6"},
                                 {371, "comment"}})
    bytes.PadTo(static_cast<std::size_t>(at)).Text(text);
  bytes.PadTo(536);
  const std::size_t group = static_cast<std::size_t>((points + 6 + 63) / 64) * 256;
  for (int s = 0; s <= spectra; ++s) {
    for (int k = 0; k < points; ++k)
      PutNumber(bytes, s == 0 ? static_cast<float>(k) + 0.5f : static_cast<float>(100 * s + k));
    bytes.PadTo(536 + group * static_cast<std::size_t>(s + 1));
  }
  return bytes;
}

}  // namespace

TEST_CASE("dilor: one spectrum as text runs from the last point to the first") {
  const PrnType r = Load("a.ms0", SingleFile(false, "10 20\n30"));
  CHECK(Facts(r) == "6 Y 3x3 x 1000 3000 0.25 y 5 15 1 = 15 10 5 | Wavenumber|counts|");
  CHECK(HeaderOf(r) ==
        "2|5|10 mW|operator|sample|detector|grating|filter|Wavenumber |counts|514.5|1|2|3|4|date|comment|");
  CHECK(Facts(Load("a.ms0", SingleFile(true, "1 10 2 20 3 30"))) ==
        "6 XY 3x3 x 1 3 1: 3 2 1 y 5 15 1 = 15 10 5 | Wavenumber|counts|");
  CHECK(Facts(Load("a.ms0", SingleFile(false, "10 end"))) ==
        "6 Y 3x3 x 1000 3000 1 y 0 inf 1 = 0 nan inf | Wavenumber|counts|");
}

TEST_CASE("dilor: a spectrum of a series") {
  for (const int points : {2, 58, 59})
    for (const int which : {0, 1, 2}) {
      const PrnType r = Load("a.m3d", Series(2, points), which);
      REQUIRE(r.nY == points);
      CHECK(Numbers(std::array{r.xArray[1], r.yArray[points - 1]}) ==
            Numbers(std::array{1.5f, static_cast<float>(100 * std::max(which, 1) + points - 1) / 4}));
      CHECK(ReadNextFlag == (which == 2 ? 0 : 1));
    }
  CHECK(Facts(Load("a.m3d", Series(2, 4).substr(0, 536 + 256 + 9), 1)) ==
        "6 XY 4x4 x 0.5 3.5 1: 0.5 1.5 2.5 3.5 y 0 25.25 1 = 25 25.25 0 0 | Wavenumber|Counts|");
  CHECK(HeaderOf(Load("a.m3d", Series(1, 2))) ==
        "4|6|power|operator|sample|detector|grating|filter|Wavenumber|Counts|514.5|1|2|3|5|11.10.99|comment|");
  TempFolder folder;
  std::ifstream in(folder.Write("b", Series(3, 2)), std::ios::binary);
  PrnType beyond;
  int count = 0;
  CHECK(beyond.ReadDilorM3D(in, count, 5) == 1);
  CHECK((count == 3 && !beyond && beyond.xStart == -7 && beyond.xEnd == 1000.25f));
  std::string tiny = Series(1, 2).replace(536, 4, std::string("\0\0\x40\0", 4));  // an exponent byte of 0 is not 0
  CHECK_BITS(Load("a.m3d", tiny).xArray[0], std::ldexp(1.5f, -129));
}
