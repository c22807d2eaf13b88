// The arithmetic of single values. Each computes in the width it is written in, with one narrowing at the end; a
// value outside a guarded domain gives 0.
#pragma once

#include <cmath>
#include <cstdint>

#include "portable.h"

namespace kem::arith {

inline constexpr auto kAdd = [](float a, float b) { return a + b; };
inline constexpr auto kSubtract = [](float a, float b) { return a - b; };
inline constexpr auto kMultiply = [](float a, float b) { return a * b; };
// A division by 0 gives 0. Masking the quotient, rather than branching, lets a loop over it become vector
// instructions.
inline constexpr auto kDivide = [](float a, float b) {
  const std::uint32_t keep = b != 0 ? ~0U : 0U;
  return portable::bit_cast<float>(portable::bit_cast<std::uint32_t>(a / b) & keep);
};

inline constexpr auto kNegate = [](float v) { return -v; };
inline constexpr auto kInv = [](float v) { return v != 0 ? static_cast<float>(1.0 / v) : 0.0f; };

// A function of the C library, which gives one value at a time.
template <class Function>
struct Call {
  Function function;

  float operator()(auto... values) const { return function(values...); }
};
template <class Function>
Call(Function) -> Call<Function>;

// A negative base takes the exponent rounded down, which always has a real result.
inline constexpr Call kPower{[](float a, float b) { return std::pow(a, a >= 0 ? b : std::floor(b)); }};
inline constexpr Call kExp{[](float v) { return std::exp(v); }};
inline constexpr Call kLog{[](float v) { return v > 0 ? std::log10(v) : 0.0f; }};
inline constexpr Call kLn{[](float v) { return v > 0 ? std::log(v) : 0.0f; }};
inline constexpr Call kSin{[](float v) { return std::sin(v); }};
inline constexpr Call kCos{[](float v) { return std::cos(v); }};
inline constexpr Call kTan{[](float v) { return std::tan(v); }};
inline constexpr Call kASin{[](float v) { return std::fabs(v) <= 1 ? std::asin(v) : 0.0f; }};
inline constexpr Call kACos{[](float v) { return std::fabs(v) <= 1 ? std::acos(v) : 0.0f; }};
inline constexpr Call kATan{[](float v) { return std::atan(v); }};
inline constexpr Call kSinH{[](float v) { return std::sinh(v); }};
inline constexpr Call kCosH{[](float v) { return std::cosh(v); }};
inline constexpr Call kTanH{[](float v) { return std::tanh(v); }};
inline constexpr Call kASinH{[](float v) {
  const double d = v;
  return static_cast<float>(std::log(d + std::sqrt(d * d + 1)));
}};
inline constexpr Call kACosH{[](float v) {
  const double d = v;
  return d >= 1 ? static_cast<float>(std::log(d + std::sqrt(d * d - 1))) : 0.0f;
}};
// The lower bound is open: -1 gives minus infinity, and what lies below it NaN.
inline constexpr Call kATanH{[](float v) {
  const double d = v;
  return d < 1 ? static_cast<float>(0.5 * std::log((1 + d) / (1 - d))) : 0.0f;
}};

}  // namespace kem::arith
