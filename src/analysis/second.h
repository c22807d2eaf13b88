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
  // Both outlive it.
  SecondNeighbours(std::span<const float> axis, std::span<const float> targets);

  const std::vector<std::int32_t>& Nearest() const { return nearest_; }
  // Valid until it is called again.
  const std::vector<std::int32_t>& Second(float measure);

 private:
  AxisSearch search_;
  std::span<const float> targets_;
  std::vector<float> axis_;           // or its mirror image
  std::vector<std::uint32_t> order_;  // of the targets along the axis
  // The first sample after the nearest that differs from it; 0 where the second sample is not nearer than the
  // first, or not below the nearest.
  std::vector<std::uint32_t> above_;
  std::vector<std::int32_t> nearest_;
  std::vector<std::int32_t> second_;
};

}  // namespace kem::analysis
