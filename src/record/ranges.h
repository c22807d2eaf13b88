// Smallest and largest values, found while they are at hand.
#pragma once

#include <algorithm>
#include <array>
#include <utility>

#include "kem.h"
#include "record/vectors.h"

namespace kem::record {

struct Range {
  float low = 0;
  float high = 0;
};

// Starts with the first value and takes those that are strictly smaller or larger; NaN never replaces anything. The
// lanes are independent, and enough of them that compilers make vectors of them, so that memory sets the pace.
class RunningRange {
  static constexpr int kLanes = 32;
  using Lanes = std::array<float, kLanes>;

 public:
  // That of a record's values, a curve's Y array or a grid.
  static RunningRange Of(const PrnType& record);

  void Extend(const float* values, int count);
  // The same, of values on their way to another place.
  void Copy(const float* from, int count, float* to);

  // Extends the range by values on their way to their place, which is apart from where they come from: to[k]
  // becomes kernel(from[k]...).
  template <class Kernel>
  void Store(Kernel kernel, int count, float* to, const auto*... from) {
    Visit(count, [=](int first, int some, Lanes& values) {
#pragma GCC ivdep  // none is stored where another comes from
      for (int k = 0; k < some; ++k) values[k] = to[first + k] = kernel(from[first + k]...);
      return values.data();
    });
  }

  Range Reduced() const {
    Range range{low_[0], high_[0]};
    for (const float v : low_) range.low = Smaller(v, range.low);
    for (const float v : high_) range.high = Larger(v, range.high);
    return range;
  }

 private:
  // Takes what values(first, some, room) points to, `some` values at a time.
  void Visit(int count, auto values) {
    if (count <= 0) return;
    if (!std::exchange(begun_, true)) {
      Lanes room;
      low_.fill(*values(0, 1, room));
      high_ = low_;
    }
    WithVectors([=, this] {
      Lanes room;
      if (count < kLanes) {
        for (int k = 0; k < count; ++k) Take(*values(k, 1, room), low_[k], high_[k]);
        return;
      }
      Lanes low = low_;
      Lanes high = high_;
      const auto block = [&](int k) {
        const float* v = values(k, kLanes, room);
        for (int lane = 0; lane < kLanes; ++lane) Take(v[lane], low[lane], high[lane]);
      };
      for (int k = 0; k < count - kLanes; k += kLanes) block(k);
      block(count - kLanes);  // may visit some again
      low_ = low;
      high_ = high;
    });
  }

  static void Take(float v, float& low, float& high) {
    low = Smaller(v, low);
    high = Larger(v, high);
  }

  static float Smaller(float v, float than) { return v < than ? v : than; }
  static float Larger(float v, float than) { return v > than ? v : than; }

  bool begun_ = false;
  Lanes low_ = {};
  Lanes high_ = {};
};

// What MinMax() does, for a record whose values were all seen, from the first on.
void SetRanges(PrnType& record, const RunningRange& range);

}  // namespace kem::record
