// Medians of a curve's spans, of many stretches of the curve side by side. From one span to the next one value
// enters and one leaves, so that the median stays, or is the next rank below or above. In spans of moderate width
// one look at all ranks finds it; in wider ones a set of ranks does, and while one set waits for what has just been
// written the others move on.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "analysis/rank_sets.h"
#include "analysis/ranking.h"
#include "analysis/selection.h"
#include "record/vectors.h"

namespace kem::analysis {

// The median of each span of `reach` values on either side of its middle but the last, at the place `reach`: the
// larger of the two in the middle. The margins are left alone. Returns whether the spans are of a width, and
// enough, for this kind of stretches.
template <class Stretches>
bool SelectStretches(const float* values, Index count, Index reach, float* result) {
  const Index all = count - 2 * reach;
  if (reach > Stretches::kWidest || all < 2 * Stretches::kCount) return false;
  Stretches stretches(reach);
  const Index length = std::min(stretches.Longest(), all / Stretches::kCount);
  for (Index first = 0; first < all; first += Stretches::kCount * length) {
    first = std::min(first, all - Stretches::kCount * length);  // some of the last are selected twice
    stretches.Select(values, first, length, result + first + reach);
  }
  return true;
}

class StretchLooks {
 public:
  static constexpr Index kCount = 32;
  static constexpr Index kWidest = 110;  // reach of spans that are looked at faster than a set changes

  explicit StretchLooks(Index reach)
      : width_(2 * static_cast<std::size_t>(reach)), place_(static_cast<Rank>(reach)) {}
  Index Longest() const { return kMost; }

  // The medians of spans that begin with `first` and behind it, `length` of each stretch.
  void Select(const float* values, Index first, Index length, float* result) {
    Fill(values, first, length);
    record::WithVectors([&] { SelectSpans(length, result); });
  }

 private:
  static constexpr Index kMost = 128;  // spans of a stretch, whose ranks stay in the fastest memory
  using Rank = std::uint16_t;
  static_assert(kCount * kMost + 2 * kWidest <= 0x8000, "distances of ranks have two signs");
  using Lanes = std::array<Rank, kCount>;  // one of each stretch

  // Of all lanes; masks have all bits or none.
  struct State {
    Lanes median;
    Lanes below;    // how many ranks of the span lie below the median
    Lanes down;     // whether the next median is smaller
    Lanes up;       // or larger
    Lanes from;     // where distances to it begin
    Lanes nearest;  // the smallest distance
  };

  static Rank Mask(bool holds) { return holds ? 0xffff : 0; }

  void Fill(const float* values, Index first, Index length) {
    const auto steps = static_cast<std::size_t>(length);
    const Index reached = kCount * length + static_cast<Index>(width_);
    ranks_.Rank(&values, {{0, 1}, {first, first + reached}});
    const Ranks ranks = ranks_.All();
    rows_.resize(steps + width_);
    for (std::size_t k = 0; k < rows_.size(); ++k)
      for (std::size_t lane = 0; lane < kCount; ++lane) rows_[k][lane] = static_cast<Rank>(ranks[lane * steps + k]);
  }

  void SelectSpans(Index length, float* result) const {
    State state;
    state.median = First();
    state.below.fill(place_);
    for (Index k = 0;; ++k) {
      for (Index lane = 0; lane < kCount; ++lane)
        result[lane * length + k] = ranks_.ValueAt(state.median[static_cast<std::size_t>(lane)]);
      if (k + 1 == length) return;
      Move(state, static_cast<std::size_t>(k));
    }
  }

  // The medians of the first spans, bit by bit: the greatest numbers with no more than the wanted ranks below them.
  Lanes First() const {
    Lanes median = {};
    for (unsigned bit = 0x8000; bit > 0; bit /= 2) {
      Lanes below = {};
      for (std::size_t k = 0; k < width_; ++k)
        for (std::size_t lane = 0; lane < kCount; ++lane)
          below[lane] = static_cast<Rank>(below[lane] - Mask(rows_[k][lane] < (median[lane] | bit)));
      for (std::size_t lane = 0; lane < kCount; ++lane)
        median[lane] = static_cast<Rank>(median[lane] | (Mask(below[lane] <= place_) & bit));
    }
    return median;
  }

  // From the spans that begin with row k to those behind them.
  void Move(State& s, std::size_t k) const {
    const Lanes& leaving = rows_[k];
    const Lanes& entering = rows_[k + width_];
    for (std::size_t lane = 0; lane < kCount; ++lane) {
      const Rank m = s.median[lane];
      const auto below = static_cast<Rank>(s.below[lane] - Mask(entering[lane] < m) + Mask(leaving[lane] < m));
      const auto upTo = static_cast<Rank>(below + 1 + Mask(leaving[lane] == m));
      const Rank down = Mask(place_ < below);
      const Rank up = Mask(place_ >= upTo);
      s.below[lane] = static_cast<Rank>(below + down + ((upTo - below) & up));
      s.down[lane] = down;
      s.up[lane] = up;
      s.from[lane] = static_cast<Rank>((m ^ down) + 1);
      s.nearest[lane] = 0xffff;
    }
    std::size_t row = k + 1;
    for (constexpr std::size_t kMany = 16; row + kMany <= k + 1 + width_; row += kMany) Look<kMany>(s, row);
    for (constexpr std::size_t kPair = 2; row < k + 1 + width_; row += kPair) Look<kPair>(s, row);
    for (std::size_t lane = 0; lane < kCount; ++lane) {
      const Rank down = s.down[lane];
      const int distance = s.nearest[lane] + 1;
      s.median[lane] = static_cast<Rank>(s.median[lane] + (((distance ^ down) - down) & (down | s.up[lane])));
    }
  }

  // Distances in the direction of the next median; those in the other one come round the end of the numbers.
  template <std::size_t kRows>
  [[gnu::always_inline]] void Look(State& s, std::size_t row) const {
    for (std::size_t lane = 0; lane < kCount; ++lane) {
      Rank nearest = s.nearest[lane];
      Unrolled<kRows>([&](auto n) __attribute__((always_inline)) {
        const auto distance = static_cast<Rank>((rows_[row + n][lane] ^ s.down[lane]) - s.from[lane]);
        nearest = std::min(nearest, distance);
      });
      s.nearest[lane] = nearest;
    }
  }

  Ranking ranks_;
  std::vector<Lanes> rows_;  // of ranks, from the first of each stretch on
  std::size_t width_;        // of a span without its last value
  Rank place_;
};

class StretchSets {
 public:
  static constexpr Index kCount = 8;
  static constexpr Index kWidest = 1000;  // reach of spans whose ranks are close to each other whatever the values

  explicit StretchSets(Index reach) : width_(2 * static_cast<std::size_t>(reach)) {}
  Index Longest() const { return std::max<Index>(512, static_cast<Index>(width_ / 2)); }

  void Select(const float* values, Index first, Index length, float* result) {
    const auto steps = static_cast<std::size_t>(length);
    ranks_.Rank(&values, {{0, 1}, {first, first + kCount * length + static_cast<Index>(width_)}});
    const Ranks ranks = ranks_.All();
    for (std::size_t s = 0; s < kCount; ++s)
      sets_[s].Start(ranks.size(), ranks.subspan(s * steps, width_), width_ / 2);
    for (std::size_t k = 0;; ++k) {
      for (std::size_t s = 0; s < kCount; ++s) result[s * steps + k] = ranks_.ValueAt(sets_[s].Median());
      if (k + 1 == steps) return;
      for (std::size_t s = 0; s < kCount; ++s)
        sets_[s].Exchange(ranks[s * steps + k], ranks[s * steps + k + width_]);
    }
  }

 private:
  Ranking ranks_;
  std::array<MedianSet, kCount> sets_;
  std::size_t width_;  // of a span without its last value
};

}  // namespace kem::analysis
