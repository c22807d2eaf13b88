// Where the samples of an axis that SortAxes left, NaN at its end, begin and end to lie inside bounds.
#pragma once

#include <algorithm>
#include <span>

namespace kem::analysis {

// The first sample that is not below a bound; the length of the axis when there is none.
inline int FirstFrom(std::span<const float> axis, float low) {
  const auto at = std::partition_point(axis.begin(), axis.end(), [low](float x) { return x < low; });
  return static_cast<int>(at - axis.begin());
}

// The last sample that is not above a bound; -1 when there is none. NaN is above none.
inline int LastUpTo(std::span<const float> axis, float high) {
  const auto count = static_cast<int>(axis.size());
  if (count > 0 && !(axis.back() > high)) return count - 1;
  const auto at = std::partition_point(axis.begin(), axis.end(), [high](float x) { return !(x > high); });
  return static_cast<int>(at - axis.begin()) - 1;
}

}  // namespace kem::analysis
