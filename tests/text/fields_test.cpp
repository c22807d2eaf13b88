#include "text/fields.h"

#include <cstdio>

#include "support/support.h"

using namespace kem::text;
using namespace kem::test;

TEST_CASE("text: scanning a line gives what the C library gives") {
  const char* lines[] = {
      "",        "RRG 5.0e+03",  "RRG  2e4 7",     "  RRG\t-.5",   "RRG",         "RRG x",
      "RRG +5",  "RRG inf",      "RRG -nan",       "RRG 0x1.8p1",  "RRG 1e99",    "RRG 1e-99",
      "RRG 5.",  "RRG 12abc",    "12 34 56",       "#1290",        "*0614925",    "\"start  :\" 4",
      "100:4",   "03-11-2016 x", "3-1-16",         "RRG 0x1p-200", "RRG 0x1p200", "RRG -7",
      "a b c d", "RRG 1.5e+2x",  "\"start :\"-2e1"};
  for (const char* line : lines) {
    CAPTURE(line);
    float number[3] = {7, 7, 7};
    float expectedNumber[3] = {7, 7, 7};
    const auto checkNumbers = [&] {
      for (int k = 0; k < 3; ++k) CHECK_BITS(number[k], expectedNumber[k]);
    };
    std::sscanf(line, "%*s %g", expectedNumber);
    ScanLine(line, "%*s %g", {number});
    checkNumbers();
    std::sscanf(line, "%g %g %g", expectedNumber, expectedNumber + 1, expectedNumber + 2);
    ScanLine(line, "%g %g %g", {number, number + 1, number + 2});
    checkNumbers();
    std::sscanf(line, "%*[\"start :] %g", expectedNumber);
    ScanLine(line, "%*[\"start :] %g", {number});
    checkNumbers();

    int integer[2] = {7, 7};
    int expectedInteger[2] = {7, 7};
    unsigned date[3] = {7, 7, 7};
    unsigned expectedDate[3] = {7, 7, 7};
    std::sscanf(line, "%d:%d", expectedInteger, expectedInteger + 1);
    ScanLine(line, "%d:%d", {integer, integer + 1});
    std::sscanf(line, "%*c%d", expectedInteger);
    ScanLine(line, "%*c%d", {integer});
    CHECK(integer[0] == expectedInteger[0]);
    CHECK(integer[1] == expectedInteger[1]);
    std::sscanf(line, "%2u-%2u-%4u", expectedDate, expectedDate + 1, expectedDate + 2);
    ScanLine(line, "%2u-%2u-%4u", {date, date + 1, date + 2});
    for (int k = 0; k < 3; ++k) CHECK(date[k] == expectedDate[k]);

    Text word = "before";
    Text expectedWord = "before";
    std::sscanf(line, "%*s %s", expectedWord);
    ScanLine(line, "%*s %s", {word});
    CHECK(std::string(word) == expectedWord);
  }
}

TEST_CASE("text: an integer that does not fit becomes the nearest one") {
  int value = 0;
  CHECK(ScanLine("99999999999", "%d", {&value}) == 1);
  CHECK(value == 2147483647);
  CHECK(ScanLine("-99999999999999999999", "%d", {&value}) == 1);
  CHECK(value == -2147483647 - 1);
}

TEST_CASE("text: fields are cut to 131 characters and filled with NUL") {
  Text field;
  std::fill(std::begin(field), std::end(field), 'x');
  CopyText(field, std::string(200, 'a'));
  CHECK(TextOf(field) == std::string(131, 'a'));
  std::fill(std::begin(field), std::end(field), 'x');  // no NUL at all
  CHECK(TextOf(field).size() == 131);
  CopyText(field, "b");
  CHECK(field[131] == '\0');
}

TEST_CASE("text: lines lose their ends, and numbered names get theirs before the first dot") {
  const std::pair<const char*, const char*> lines[] = {
      {"a\r\n", "a"}, {"\r\r\n\n", ""}, {"a\rb", "a\rb"}, {"", ""}};
  for (const auto& [line, trimmed] : lines) {
    Text text;
    CopyText(text, line);
    TrimTrailing(text);
    CHECK(std::string(text) == trimmed);
  }
  struct Case {
    std::string name;
    int number;
    std::string result;
  };
  const Case names[] = {{"name.ext", 2, "name_02.ext"},
                        {"dir.v1/run.txt", 2, "dir_02.v1/run.txt"},
                        {"plain", 1, "plain_01"},
                        {".hidden", 123, "_123.hidden"},
                        {std::string(130, 'n') + ".", 1, std::string(130, 'n') + "_"}};
  for (const Case& c : names) {
    Text text;
    CopyText(text, c.name);
    MakeNumberedFileName(text, c.number);
    CHECK(std::string(text) == c.result);
  }
}
