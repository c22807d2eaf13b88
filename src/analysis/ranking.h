// Values of a rectangle of samples by rank, for medians that compare ranks in place of values.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <new>
#include <span>
#include <vector>

#include "analysis/float_key.h"
#include "analysis/radix.h"

namespace kem::analysis {

using Index = std::ptrdiff_t;  // products of widths and counts fit in it

// Samples from <= k < to of one axis.
struct Span {
  Index from;
  Index to;

  Index Count() const { return std::max<Index>(to - from, 0); }
};

// A rectangle of samples: rows along X, columns along Y.
struct Area {
  Span x;
  Span y;

  Index Count() const { return x.Count() * y.Count(); }
};

using Ranks = std::span<const std::uint32_t>;

// No two values share a rank: equal ones rank column by column. There are as many as an int can count.
class Ranking {
 public:
  void Rank(const float* const* rows, const Area& area) {
    if (area.Count() > std::numeric_limits<std::int32_t>::max()) throw std::bad_alloc();
    area_ = area;
    const auto size = static_cast<std::size_t>(area_.Count());
    ranked_.resize(size);
    scratch_.resize(size);
    ranks_.resize(size);
    for (Index i = area_.x.from; i < area_.x.to; ++i)
      for (Index j = area_.y.from; j < area_.y.to; ++j) {
        const std::size_t at = At(i, j);
        ranked_[at] = {static_cast<std::uint32_t>(KeyOf(rows[i][j])) ^ kNegative, static_cast<std::uint32_t>(at)};
      }
    SortByKey<10, 2>(ranked_, scratch_);
    for (std::uint32_t rank = 0; rank < size; ++rank) ranks_[ranked_[rank].index] = rank;
  }

  std::size_t Size() const { return ranked_.size(); }
  Ranks Column(Index j, const Span& x) const {
    return Ranks(ranks_).subspan(At(x.from, j), static_cast<std::size_t>(x.Count()));
  }
  // Of all values, column by column.
  Ranks All() const { return ranks_; }
  float ValueAt(std::size_t rank) const {
    return ValueOf(static_cast<std::int32_t>(ranked_[rank].key ^ kNegative));
  }

 private:
  static constexpr std::uint32_t kNegative = 0x80000000;  // turns signed keys into unsigned ones of the same order

  // By columns, so that what enters and leaves a span along a row lies side by side.
  std::size_t At(Index i, Index j) const {
    return static_cast<std::size_t>((j - area_.y.from) * area_.x.Count() + i - area_.x.from);
  }

  Area area_ = {};
  std::vector<Keyed> ranked_;
  std::vector<Keyed> scratch_;
  std::vector<std::uint32_t> ranks_;  // of each value
};

}  // namespace kem::analysis
