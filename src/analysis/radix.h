// A radix sort: items are dealt out by the lowest digit of their keys, then by the next, and equal digits keep
// their order.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <numeric>
#include <vector>

namespace kem::analysis {

struct Keyed {
  std::uint32_t key;
  std::uint32_t index;
};

// Puts right what the digits left out: few neighbours, unless most keys are closer to each other than to the
// others.
inline void MendOrder(std::vector<Keyed>& items) {
  const auto before = [](const Keyed& a, const Keyed& b) { return a.key < b.key; };
  const std::size_t most = 4 * items.size();
  std::size_t moved = 0;
  for (std::size_t k = 1; k < items.size(); ++k) {
    const Keyed item = items[k];
    std::size_t to = k;
    for (; to > 0 && item.key < items[to - 1].key; --to) items[to] = items[to - 1];
    items[to] = item;
    if ((moved += k - to) > most) return std::stable_sort(items.begin(), items.end(), before);
  }
}

// Digits are the highest bits in which keys differ; more bits are for more items. Items of one key keep their
// order. `scratch` is as long as the items are.
template <int kBits, int kPasses>
void SortByKey(std::vector<Keyed>& items, std::vector<Keyed>& scratch) {
  constexpr std::size_t kDigits = std::size_t{1} << kBits;
  std::uint32_t lowest = ~std::uint32_t{0};
  std::uint32_t highest = 0;
  for (const Keyed& item : items) {
    lowest = std::min(lowest, item.key);
    highest = std::max(highest, item.key);
  }
  const int unused =
      items.empty() ? 0 : std::max(0, static_cast<int>(std::bit_width(highest - lowest)) - kPasses * kBits);
  const auto digit = [=](const Keyed& item, int pass) {
    return (item.key - lowest) >> unused >> kBits * pass & (kDigits - 1);
  };
  // How many items have each digit.
  std::array<std::array<std::uint32_t, kDigits>, kPasses> counts = {};
  for (const Keyed& item : items)
    for (int pass = 0; pass < kPasses; ++pass) ++counts[pass][digit(item, pass)];
  for (int pass = 0; pass < kPasses; ++pass) {
    auto& start = counts[pass];
    std::exclusive_scan(start.begin(), start.end(), start.begin(), std::uint32_t{0});
    for (const Keyed& item : items) scratch[start[digit(item, pass)]++] = item;
    items.swap(scratch);
  }
  if (unused > 0) MendOrder(items);
}

}  // namespace kem::analysis
