// When two coordinates count as the same.
#pragma once

#include <cmath>

namespace kem::analysis {

// Relative to the sum, in single precision. A value never equals its own negative, unless both are 0.
inline bool NearlyEqual(float a, float b) {
  constexpr float kTolerance = 1e-5f;
  if (a == 0 && b == 0) return true;
  if (a + b == 0) return false;
  return std::fabs((a - b) / (a + b)) < kTolerance;
}

}  // namespace kem::analysis
