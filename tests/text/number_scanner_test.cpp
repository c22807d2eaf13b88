#include "text/number_scanner.h"

#include <cmath>
#include <cstdio>
#include <sstream>

#include "support/support.h"
#include "text/short_number.h"

using namespace kem::test;
using kem::text::NumberScanner;

namespace {

// What is left to see after numbers were taken until the stream reported a condition.
struct Outcome {
  std::vector<float> values;  // the last is the target of the attempt that ended it
  bool thrown = false;
  std::ios::iostate state;
  std::streamoff position;
};

template <class Taker>
Outcome TakeAll(const std::string& text, std::ios::iostate exceptions) {
  std::istringstream in(text);
  in.exceptions(exceptions);
  Outcome outcome{};
  try {
    Taker taker(in);
    do {
      outcome.values.push_back(7);
      taker.Next(outcome.values.back());
    } while (in.good());
  } catch (const std::ios::failure&) {
    outcome.thrown = true;
  }
  in.exceptions(std::ios::goodbit);
  outcome.state = in.rdstate();
  in.clear();
  outcome.position = in.tellg();
  return outcome;
}

struct Stream {
  std::istream& in;
  explicit Stream(std::istream& from) : in(from) {}
  void Next(float& value) { in >> value; }
};

[[maybe_unused]] void CheckSame(const std::string& text, std::ios::iostate exceptions = std::ios::goodbit) {
  CAPTURE(text.substr(0, 200));
  const Outcome expected = TakeAll<Stream>(text, exceptions);
  const Outcome got = TakeAll<NumberScanner>(text, exceptions);
  REQUIRE(got.values.size() == expected.values.size());
  for (std::size_t k = 0; k < got.values.size(); ++k) CHECK_BITS(got.values[k], expected.values[k]);
  CHECK(got.thrown == expected.thrown);
  CHECK(got.state == expected.state);
  CHECK(got.position == expected.position);
}

}  // namespace

#ifdef __GLIBCXX__  // other streams take other characters for a number: libc++ all of "1e5e"
TEST_CASE("number scanner: takes what a stream takes and stops where it stops") {
  std::istringstream texts(
      "; ;1;1 ;-0 +0\n;1.5e3 2;1e;1e+;1e5e;.;.5 5. ;-.5;--1;+-1;+ 1;1.2.3 4;0x10;inf;nan;1,5;12abc;e5;1 2 3 end;"
      "1e99 2;-1e99 2;1e-99 2;1e-42 2 ;0e5 ;00012 3 ;1e0005 ;3.4028235e38 1 ;3.4028236e38 1 ;1.17549435e-38 ;"
      "7e-46 8e-46 ;1e-400 ;1e999999999999 1;1e-99999999999 1;11.e9223372036854775807 1;\v\f\r\n\t4 x;"
      "16777217 16777219.0000001 ;0.000000000000000000000000000000000000000000000000000001e50 ");
  for (std::string text; std::getline(texts, text, ';');) CheckSame(text);
}

TEST_CASE("number scanner: random texts give the same numbers, state, position and exceptions as a stream") {
  Rng rng(kSeed);
  CAPTURE(kSeed);
  constexpr std::string_view kAlphabet = "0123456789012345678901234567890123456789....--++eeE   \n\n\tx,i";
  for (int round = 0; round < 20000; ++round) {
    std::string text;
    for (auto length = rng() % 40; length > 0; --length) text += kAlphabet[rng() % kAlphabet.size()];
    CheckSame(text, static_cast<std::ios::iostate>(rng() % 8));
  }
}

TEST_CASE("number scanner: every alignment of a number with the ends of its blocks") {
  for (const std::size_t block : {1 << 15, 1 << 16, 1 << 17})
    for (std::size_t lead = block - 9; lead < block + 3; ++lead)
      for (const char* text : {"8", "8\n", "-1.5e+3", "1e+", "12x", "9e99 ", "3 4"})
        for (const char fill : {' ', '0'}) CheckSame(std::string(lead, fill) + text);
}
#endif

TEST_CASE("short numbers: the value and the end that the standard library finds") {
  Rng rng(kSeed);
  const auto check = [](const std::string& text, auto value) {
    CAPTURE(text);
    auto wanted = value;
    const char* const end = text.data() + text.size();
    CHECK(kem::text::FromChars(text.data(), end, value).ptr ==
          kem::portable::FromChars(text.data(), end, wanted).ptr);
    CHECK((value == wanted && std::signbit(value) == std::signbit(wanted)));
  };
  for (int round = 0; round < 20000; ++round) {
    std::string text = rng() % 2 ? "-" : "";
    for (auto length = rng() % 20 + 1; length > 0; --length) text += static_cast<char>('0' + rng() % 10);
    text.insert(text.size() - rng() % (text.size() - text.starts_with('-')), ".");
    for (const char* tail : {"", " 1", "e", "e-3"}) check(text + tail, 7.0), check(text + tail, 7.0f);
  }
  for (int k = 0; k < 1000; ++k) {  // so near to the middle between two floats that the double is the middle
    char middle[32];
    std::snprintf(middle, sizeof middle, "%.15f", 4 + static_cast<int>(2 * (rng() % 1000000) + 1) * 0x1p-22);
    check(std::string(middle), 7.0f);
  }
}

TEST_CASE("number scanner: separators count as white space, and lines follow where it stopped") {
  std::istringstream in("1,2;3, 4\nnext line\n");
  float sum = 0;
  {
    NumberScanner scan(in, ",;");
    for (int k = 0; k < 4; ++k) {
      float value = 0;
      scan.Next(value);
      sum += value;
    }
    CHECK(scan.Good());
  }
  CHECK(sum == 10);
  std::string line;
  std::getline(in, line);
  std::getline(in, line);
  CHECK(line == "next line");
}
