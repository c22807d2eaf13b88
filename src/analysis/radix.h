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
  constexpr std::size_t kPasses = (31 + kBits) / kBits;
  const auto digit = [](std::uint32_t key, std::size_t pass) { return key >> kBits * pass & (kDigits - 1); };
  // How many items have each digit.
  std::array<std::array<std::uint32_t, kDigits>, kPasses> counts = {};
  for (const Keyed& item : items)
    for (std::size_t pass = 0; pass < kPasses; ++pass) ++counts[pass][digit(item.key, pass)];
  for (std::size_t pass = 0; pass < kPasses; ++pass) {
    auto& start = counts[pass];
    std::exclusive_scan(start.begin(), start.end(), start.begin(), std::uint32_t{0});
    for (const Keyed& item : items) scratch[start[digit(item.key, pass)]++] = item;
    items.swap(scratch);
  }
}

}  // namespace kem::analysis
