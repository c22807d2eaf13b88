// A radix sort: items are dealt out by the lowest digit of their key, then by the next, and equal digits keep their
// order. It takes as many passes as a key has digits, whatever the keys are.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <vector>

namespace kem::analysis {

struct Keyed {
  std::uint32_t key;
  std::uint32_t index;
};

// Digits of more bits are for more items. `scratch` is as long as the items are.
template <int kBits>
void SortByKey(std::vector<Keyed>& items, std::vector<Keyed>& scratch) {
  constexpr std::size_t kDigits = std::size_t{1} << kBits;
  for (int shift = 0; shift < 32; shift += kBits) {
    const auto digit = [shift](const Keyed& item) { return item.key >> shift & (kDigits - 1); };
    std::array<std::size_t, kDigits + 1> start = {};
    for (const Keyed& item : items) ++start[digit(item) + 1];
    std::partial_sum(start.begin(), start.end(), start.begin());
    for (const Keyed& item : items) scratch[start[digit(item)]++] = item;
    items.swap(scratch);
  }
}

}  // namespace kem::analysis
