// Smallest and largest values of a grid, found while its rows are at hand.
#pragma once

#include <array>

#include "kem.h"
#include "record/vectors.h"

namespace kem::record {

struct Range {
  float low = 0;
  float high = 0;
};

// Takes the values that are strictly smaller or larger; NaN never replaces anything. The lanes are
// independent, and enough of them that compilers make vectors of them, so that memory sets the pace.
class RunningRange {
 public:
  explicit RunningRange(float first) {
    low_.fill(first);
    high_.fill(first);
  }

  void Extend(const float* values, int count) {
    WithVectors([this, values, count] {
      std::array<float, kLanes> low = low_;
      std::array<float, kLanes> high = high_;
      const auto take = [&](int lane, float v) {
        low[lane] = v < low[lane] ? v : low[lane];
        high[lane] = v > high[lane] ? v : high[lane];
      };
      int k = 0;
      for (; count - k >= kLanes; k += kLanes)
        for (int lane = 0; lane < kLanes; ++lane) take(lane, values[k + lane]);
      for (int lane = 0; k < count; ++k, ++lane) take(lane, values[k]);
      low_ = low;
      high_ = high;
    });
  }

  Range Reduced() const {
    Range range{low_[0], high_[0]};
    for (const float v : low_) range.low = v < range.low ? v : range.low;
    for (const float v : high_) range.high = v > range.high ? v : range.high;
    return range;
  }

 private:
  static constexpr int kLanes = 32;

  std::array<float, kLanes> low_;
  std::array<float, kLanes> high_;
};

// What MinMax() does for a grid that has samples, and whose rows were seen from the first value on.
void SetRanges(PrnType& grid, const RunningRange& values);

}  // namespace kem::record
