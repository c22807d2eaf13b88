// The second neighbours of many targets along one axis, for one measure after the other.
#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "analysis/search.h"

namespace kem::analysis {

// Answers are those of AxisSearch, as indices of signed 32 bits, which vectors of addresses are made of. Along an
// axis in order most are plain: from one target to the next the samples that follow one another only grow more.
class SecondNeighbours {
 public:
  SecondNeighbours(std::span<const float> axis, std::span<const float> targets);

  const std::vector<std::int32_t>& Nearest() const { return nearest_; }
  // Valid until it is called again.
  const std::vector<std::int32_t>& Second(float measure);

 private:
  // What is known of a target for all measures; distances and coordinates are those of the mirror image.
  struct Target {
    std::size_t index;
    std::size_t nearest;
    std::size_t above;  // the first sample that differs from the nearest and comes after it
    float target;
    float toLast;   // distance of the last sample below the nearest
    float toAbove;  // of that above
    bool plain;     // the second sample is nearer than the first and below the nearest
  };

  AxisSearch search_;
  std::vector<float> axis_;      // or its mirror image
  std::vector<Target> targets_;  // along the axis
  std::vector<std::int32_t> nearest_;
  std::vector<std::int32_t> second_;
};

}  // namespace kem::analysis
