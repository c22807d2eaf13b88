// Text and numbers as other programs expect them.
#pragma once

#include <iosfwd>
#include <string>
#include <string_view>

namespace kem::tool {

// Text of a data file as UTF-8; what is not UTF-8 yet is taken for Latin-1.
std::string Utf8(std::string_view text);

// UTF-8 for a terminal: control characters are written as \x1b.
struct Printable {
  std::string_view text;
};
std::ostream& operator<<(std::ostream& out, Printable printable);

std::string LowerCase(std::string text);
std::string UpperCase(std::string text);

// Text as a field of comma-separated values: quoted if it holds a separator, quotes in it doubled.
std::string CsvText(std::string_view text);

// The shortest text that reads back as the same float.
std::string Shortest(float value);

}  // namespace kem::tool
