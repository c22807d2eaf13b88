// Values on the line through two samples.
#pragma once

#include "analysis/search.h"

namespace kem::analysis {

// A target on an axis and the two samples its value is drawn from. An only sample stands for both.
struct Line {
  std::size_t first;
  std::size_t second;
  float span;
  float offset;

  Line(std::span<const float> axis, float target, std::size_t sample, std::size_t neighbour)
      : first(sample), second(neighbour), span(axis[second] - axis[first]), offset(target - axis[first]) {}

  float Value(float atFirst, float atSecond) const {
    return first == second ? atFirst : atFirst + (atSecond - atFirst) / span * offset;
  }
};

// The line through the nearest sample and its second neighbour, see AxisSearch::Second().
inline Line NearestLine(AxisSearch& search, float target, float measure) {
  const std::size_t nearest = search.Nearest(target);
  return {search.Axis(), target, nearest, search.Second(target, nearest, measure)};
}

inline float Bilinear(float* const* z, const Line& x, const Line& y) {
  const float a = x.Value(z[x.first][y.first], z[x.second][y.first]);
  const float b = x.Value(z[x.first][y.second], z[x.second][y.second]);
  return y.Value(a, b);
}

}  // namespace kem::analysis
