#include "load/number_scanner.h"

#include <sstream>

#include "support/support.h"

using namespace kem::test;
using kem::load::NumberScanner;

namespace {

// What is left to see after numbers were taken until the stream reported a condition.
struct Outcome {
  std::vector<float> values;  // the last is the target of the attempt that ended it
  std::ios::iostate state;
  std::streamoff position;
};

Outcome Finish(std::istream& in, std::vector<float> values) {
  const auto state = in.rdstate();
  in.clear();
  return {std::move(values), state, in.tellg()};
}

Outcome ByStream(const std::string& text) {
  std::istringstream in(text);
  std::vector<float> values;
  do {
    values.push_back(7);
    in >> values.back();
  } while (in.good());
  return Finish(in, values);
}

Outcome ByScanner(const std::string& text) {
  std::istringstream in(text);
  std::vector<float> values;
  {
    NumberScanner scan(in);
    do {
      values.push_back(7);
      scan.Next(values.back());
    } while (scan.Good());
  }
  return Finish(in, values);
}

void CheckSame(const std::string& text) {
  CAPTURE(text.substr(0, 200));
  const Outcome expected = ByStream(text);
  const Outcome got = ByScanner(text);
  REQUIRE(got.values.size() == expected.values.size());
  for (std::size_t k = 0; k < got.values.size(); ++k) CHECK_BITS(got.values[k], expected.values[k]);
  CHECK(got.state == expected.state);
  CHECK(got.position == expected.position);
}

}  // namespace

TEST_CASE("number scanner: takes what a stream takes and stops where it stops") {
  for (const char* text : {"",
                           " ",
                           "1",
                           "1 ",
                           "-0 +0\n",
                           "1.5e3 2",
                           "1e",
                           "1e+",
                           "1e5e",
                           ".",
                           ".5 5. ",
                           "-.5",
                           "--1",
                           "+-1",
                           "+ 1",
                           "1.2.3 4",
                           "0x10",
                           "inf",
                           "nan",
                           "1,5",
                           "1e99 2",
                           "-1e99 2",
                           "1e-99 2",
                           "1e-42 2 ",
                           "0e5 ",
                           "00012 3 ",
                           "1e0005 ",
                           "3.4028235e38 1 ",
                           "3.4028236e38 1 ",
                           "1.17549435e-38 ",
                           "7e-46 8e-46 ",
                           "1e-400 ",
                           "1e999999999999 1",
                           "1e-99999999999 1",
                           "11.e9223372036854775807 1",
                           "\v\f\r\n\t4 x",
                           "12abc",
                           "e5",
                           "1 2 3 end",
                           "16777217 16777219.0000001 ",
                           "0.000000000000000000000000000000000000000000000000000001e50 "})
    CheckSame(text);
}

TEST_CASE("number scanner: random texts give the same numbers, state and position as a stream") {
  Rng rng(kSeed);
  CAPTURE(kSeed);
  constexpr std::string_view kAlphabet = "0123456789012345678901234567890123456789....--++eeE   \n\n\tx,i";
  for (int round = 0; round < 20000; ++round) {
    std::string text;
    for (auto length = rng() % 40; length > 0; --length) text += kAlphabet[rng() % kAlphabet.size()];
    CheckSame(text);
  }
}

TEST_CASE("number scanner: numbers across the edges of its blocks, and one longer than a block") {
  Rng rng(kSeed);
  std::string text;
  while (text.size() < 400000) text += std::to_string(static_cast<int>(rng())) + (rng() % 2 ? " " : "\n  ");
  CheckSame(text);
  CheckSame(text + "end");
  CheckSame(std::string(65530, ' ') + "123456789 5 ");
  CheckSame("1." + std::string(200000, '3') + " 4 ");
  CheckSame(std::string(200000, '9') + " 4 ");
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
