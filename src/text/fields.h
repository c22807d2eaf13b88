// Text of headers: bounded fields, lines of at most 131 characters, and the scanning of values out of them.
#pragma once

#include <initializer_list>
#include <istream>
#include <string_view>
#include <variant>

#include "kem.h"

namespace kem::text {

using Text = char[kTextSize];

// Copies text into a field of 132 bytes, cut to 131 characters, the rest filled with NUL.
void CopyText(char* field, std::string_view text);

// The text of a field of 132 bytes up to its NUL, never past its end.
std::string_view TextOfField(const char* field);
inline std::string_view TextOf(const Text& field) { return TextOfField(field); }

// Reads one line without its line feed. A line of 132 or more characters fails the stream, which keeps the
// rest of it.
std::istream& ReadLine(std::istream& in, Text& line);

// Removes every trailing carriage return and line feed.
void TrimTrailing(char* line);

// Reads a line and trims it.
std::istream& ReadTrimmedLine(std::istream& in, Text& line);

// Reads a line of any length, of which the first 131 characters are kept.
std::istream& ReadStartOfLine(std::istream& in, Text& line);

constexpr bool Contains(std::string_view text, std::string_view part) { return text.find(part) != text.npos; }

// What follows the first word of a line and the blanks around it.
std::string_view BehindFirstWord(std::string_view line, std::string_view blanks = " \t");

// Scans values from a line like the C library's sscanf, whose leniency old files rely on: leading white space,
// "+5", "inf", hexadecimal. Knows %s %d %u %g %c %[set], '*' and a width; always reads a decimal point, whatever
// the host's locale. Targets of %s and %[ are fields of 132 bytes. Returns the number of values stored; a value
// that does not scan leaves its target and all later ones alone.
using ScanTarget = std::variant<float*, int*, unsigned*, char*>;
int ScanLine(std::string_view line, std::string_view format, std::initializer_list<ScanTarget> targets);

// Inserts "_" and the number, two digits at least, in front of the first dot of a name, or at its end.
void MakeNumberedFileName(Text& name, int number);

}  // namespace kem::text
