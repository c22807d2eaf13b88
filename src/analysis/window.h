// Where the samples of an ascending axis begin and end to lie inside bounds.
#pragma once

#include <algorithm>
#include <span>

namespace kem::analysis {

// The first sample that is not below a bound; the length of the axis when there is none.
inline int FirstFrom(std::span<const float> axis, float low) {
  const auto at = std::find_if(axis.begin(), axis.end(), [low](float x) { return !(x < low); });
  return static_cast<int>(at - axis.begin());
}

// The last sample that is not above a bound; -1 when there is none.
inline int LastUpTo(std::span<const float> axis, float high) {
  auto k = static_cast<int>(axis.size()) - 1;
  while (k >= 0 && axis[static_cast<std::size_t>(k)] > high) --k;
  return k;
}

}  // namespace kem::analysis
