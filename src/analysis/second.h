// The second neighbours of many targets along one axis, for one measure after the other.
#pragma once

#include <cstdint>
#include <limits>
#include <span>
#include <vector>

#include "analysis/search.h"

namespace kem::analysis {

// Answers are those of AxisSearch, as indices of signed 32 bits, which vectors of addresses are made of. Along an
// axis in order most are plain: they need no search, and neighbouring targets share a vector.
class SecondNeighbours {
 public:
  // Both outlive it.
  SecondNeighbours(std::span<const float> axis, std::span<const float> targets);

  const std::vector<std::int32_t>& Nearest() const { return nearest_; }
  // Valid until it is called again.
  const std::vector<std::int32_t>& Second(float measure);

 private:
  // Coordinates are this far at most from those of an even axis with this step.
  struct Even {
    double step = 1;
    double perStep = 1;
    double deviation = std::numeric_limits<double>::infinity();  // not even at all
  };
  void LookForSteps();
  double Rounding(float from) const;

  void FindPlain(float measure);
  void TakeAll(float m, std::size_t to);
  void TakeStrides(float m, std::size_t upTo, std::size_t from);

  AxisSearch search_;
  std::span<const float> targets_;
  std::vector<float> axis_;  // or its mirror image
  Even even_;
  float quantum_ = 0;  // of which all coordinates are small multiples; 0 for none
  std::vector<std::int32_t> nearest_;
  std::vector<std::int32_t> second_;

  // Of each target, in their order along the axis.
  std::vector<std::uint32_t> order_;
  std::vector<float> target_;
  std::vector<double> rounding_;     // of its distances
  std::vector<std::int32_t> end_;    // the nearest sample
  std::vector<float> below_;         // the coordinate of the sample below
  std::vector<float> lastOffer_;     // its distance; infinite where the target needs a search
  std::vector<std::int32_t> above_;  // the first sample after the nearest that differs from it
  std::vector<float> nextOffer_;     // its distance; infinite where there is none
  std::vector<std::int32_t> last_;   // the last sample that is taken up to the measure
  std::vector<std::int32_t> next_;   // and the next one; the same when that is not known
  std::vector<std::int32_t> answer_;
};

}  // namespace kem::analysis
