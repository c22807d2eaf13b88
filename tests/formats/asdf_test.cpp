#include "formats/asdf.h"

#include "support/support.h"

using namespace kem::test;

namespace {

// The digits of a number, the leading one replaced by the letter that stands for it: zero, then 1 to 9 or -1 to -9.
std::string Coded(int value, const char* letters) {
  std::string text = std::to_string(std::abs(value));
  const int leading = text[0] - '0';
  text[0] = letters[value < 0 ? leading + 9 : leading];
  return text;
}

}  // namespace

TEST_CASE("asdf: what is squeezed, as differences of every length and as duplicates, comes back") {
  Rng rng(7);
  const auto below = [&rng](unsigned count) { return static_cast<int>(rng() % count); };
  std::vector<double> values;
  std::string text;
  for (int line = 0, last = 0; line < 2000; ++line) {
    text += std::to_string(line) + Coded(last, "@ABCDEFGHIabcdefghi");  // the check
    if (line == 0) values.push_back(last);
    for (int k = 1 + below(30); k > 0; --k) {
      constexpr unsigned kRanges[] = {2, 20, 200, 2000, 20000, 2000000};
      const auto range = kRanges[below(6)];
      const int step = below(range) - static_cast<int>(range) / 2;
      const int times = below(4) == 0 ? 1 + below(12) : 1;
      text += Coded(step, "%JKLMNOPQRjklmnopqr");
      if (times > 1) text += Coded(times, " STUVWXYZs");
      for (int t = 0; t < times; ++t) values.push_back(last += step);
    }
    text += line % 3 ? "\n" : "\r\n";
  }
  const auto decoded = kem::formats::DecodeOrdinates(text, false);
  CHECK(decoded.values == values);
  CHECK(decoded.failedChecks + decoded.unknownSymbols == 0);
}
