// Sums of many numbers in their order, in double precision.
//
// The order matters only where a sum is rounded. Values of single precision have 24 bits, so that most of their
// sums fit the 53 of a double: where all of a block are multiples of the last bit of the largest sum that it could
// come to, none of its sums is rounded in any order, and numbers are added side by side.
#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>

#include "portable.h"
#include "record/vectors.h"

namespace kem::analysis {

class OrderedSum {
 public:
  double Value() const { return value_; }

  // Adds number(0), number(1), ... up to number(count - 1): values of single precision, or halves of such.
  template <class Number>
  void Add(std::size_t count, Number number) {
    record::WithVectors([this, count, number] {
      constexpr int kPause = 16;  // where a sum is rounded, those that follow often are
      int pause = 0;
      Block block;
      for (std::size_t done = 0; done < count; done += kBlock) {
        const std::size_t n = std::min(kBlock, count - done);
        for (std::size_t k = 0; k < n; ++k) block[k] = number(done + k);
        if (n == kBlock && pause == 0 && AddSideBySide(block)) continue;
        for (std::size_t k = 0; k < n; ++k) value_ += block[k];
        pause = pause > 0 ? pause - 1 : kPause;
      }
    });
  }

 private:
  static constexpr std::size_t kBlock = 128;
  using Block = std::array<double, kBlock>;
  using Four [[gnu::vector_size(32)]] = double;
  using Bits [[gnu::vector_size(32)]] = std::int64_t;

  // Whether that gives what adding one after the other does; if not, nothing has been added.
  bool AddSideBySide(const Block& block) {
    constexpr std::int64_t kNoSign = std::numeric_limits<std::int64_t>::max();
    Four sums = {};
    Four sizes = {};
    for (std::size_t k = 0; k < kBlock; k += 4) {
      Four four;
      std::memcpy(&four, &block[k], sizeof four);
      sums += four;
      sizes += (Four)((Bits)four & kNoSign);
    }
    const double size = (sizes[0] + sizes[1]) + (sizes[2] + sizes[3]) + std::fabs(value_);
    if (!(size > 1e-250 && size < 1e250)) return false;
    // A power of two that is greater than any sum, roundings of this one included.
    const double bound = PowerOfTwoBelow(size * (1 + 1e-9)) * 2;
    const double lastBits = 0x1p53 / bound;
    if (std::trunc(value_ * lastBits) / lastBits != value_) return false;
    // Beside it a number keeps no bit below the last; those too large for that have none there.
    const double beside = 0.75 * bound;
    Bits lost = {};
    for (std::size_t k = 0; k < kBlock; k += 4) {
      Four four;
      std::memcpy(&four, &block[k], sizeof four);
      lost |= (Bits)(((four + beside) - beside) - four) & kNoSign;
    }
    if ((lost[0] | lost[1] | lost[2] | lost[3]) != 0) return false;
    value_ += (sums[0] + sums[1]) + (sums[2] + sums[3]);
    return true;
  }

  static double PowerOfTwoBelow(double number) {
    constexpr std::int64_t kExponent = 0x7FF0000000000000;
    return portable::bit_cast<double>(portable::bit_cast<std::int64_t>(number) & kExponent);
  }

  double value_ = 0;
};

}  // namespace kem::analysis
