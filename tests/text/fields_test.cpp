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
  const std::pair<const char*, char> formats[] = {{"%*s %g", 'g'}, {"%g %g %g", 'g'}, {"%*[\"start :] %g", 'g'},
                                                  {"%d:%d", 'd'},  {"%*c%d", 'd'},    {"%2u-%2u-%4u", 'u'},
                                                  {"%*s %s", 's'}};
  for (const char* line : lines)
    for (const auto& one : formats) {
      const char* const format = one.first;
      const char kind = one.second;
      CAPTURE(line);
      CAPTURE(format);
      float g[2][3] = {{7, 7, 7}, {7, 7, 7}};
      int d[2][3] = {{7, 7, 7}, {7, 7, 7}};
      unsigned u[2][3] = {{7, 7, 7}, {7, 7, 7}};
      Text s[2] = {"before", "before"};
      if (kind == 'g')
        std::sscanf(line, format, g[0], g[0] + 1, g[0] + 2), ScanLine(line, format, {g[1], g[1] + 1, g[1] + 2});
      if (kind == 'd') std::sscanf(line, format, d[0], d[0] + 1), ScanLine(line, format, {d[1], d[1] + 1});
      if (kind == 'u')
        std::sscanf(line, format, u[0], u[0] + 1, u[0] + 2), ScanLine(line, format, {u[1], u[1] + 1, u[1] + 2});
      if (kind == 's') std::sscanf(line, format, s[0]), ScanLine(line, format, {s[1]});
      for (int k = 0; k < 3; ++k) CHECK_BITS(g[1][k], g[0][k]);
      for (int k = 0; k < 3; ++k) CHECK((d[1][k] == d[0][k] && u[1][k] == u[0][k]));
      CHECK(std::string(s[1]) == s[0]);
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
  const std::tuple<std::string, int, std::string> names[] = {
      {"name.ext", 2, "name_02.ext"},
      {"dir.v1/run.txt", 2, "dir_02.v1/run.txt"},
      {"plain", 1, "plain_01"},
      {".hidden", 123, "_123.hidden"},
      {std::string(130, 'n') + ".", 1, std::string(130, 'n') + "_"}};
  for (const auto& [name, number, numbered] : names) {
    Text text;
    CopyText(text, name);
    MakeNumberedFileName(text, number);
    CHECK(std::string(text) == numbered);
  }
}
