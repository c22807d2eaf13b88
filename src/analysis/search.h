// Exact searches over the coordinates of an axis.
#pragma once

#include <cstddef>
#include <limits>
#include <optional>
#include <span>

#include "analysis/unordered.h"

namespace kem::analysis {

// Finds the samples of an axis that belong to a target. Each answer is the index that a scan over all samples
// in single precision gives, to the last tie; search.cpp says why an ordered axis needs no scan. The axis has
// at least one sample and outlives its search.
class AxisSearch {
 public:
  // For more than a few targets, an axis in no order is put into one first.
  explicit AxisSearch(std::span<const float> axis, std::size_t targets = 1);

  std::span<const float> Axis() const { return axis_; }

  // The nearest sample, the lowest of several. A `hint` close to the answer, such as the answer for the target
  // before, makes finding it cheap.
  std::size_t Nearest(float target, std::size_t hint = 0) const;

  // The nearest sample on the other side of the target, or at it; none when the target lies outside.
  std::optional<std::size_t> Across(float target, std::size_t nearest) const;

  // Both where that is plain to see: the target lies between two neighbours, in single precision the sample below
  // them is farther away, and no product of differences vanishes. `above` is where the answer for the target before
  // was found, at least 1, and moves a few samples at most.
  struct Pair {
    std::size_t nearest;
    std::size_t across;
  };
  std::optional<Pair> Between(float target, std::size_t& above) const {
    constexpr int kMost = 4;
    const float t = sign_ * target;
    if (!ordered_ || axis_.size() < 2) return {};
    for (int step = 0; step < kMost && above + 1 < axis_.size() && Coordinate(above) <= t; ++step) ++above;
    for (int step = 0; step < kMost && above > 1 && Coordinate(above - 1) > t; ++step) --above;
    const float toBelow = t - Coordinate(above - 1);
    const float toAbove = Coordinate(above) - t;
    const bool nearer = toAbove < toBelow;
    const float least = nearer ? toAbove : toBelow;
    if (!(toBelow > 0 && toAbove > 0 && least * least > 0)) return {};
    if (above > 1 && !(t - Coordinate(above - 2) > toBelow)) return {};
    return Pair{above - (nearer ? 0 : 1), above - (nearer ? 1 : 0)};
  }

  // The second neighbour, which may lie on the same side. The scan goes upwards from the first sample and takes
  // each that is nearer to the target than the best so far; what is then kept as the best is its distance to
  // `measure`. Where that is the target itself, the second nearest sample results. The neighbour of the first
  // sample is always the one after it, that of an only sample is itself.
  //
  // For one measure, targets that come in the order of Before() share work.
  std::size_t Second(float target, std::size_t nearest, float measure);

  // 1 for an axis that ascends, -1 for one that descends, which is searched as its mirror image; else 0.
  float Direction() const { return ordered_ ? sign_ : 0; }

  // An order of all targets, NaN included, along the axis.
  bool Before(float a, float b) const;

 private:
  // Samples that were found to be taken one after the other, see Second().
  struct Run {
    float measure = std::numeric_limits<float>::quiet_NaN();
    float target = 0;
    std::size_t first = 0;
    std::size_t last = 0;
  };

  float Coordinate(std::size_t k) const { return sign_ * axis_[k]; }
  std::size_t LowestAsNear(std::size_t first, std::size_t k, float t) const;
  std::size_t SecondInOrder(float t, std::size_t nearest, float measure);
  std::size_t EndOfRun(std::size_t first, float t, float measure);

  // Where answers were found before, which those that follow are close to.
  struct Near {
    std::size_t stride = 0;   // from a sample taken to the next
    std::size_t measure = 0;  // the first sample above the measure
    std::size_t end = 0;      // of a run
  };

  std::span<const float> axis_;
  std::span<const float> scanned_;  // without the last of equal samples
  std::optional<UnorderedSearch> unordered_;
  bool ordered_ = false;
  float sign_ = 1;
  Run run_;
  Near near_;
};

}  // namespace kem::analysis
