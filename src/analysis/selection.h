// Medians of narrow spans. The order of a span is found by steps that do not depend on its values, each the smaller
// and the larger of two, so that they are taken for the spans of many neighbours at once; the compiler leaves out
// the steps that the wanted place does not depend on.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <type_traits>
#include <utility>

#include "analysis/float_key.h"
#include "record/vectors.h"

namespace kem::analysis {

// The steps that sort so many values, by Batcher's merges of ever longer runs.
template <std::size_t kCount>
struct SortingSteps {
  struct Step {
    std::size_t low;
    std::size_t high;
  };

  // Calls `take` with each step in turn.
  template <class Take>
  static constexpr void ForEach(Take take) {
    for (std::size_t run = 1; run < kCount; run *= 2)
      for (std::size_t apart = run; apart >= 1; apart /= 2)
        for (std::size_t from = apart % run; from + apart < kCount; from += 2 * apart)
          for (std::size_t low = from; low < std::min(from + apart, kCount - apart); ++low)
            if (low / (2 * run) == (low + apart) / (2 * run)) take(Step{low, low + apart});
  }

  static constexpr std::size_t kSize = [] {
    std::size_t size = 0;
    ForEach([&size](Step) { ++size; });
    return size;
  }();
  static constexpr auto kAll = [] {
    std::array<Step, kSize> steps{};
    auto to = steps.begin();
    ForEach([&to](Step step) { *to++ = step; });
    return steps;
  }();
};

// Calls `take` with each number below kCount, known when it is compiled.
template <std::size_t kCount, class Take>
void Unrolled(Take take) {
  const auto all = [take]<std::size_t... n>(std::index_sequence<n...>) {
    (take(std::integral_constant<std::size_t, n>()), ...);
  };
  all(std::make_index_sequence<kCount>());
}

// The values at kPlace among all but the last, which is that of the last row and column, of neighbouring spans of
// kHeight rows and kWidth columns. The first span begins at the first key of each row.
template <std::size_t kHeight, std::size_t kWidth, std::size_t kPlace>
void SelectLanes(const std::array<const std::int32_t*, kHeight>& rows, float* to, std::ptrdiff_t lanes) {
  constexpr std::size_t kCount = kHeight * kWidth - 1;
  using Steps = SortingSteps<kCount>;
  for (std::ptrdiff_t k = 0; k < lanes; ++k) {
    std::array<std::int32_t, kCount> span;
    Unrolled<kCount>([&](auto n) { span[n] = rows[n % kHeight][k + static_cast<std::ptrdiff_t>(n / kHeight)]; });
    Unrolled<Steps::kSize>([&](auto n) {
      std::int32_t& low = span[Steps::kAll[n].low];
      std::int32_t& high = span[Steps::kAll[n].high];
      const std::int32_t a = low;
      const std::int32_t b = high;
      low = a < b ? a : b;
      high = a < b ? b : a;
    });
    to[k] = ValueOf(span[kPlace]);
  }
}

// The same for all spans of a grid. A value is put where the middle of its span is; the margins are left alone.
template <std::size_t kHeight, std::size_t kWidth, std::size_t kPlace>
void SelectAll(const float* const* rows, std::ptrdiff_t count, std::ptrdiff_t length, float* const* result) {
  constexpr std::ptrdiff_t kLanes = 1024;  // few enough that their keys stay in the fastest memory
  constexpr std::ptrdiff_t kMore = kWidth - 1;
  std::array<std::array<std::int32_t, kLanes + kMore>, kHeight> keys;
  for (std::ptrdiff_t j = 0; j < length - kMore; j += kLanes) {
    const std::ptrdiff_t lanes = std::min(kLanes, length - kMore - j);
    for (std::ptrdiff_t i = 0; i < count; ++i) {
      constexpr auto kRows = static_cast<std::ptrdiff_t>(kHeight);
      record::WithVectors([from = rows[i] + j, lanes, to = keys[i % kRows].data()] {
        std::transform(from, from + lanes + kMore, to, KeyOf);
      });
      if (i < kRows - 1) continue;
      std::array<const std::int32_t*, kHeight> span;
      for (std::ptrdiff_t k = 0; k < kRows; ++k) span[k] = keys[(i + 1 + k) % kRows].data();
      record::WithVectors([span, lanes, to = result[i - kRows / 2] + j + kMore / 2] {
        SelectLanes<kHeight, kWidth, kPlace>(span, to, lanes);
      });
    }
  }
}

}  // namespace kem::analysis
