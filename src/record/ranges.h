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
      if (count < kLanes) {
        for (int k = 0; k < count; ++k) {
          low_[k] = Smaller(values[k], low_[k]);
          high_[k] = Larger(values[k], high_[k]);
        }
        return;
      }
      // Not copied, which takes smaller pieces, by way of memory that waits for the row's own values to be stored.
      std::array<float, kLanes> low;
      std::array<float, kLanes> high;
      for (int lane = 0; lane < kLanes; ++lane) {
        low[lane] = Smaller(values[lane], low_[lane]);
        high[lane] = Larger(values[lane], high_[lane]);
      }
      const auto take = [&](int lane, float v) {
        low[lane] = Smaller(v, low[lane]);
        high[lane] = Larger(v, high[lane]);
      };
      int k = kLanes;
      for (; count - k >= kLanes; k += kLanes)
        for (int lane = 0; lane < kLanes; ++lane) take(lane, values[k + lane]);
      for (int lane = 0; k < count; ++k, ++lane) take(lane, values[k]);
      low_ = low;
      high_ = high;
    });
  }

  Range Reduced() const {
    Range range{low_[0], high_[0]};
    for (const float v : low_) range.low = Smaller(v, range.low);
    for (const float v : high_) range.high = Larger(v, range.high);
    return range;
  }

 private:
  static constexpr int kLanes = 32;

  static float Smaller(float v, float than) { return v < than ? v : than; }
  static float Larger(float v, float than) { return v > than ? v : than; }

  std::array<float, kLanes> low_;
  std::array<float, kLanes> high_;
};

// What MinMax() does for a grid that has samples, and whose rows were seen from the first value on.
void SetRanges(PrnType& grid, const RunningRange& values);

}  // namespace kem::record
