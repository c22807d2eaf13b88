// Medians of narrow spans. Columns are put into order, runs of them are merged into runs twice as long, and of the
// runs that make up a span only the wanted place is worked out: neighbouring spans share all runs but the last. The
// steps do not depend on the values, each is the smaller and the larger of two, so that many neighbours take them
// at once, and the compiler leaves out those that nothing depends on.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>

#include "analysis/float_key.h"
#include "record/vectors.h"

namespace kem::analysis {

// Calls `take` with each number below kCount, known when it is compiled. Not a fold, whose length compilers limit;
// nor left to them to compile into one piece, since only then there are vectors.
template <std::size_t kCount, class Take>
[[gnu::always_inline]] inline void Unrolled(Take take) {
  const auto all = [take]<std::size_t... n>(std::index_sequence<n...>) __attribute__((always_inline)) {
    const int done[] = {0, (take(std::integral_constant<std::size_t, n>()), 0)...};
    static_cast<void>(done);
  };
  all(std::make_index_sequence<kCount>());
}

constexpr std::size_t kNeighbours = 16;  // spans of a row that are taken at a time

// A sorted run of `count` values: the rows from `row` on hold one place each, of many spans side by side; that of
// the span meant lies `ahead` of it.
struct SortedRun {
  std::size_t row;
  std::size_t count;
  std::size_t ahead;
};

// The steps that make one run of several: neighbours are merged until one is left. The merge is Batcher's, for runs
// of any lengths: Knuth, The Art of Computer Programming, vol. 3, 5.3.4.
template <SortedRun... kRuns>
struct Merging {
  static constexpr std::size_t kCount = (kRuns.count + ...);

  struct Step {
    std::size_t low;
    std::size_t high;
  };
  struct Places {
    std::array<std::size_t, kCount> at = {};
    std::size_t count = 0;

    constexpr void Add(std::size_t place) { at[count++] = place; }
    constexpr Places EverySecond(std::size_t from) const {
      Places some;
      for (std::size_t k = from; k < count; k += 2) some.Add(at[k]);
      return some;
    }
  };

  // Where the values of two runs are after the steps that merge them, which go to `take`.
  template <class Take>
  static constexpr Places Merge(const Places& a, const Places& b, Take take) {
    if (a.count == 0) return b;
    if (b.count == 0) return a;
    if (a.count + b.count == 2) {
      take(Step{a.at[0], b.at[0]});
      return {{a.at[0], b.at[0]}, 2};
    }
    const Places even = Merge(a.EverySecond(0), b.EverySecond(0), take);
    const Places odd = Merge(a.EverySecond(1), b.EverySecond(1), take);
    Places all;
    all.Add(even.at[0]);
    for (std::size_t k = 0; k < std::max(odd.count, even.count - 1); ++k) {
      if (k < odd.count && k + 1 < even.count) take(Step{odd.at[k], even.at[k + 1]});
      if (k < odd.count) all.Add(odd.at[k]);
      if (k + 1 < even.count) all.Add(even.at[k + 1]);
    }
    return all;
  }

  template <class Take>
  static constexpr Places MergeAll(Take take) {
    constexpr SortedRun kAll[] = {kRuns...};
    std::array<Places, sizeof...(kRuns)> runs = {};
    std::size_t place = 0;
    for (std::size_t r = 0; r < runs.size(); ++r)
      while (runs[r].count < kAll[r].count) runs[r].Add(place++);
    for (std::size_t left = runs.size(); left > 1; left = (left + 1) / 2)
      for (std::size_t r = 0; r < left; r += 2)
        runs[r / 2] = r + 1 < left ? Merge(runs[r], runs[r + 1], take) : runs[r];
    return runs[0];
  }

  static constexpr std::size_t kSize = [] {
    std::size_t size = 0;
    MergeAll([&size](Step) { ++size; });
    return size;
  }();
  static constexpr auto kSteps = [] {
    std::array<Step, kSize> steps{};
    auto to = steps.begin();
    MergeAll([&to](Step step) { *to++ = step; });
    return steps;
  }();
  static constexpr std::array<std::size_t, kCount> kOrder = MergeAll([](Step) {}).at;

  // Of each value the row, and how far ahead it lies.
  static constexpr auto kSources = [] {
    std::array<std::pair<std::size_t, std::size_t>, kCount> sources{};
    auto to = sources.begin();
    for (const SortedRun& run : {kRuns...})
      for (std::size_t k = 0; k < run.count; ++k) *to++ = {run.row + k, run.ahead};
    return sources;
  }();

  // The values of one span after all steps; in order, the k-th of them is at kOrder[k].
  template <class Rows>
  [[gnu::always_inline]] static std::array<std::int32_t, kCount> Merged(const Rows& rows, std::size_t span) {
    std::array<std::int32_t, kCount> values;
    Unrolled<kCount>([&](auto n) __attribute__((always_inline)) {
      values[n] = rows[kSources[n].first][span + kSources[n].second];
    });
    Unrolled<kSize>([&](auto n) __attribute__((always_inline)) {
      std::int32_t& low = values[kSteps[n].low];
      std::int32_t& high = values[kSteps[n].high];
      const std::int32_t a = low;
      const std::int32_t b = high;
      low = a < b ? a : b;
      high = a < b ? b : a;
    });
    return values;
  }
};

// The values at kPlace among all but the last, which is that of the last row and column, of the spans of kHeight
// rows and kWidth columns in a grid.
template <std::size_t kHeight, std::size_t kWidth, std::size_t kPlace>
class NarrowSpans {
  static constexpr std::size_t kLongest = std::bit_floor(kWidth - 2);  // columns of a run
  static constexpr std::size_t kMore = (kWidth + 15) / 16 * 16;        // columns of a span, and some
  // Rows of keys, then those of columns without the last row, of whole columns, and of 2, 4, 8... columns.
  static constexpr std::size_t kWhole = kHeight == 1 ? 0 : 2 * kHeight - 1;
  static constexpr std::size_t RowOf(std::size_t columns) { return kWhole + kHeight * (columns - 1); }
  static constexpr std::size_t kRows = RowOf(2 * kLongest);
  // How many spans side by side at most: few enough to stay in the fastest memory.
  static constexpr std::size_t kSpans = std::clamp<std::size_t>(8192 / kRows / 32 * 32, 96, 1024);

 public:
  // A value is put where the middle of its span is; the margins are left alone.
  void Select(const float* const* rows, std::size_t count, std::size_t length, float* const* result) {
    const std::size_t all = length - kWidth + 1;
    for (std::size_t j = 0; j < all; j += vectors_ * kNeighbours) {
      j = std::min(j, all - kNeighbours);  // some of the last are selected twice
      vectors_ = std::min(kSpans, all - j) / kNeighbours;
      for (std::size_t i = 0; i < count; ++i) {
        record::WithVectors([this, from = rows[i] + j] { AddRow(from); });
        if (i + 1 < kHeight) continue;
        record::WithVectors([this, to = result[i - kHeight / 2] + j + kWidth / 2] { SelectSpans(to); });
      }
    }
  }

 private:
  // Behind the others, which move on: rows that stayed where they are would be known only when it runs, and
  // compilers make no vectors of such loops.
  void AddRow(const float* from) {
    for (std::size_t k = 0, keys = vectors_ * kNeighbours + kWidth - 1; k < keys; ++k) {
      Unrolled<kHeight - 1>([&](auto n) __attribute__((always_inline)) { rows_[n][k] = rows_[n + 1][k]; });
      rows_[kHeight - 1][k] = KeyOf(from[k]);
    }
  }

  template <std::size_t kTo, SortedRun... kRuns>
  void Merge() {
    using Steps = Merging<kRuns...>;
    for (std::size_t k = 0, spans = vectors_ * kNeighbours + kMore; k < spans; ++k) {
      const auto values = Steps::Merged(rows_, k);
      Unrolled<Steps::kCount>([&](auto n)
                                  __attribute__((always_inline)) { rows_[kTo + n][k] = values[Steps::kOrder[n]]; });
    }
  }

  template <std::size_t kColumns>
  void MergeRuns() {
    if constexpr (kColumns < kLongest) {
      constexpr std::size_t kCount = kColumns * kHeight;
      Merge<RowOf(2 * kColumns), SortedRun{RowOf(kColumns), kCount, 0},
            SortedRun{RowOf(kColumns), kCount, kColumns}>();
      MergeRuns<2 * kColumns>();
    }
  }

  template <std::size_t... n>
  void SortColumns(std::index_sequence<n...>) {
    Merge<kHeight, SortedRun{n, 1, 0}...>();
    Merge<kWhole, SortedRun{kHeight, kHeight - 1, 0}, SortedRun{kHeight - 1, 1, 0}>();
  }

  template <SortedRun... kRuns>
  void SelectFrom(float* to) {
    using Steps = Merging<kRuns...>;
    for (std::size_t k = 0, spans = vectors_ * kNeighbours; k < spans; ++k)
      to[k] = ValueOf(Steps::Merged(rows_, k)[Steps::kOrder[kPlace]]);
  }

  // From the runs given, and those of kColumns more columns from kAt on.
  template <std::size_t kColumns, std::size_t kAt, SortedRun... kRuns>
  void SelectFromRuns(float* to) {
    if constexpr (kColumns > 0) {
      constexpr std::size_t kNext = std::min(std::bit_floor(kColumns), kLongest);
      SelectFromRuns<kColumns - kNext, kAt + kNext, kRuns..., SortedRun{RowOf(kNext), kNext * kHeight, kAt}>(to);
    } else {
      SelectFrom<kRuns..., SortedRun{kHeight, kHeight - 1, kAt}>(to);
    }
  }

  void SelectSpans(float* to) {
    if constexpr (kHeight > 1) SortColumns(std::make_index_sequence<kHeight - 1>());
    MergeRuns<1>();
    SelectFromRuns<kWidth - 1, 0>(to);
  }

  // Vectors that lie across two lines of the cache take a third longer.
  alignas(64) std::array<std::array<std::int32_t, kSpans + 2 * kMore>, kRows> rows_ = {};
  std::size_t vectors_ = 0;  // of kNeighbours spans each, in the tile at hand
};

// For rows with kNeighbours spans at least.
template <std::size_t kHeight, std::size_t kWidth, std::size_t kPlace>
void SelectNarrow(const float* const* rows, std::ptrdiff_t count, std::ptrdiff_t length, float* const* result) {
  NarrowSpans<kHeight, kWidth, kPlace>().Select(rows, static_cast<std::size_t>(count),
                                                static_cast<std::size_t>(length), result);
}

}  // namespace kem::analysis
