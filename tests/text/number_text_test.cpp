#include "text/number_text.h"

#include <charconv>
#include <limits>
#include <sstream>

#include "formats/output_file.h"
#include "support/support.h"

using namespace kem::test;

namespace {

// Streams of some systems drop the sign of what is no number; kem's files are the same everywhere.
void CheckText(float value) {
  std::ostringstream stream;
  if (std::isnan(value))
    stream << (std::signbit(value) ? "-nan" : "nan");
  else
    stream << value;
  std::string text;
  kem::text::AppendNumber(text, value);
  CHECK(text == stream.str());
}

void CheckWithNeighbours(float value) {
  const float huge = std::numeric_limits<float>::infinity();
  for (const float v : {std::nextafter(value, -huge), value, std::nextafter(value, huge), -value}) CheckText(v);
}

}  // namespace

TEST_CASE("number text: the text of any float is that of a stream, halfway cases included") {
  Rng rng(kSeed);
  CAPTURE(kSeed);
  for (const unsigned bits : {0u, 0x80000000u, 0x7f800000u, 0xff800000u, 0x7fc00000u, 0xffc00000u, 1u, 0x807fffffu})
    CheckText(kem::portable::bit_cast<float>(bits));
  for (int k = -45; k <= 38; ++k) CheckWithNeighbours(static_cast<float>(std::pow(10.0, k)));
  for (int k = -149; k <= 127; ++k) CheckWithNeighbours(std::ldexp(1.0f, k));
  for (int k = 0; k < 30000; ++k) {
    CheckText(kem::portable::bit_cast<float>(static_cast<std::uint32_t>(rng())));
    const float sixDigits = 100000 + static_cast<float>(rng() % 900000);
    CheckWithNeighbours(sixDigits + 0.5f);
    CheckWithNeighbours(std::ldexp(sixDigits * 2 + 1, -static_cast<int>(rng() % 40)));
    CheckWithNeighbours((sixDigits * 10 + 5) * static_cast<float>(std::pow(10.0, rng() % 8)));
  }
}

TEST_CASE("number text: the shortest text where the standard library has none is that of the others") {
  const auto check = [](auto value) {
    char shortest[64];
    std::string text;
    kem::portable::AppendShortest(text, value);
    CHECK(text == std::string(shortest, std::to_chars(shortest, shortest + sizeof shortest, value).ptr));
  };
  Rng rng(kSeed);
  for (int k = 0; k < 10000; ++k) {
    const double decimal = static_cast<double>(rng() % 10000000) / std::pow(10.0, rng() % 12);
    for (const double value : {decimal, std::nextafter(decimal, 1e9), std::round(decimal) * 1e5, -1 / decimal}) {
      check(value);
      check(static_cast<float>(value));
    }
  }
}

TEST_CASE("number text: a file that cannot be stored is told by the flag, the next one clears it") {
#ifdef __linux__
  kem::formats::OutputFile("/dev/full", {}) << 1.5f;
  CHECK(WriteFailedFlag == 1);
#endif
  const TempFolder folder;
  const std::string path = folder.Path("out");
  kem::formats::OutputFile(path.c_str(), {}) << "a" << ' ' << -3 << 2.5f;
  CHECK(WriteFailedFlag == 0);
  CHECK(ReadBytes(path) == "a -32.5");
}
