#include "text/number_text.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

#include "kem.h"
#include "portable.h"
#include "text/short_number.h"
#include "text/words.h"

namespace kem::text {
namespace {

// A sign or none at the front of a number.
struct Sign {
  bool negative = false;
  std::size_t length = 0;
};

Sign SignOf(std::string_view text) {
  if (text.empty() || (text[0] != '-' && text[0] != '+')) return {};
  return {text[0] == '-', 1};
}

// Power of ten of the first significant digit; decides whether a number out of range is huge or tiny.
long long MagnitudeOf(std::string_view digits) {
  constexpr long long kMost = std::numeric_limits<int>::max();
  long long exponent = 0;
  const auto e = digits.find_first_of("eE");
  if (e != digits.npos) {
    std::string_view tail = digits.substr(e + 1);
    const Sign sign = SignOf(tail);
    tail.remove_prefix(sign.length);
    const auto parsed = std::from_chars(tail.data(), tail.data() + tail.size(), exponent);
    exponent = parsed.ec == std::errc::result_out_of_range ? kMost : std::min(exponent, kMost);
    if (sign.negative) exponent = -exponent;
    digits = digits.substr(0, e);
  }
  const auto point = std::min(digits.find('.'), digits.size());
  const auto first = digits.find_first_of("123456789");
  if (first == digits.npos) return 0;
  return exponent + static_cast<long long>(point) - static_cast<long long>(first);
}

// A number in decimal notation, infinity or NaN, without sign.
std::size_t ParseDecimal(std::string_view text, float& value) {
  const auto parsed = FromChars(text.data(), text.data() + text.size(), value);
  const auto length = static_cast<std::size_t>(parsed.ptr - text.data());
  if (parsed.ec == std::errc::result_out_of_range)
    value = MagnitudeOf(text.substr(0, length)) <= 0 ? 0.0f : std::numeric_limits<float>::infinity();
  return length;
}

// The digits, point and exponent of a number in hexadecimal notation. Bits that the double behind it cannot hold
// leave a mark in the last one, so that the value is rounded once and right.
std::size_t ParseHexadecimal(std::string_view text, float& value) {
  constexpr std::uint64_t kMany = std::uint64_t{1} << 48;
  constexpr std::string_view kDigits = "0123456789abcdefABCDEF";
  std::uint64_t bits = 0;
  long long exponent = 0;
  std::size_t length = 0;
  std::size_t point = text.npos;
  for (; length < text.size(); ++length) {
    if (text[length] == '.' && point == text.npos) {
      point = length;
      continue;
    }
    const auto at = kDigits.find(text[length]);
    if (at == kDigits.npos) break;
    const auto digit = at < 16 ? at : at - 6;
    const bool room = bits < kMany;
    bits = room ? bits * 16 + digit : bits | (digit != 0);
    exponent += (room ? 0 : 4) - (point == text.npos ? 0 : 4);
  }
  if (length == 0 || (length == 1 && point == 0)) return 0;
  if (length < text.size() && (text[length] == 'p' || text[length] == 'P')) {
    int binary = 0;
    const std::size_t used = ParseLenient(text.substr(length + 1), binary);
    if (used > 0) length += 1 + used;
    exponent += binary;
  }
  constexpr long long kFar = 10000;  // from where all is 0 or infinite
  value = static_cast<float>(
      std::ldexp(static_cast<double>(bits), static_cast<int>(std::clamp(exponent, -kFar, kFar))));
  return length;
}

template <class Integer>
std::size_t ParseInteger(std::string_view text, Integer& value) {
  const Sign sign = SignOf(text);
  const char* first = text.data() + sign.length;
  const char* last = text.data() + text.size();
  if (first == last || !IsDigit(*first)) return 0;
  long long wide = 0;
  const auto parsed = std::from_chars(first, last, wide);
  if (parsed.ec == std::errc::result_out_of_range) wide = std::numeric_limits<long long>::max();
  if (sign.negative) wide = -wide;
  using Limits = std::numeric_limits<Integer>;
  value = static_cast<Integer>(std::clamp<long long>(wide, Limits::min(), Limits::max()));
  return static_cast<std::size_t>(parsed.ptr - text.data());
}

// The six digits of a number from 1e-6 to below 1e14 and the power of ten of the first one, rounded exactly, ties
// to even, although in double precision:
//   times 10^k, k <= 12, is exact, since 5^12 < 2^28 and the 24 bits of a float fit beside it;
//   over 10^k, k <= 9, is rounded once, by at most 2^-34. The value is then at least 1e6, a multiple of 2^-4, so
//   a quotient that is no tie is at least 1 / (2^4 * 10^9) > 2^-34 away from one.
struct SixDigits {
  unsigned digits;
  int exponent;
};

SixDigits Round(float value) {
  static constexpr double kPowers[] = {1e-6, 1e-5, 1e-4, 1e-3, 1e-2, 1e-1, 1,    1e1,  1e2,  1e3, 1e4,
                                       1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14};
  constexpr int kFirst = -6;
  constexpr double kToInteger = 0x1p52;  // leaves no bits for a fraction
  const int binary = static_cast<int>(portable::bit_cast<std::uint32_t>(value) >> 23) - 127;
  const int least = (binary * 1233) >> 12;  // 1233 / 2^12 is log10(2); the power of ten is this or the next
  const int exponent = least + (value >= kPowers[least + 1 - kFirst] ? 1 : 0);
  const double power = kPowersOfTen[std::abs(exponent - 5)];
  const double scaled = exponent <= 5 ? value * power : value / power;
  const auto digits = static_cast<unsigned>((scaled + kToInteger) - kToInteger);
  return digits < 1'000'000 ? SixDigits{digits, exponent} : SixDigits{digits / 10, exponent + 1};
}

// The digits of a number below 1000, a byte each, the first one lowest.
static_assert(std::endian::native == std::endian::little);
constexpr auto kThreeDigits = [] {
  std::array<std::uint32_t, 1000> digits = {};
  for (std::uint32_t k = 0; k < digits.size(); ++k) digits[k] = k / 100 | k / 10 % 10 << 8 | k % 10 << 16;
  return digits;
}();

// Writes a number below 100 as two digits.
char* WritePair(char* to, int number) {
  *to++ = static_cast<char>('0' + number / 10);
  *to++ = static_cast<char>('0' + number % 10);
  return to;
}

// Writes general notation of such a number and returns its end. Zeros at the end of its fraction are left out.
// Copies are of one size each, and longer than what they are for.
char* WriteSixDigits(char* to, float value) {
  constexpr std::uint64_t kZeros = 0x30303030'30303030;
  const auto write = [&to](std::uint64_t text) { std::memcpy(to, &text, sizeof text); };
  const auto [number, exponent] = Round(value);
  const std::uint64_t digits = kThreeDigits[number / 1000] | std::uint64_t{kThreeDigits[number % 1000]} << 24;
  const std::ptrdiff_t count = 8 - std::countl_zero(digits) / 8;
  const bool scientific = exponent < -4 || exponent >= 6;
  const std::ptrdiff_t whole = scientific ? 1 : std::max(exponent + 1, 0);
  write(kZeros);
  to[1] = '.';
  to += whole == 0 ? 1 - exponent : 0;
  write(digits + kZeros);
  to += whole;
  *to = '.';
  to += whole > 0 && count > whole ? 1 : 0;
  write((digits + kZeros) >> 8 * whole);
  to += std::max<std::ptrdiff_t>(count - whole, 0);
  if (scientific) {
    *to++ = 'e';
    *to++ = exponent < 0 ? '-' : '+';
    to = WritePair(to, std::abs(exponent));
  }
  return to;
}

}  // namespace

std::size_t ParseLenient(std::string_view text, int& value) { return ParseInteger(text, value); }
std::size_t ParseLenient(std::string_view text, unsigned& value) { return ParseInteger(text, value); }

std::size_t ParseLenient(std::string_view text, float& value) {
  const Sign sign = SignOf(text);
  text.remove_prefix(sign.length);
  const bool hexadecimal = text.size() > 1 && text[0] == '0' && (text[1] == 'x' || text[1] == 'X');
  if (hexadecimal) text.remove_prefix(2);
  if (text.empty() || text[0] == '-') return 0;
  float magnitude = 0;
  const std::size_t length = hexadecimal ? ParseHexadecimal(text, magnitude) : ParseDecimal(text, magnitude);
  if (length == 0) return 0;
  value = std::copysign(magnitude, sign.negative ? -1.0f : 1.0f);
  return sign.length + (hexadecimal ? 2 : 0) + length;
}

char* WriteNumber(char* to, float value) {
  const float magnitude = std::fabs(value);
  if (magnitude >= 1e-6f && magnitude < 1e14f) {
    *to = '-';
    return WriteSixDigits(to + (value < 0 ? 1 : 0), magnitude);
  }
  std::string text;
  portable::AppendGeneral(text, value);
  return std::copy(text.begin(), text.end(), to);
}

void AppendNumber(std::string& text, float value) {
  char number[kNumberRoom];
  text.append(number, WriteNumber(number, value));
}

void AppendNumber(std::string& text, int value) { text += std::to_string(value); }

}  // namespace kem::text
