// Numbers of few digits, as most are, at once.
#pragma once

#include <cstdint>

#include "portable.h"
#include "text/words.h"

namespace kem::text {

inline constexpr double kPowersOfTen[] = {1,    1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8, 1e9,
                                          1e10, 1e11, 1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18};

// Takes digits with a point or none behind a digit, which a minus may precede. Where a double holds both the digits
// and the power of ten exactly, their one division rounds to the number's own double (W. D. Clinger, How to Read
// Floating Point Numbers Accurately, 1990). Returns where the number ends; null where it is of another kind.
inline const char* TakeShort(const char* at, const char* end, double& value) {
  constexpr std::ptrdiff_t kMost = 19;  // characters; no more digits than 64 bits hold
  const bool negative = at != end && *at == '-';
  const char* const first = negative ? at + 1 : at;
  const char* point = nullptr;
  std::uint64_t digits = 0;
  for (at = first; at != end; ++at) {
    const auto digit = static_cast<unsigned>(*at - '0');
    if (digit < 10)
      digits = digits * 10 + digit;
    else if (*at == '.' && !point && at != first)
      point = at;
    else
      break;
  }
  const bool exponent = at != end && (*at == 'e' || *at == 'E');
  if (at == first || at - first > kMost || digits >> 53 != 0 || exponent) return nullptr;
  const double number = static_cast<double>(digits) / kPowersOfTen[point ? at - point - 1 : 0];
  value = negative ? -number : number;
  return at;
}

// As std::from_chars in general notation.
inline std::from_chars_result FromChars(const char* first, const char* last, double& value) {
  const char* const end = TakeShort(first, last, value);
  return end ? std::from_chars_result{end, {}} : portable::FromChars(first, last, value);
}

// A number is on the same side of the middle between two floats as its double, unless that is the middle itself.
inline std::from_chars_result FromChars(const char* first, const char* last, float& value) {
  constexpr std::uint64_t kBelowFloat = (std::uint64_t{1} << 29) - 1;
  double number = 0;
  const char* const end = TakeShort(first, last, number);
  const bool between = (portable::bit_cast<std::uint64_t>(number) & kBelowFloat) == kBelowFloat / 2 + 1;
  if (!end || between) return portable::FromChars(first, last, value);
  value = static_cast<float>(number);
  return {end, {}};
}

}  // namespace kem::text
