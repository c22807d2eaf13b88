// What some standard libraries lack, for the library, the command and the tests alike: bits of another type, and
// floating point numbers as text.
#pragma once

#include <bit>
#include <charconv>
#include <string>
#include <version>

#ifndef __cpp_lib_to_chars
#include <fast_float/fast_float.h>
#include <algorithm>
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

template <class Number>
bool ReadsBack(const std::string& text, Number value) {
  Number back = 0;
  return FromChars(text.data(), text.data() + text.size(), back).ec == std::errc() && back == value;
}

// Appends a number of few digits, as most are; returns false without having done so where it has many, or where
// scientific notation may be shorter. Numbers of so few digits differ from each other, and a division of two of
// them rounds once.
template <class Number>
bool AppendDecimal(std::string& text, Number value) {
  constexpr auto kEnd = static_cast<Number>(std::numeric_limits<Number>::digits10 == 6 ? 1e6 : 1e15);
  const Number size = std::abs(value);
  if (size != 0 && !(size >= static_cast<Number>(1e-3))) return false;
  Number scale = 1;
  for (std::size_t decimals = 0;; ++decimals, scale *= 10) {
    const Number whole = std::round(size * scale);
    if (!(whole < kEnd)) return false;
    if (whole / scale != size) continue;
    std::string digits = std::to_string(static_cast<long long>(whole));
    if (decimals == 0 && digits.size() > 5 && digits.find_last_not_of('0') + 5 < digits.size()) return false;
    if (digits.size() <= decimals) digits.insert(0, decimals + 1 - digits.size(), '0');
    if (decimals > 0) digits.insert(digits.size() - decimals, 1, '.');
    text += std::signbit(value) ? '-' + digits : digits;
    return true;
  }
}

// In the shorter one of fixed and scientific notation. Some powers of two, such as 2^87, get a digit more than they
// need.
template <class Number>
void AppendShortest(std::string& text, Number value) {
  if (AppendDecimal(text, value)) return;
  constexpr int kSafe = std::numeric_limits<Number>::digits10;
  int decimals = ReadsBack(Printed(value, std::ios::scientific, kSafe - 1), value) ? 0 : kSafe;
  std::string scientific = Printed(value, std::ios::scientific, decimals);
  while (std::isfinite(value) && !ReadsBack(scientific, value))
    scientific = Printed(value, std::ios::scientific, ++decimals);
  const int exponent = std::isfinite(value) ? std::stoi(scientific.substr(scientific.find('e') + 1)) : 0;
  const std::string fixed = Printed(value, std::ios::fixed, std::max(decimals - exponent, 0));
  text += fixed.size() <= scientific.size() ? fixed : scientific;
}

template <class Number>
void AppendGeneral(std::string& text, Number value, int significant = 6) {
  text += Printed(value, {}, significant);
}

#endif

}  // namespace kem::portable
