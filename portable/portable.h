// What some standard libraries lack, for the library, the command and the tests alike: bits of another type, and
// floating point numbers as text.
#pragma once

#include <bit>
#include <charconv>
#include <string>
#include <version>

#ifndef __cpp_lib_to_chars
#include <fast_float/fast_float.h>
#include <cmath>
#include <limits>
#include <locale>
#include <sstream>
#include <string_view>
#endif

namespace kem::portable {

#ifdef __cpp_lib_bit_cast
using std::bit_cast;
#else
template <class To, class From>
constexpr To bit_cast(const From& from) noexcept {
  return __builtin_bit_cast(To, from);
}
#endif

#ifdef __cpp_lib_to_chars

// As std::from_chars in general notation.
template <class Number>
std::from_chars_result FromChars(const char* first, const char* last, Number& value) {
  return std::from_chars(first, last, value);
}

// Appends the shortest text that reads back as the number.
template <class Number>
void AppendShortest(std::string& text, Number value) {
  char digits[32];
  text.append(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
}

// Appends general notation with so many significant digits.
template <class Number>
void AppendGeneral(std::string& text, Number value, int significant = 6) {
  char digits[32];
  const auto end = std::to_chars(digits, digits + sizeof digits, value, std::chars_format::general, significant);
  text.append(digits, end.ptr);
}

#else

template <class Number>
std::from_chars_result FromChars(const char* first, const char* last, Number& value) {
  Number parsed = 0;
  const auto result = fast_float::from_chars(first, last, parsed);
  if (result.ec != std::errc()) return {result.ptr, result.ec};
  if (parsed == 0 || std::isinf(parsed)) {  // out of range, unless the text says so
    std::string_view digits(first, static_cast<std::size_t>(result.ptr - first));
    digits = digits.substr(0, digits.find_first_of("eE"));
    if (digits.find_first_of("123456789") != digits.npos) return {result.ptr, std::errc::result_out_of_range};
  }
  value = parsed;
  return {result.ptr, result.ec};
}

template <class Number>
std::string Printed(Number value, std::ios::fmtflags notation, int digits) {
  if (!std::isfinite(value))
    return std::string(std::signbit(value) ? "-" : "") + (std::isnan(value) ? "nan" : "inf");
  std::ostringstream text;
  text.imbue(std::locale::classic());
  text.flags(notation);
  text.precision(digits);
  text << value;
  return text.str();
}

// In the shorter one of fixed and scientific notation. 2^-96, 2^87 and 2^90 get a digit more than they need.
template <class Number>
void AppendShortest(std::string& text, Number value) {
  std::string shortest;
  for (const auto notation : {std::ios::fixed, std::ios::scientific}) {
    std::string printed = Printed(value, notation, 0);
    Number back = 0;
    for (int digits = 1; std::isfinite(value); ++digits) {
      const auto read = FromChars(printed.data(), printed.data() + printed.size(), back);
      if (read.ec == std::errc() && back == value) break;
      printed = Printed(value, notation, digits);
    }
    if (shortest.empty() || printed.size() < shortest.size()) shortest = printed;
  }
  text += shortest;
}

template <class Number>
void AppendGeneral(std::string& text, Number value, int significant = 6) {
  text += Printed(value, {}, significant);
}

#endif

}  // namespace kem::portable
