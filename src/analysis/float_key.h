// Floats as integers of the same order.
#pragma once

#include <cstdint>
#include <limits>

#include "portable.h"

namespace kem::analysis {

// -0 comes before 0; NaN comes after all others and loses its sign.
constexpr std::int32_t kMagnitude = 0x7fffffff;
constexpr auto kInfinity = portable::bit_cast<std::int32_t>(std::numeric_limits<float>::infinity());

inline std::int32_t KeyOf(float value) {
  const auto bits = portable::bit_cast<std::int32_t>(value);
  const std::int32_t magnitude = bits & kMagnitude;
  const std::int32_t ordered = bits < 0 ? bits ^ kMagnitude : bits;
  return magnitude > kInfinity ? magnitude : ordered;
}

inline float ValueOf(std::int32_t key) { return portable::bit_cast<float>(key < 0 ? key ^ kMagnitude : key); }

}  // namespace kem::analysis
