// Whether neighbours stand in an order all along a sequence: vectors of comparisons, and a look after each block.
#pragma once

#include <algorithm>
#include <cstddef>
#include <span>

#include "record/vectors.h"

namespace kem::analysis {

template <class Holds>
bool AllNeighbours(std::span<const float> values, Holds holds) {
  constexpr std::size_t kBlock = 1024;
  for (std::size_t k = 1; k < values.size(); k += kBlock) {
    int failures = 0;
    record::WithVectors(
        [=, before = values.data() + k - 1, count = std::min(kBlock, values.size() - k), &failures] {
          int failed = 0;
          for (std::size_t j = 0; j < count; ++j) failed |= holds(before[j], before[j + 1]) ? 0 : 1;
          failures = failed;
        });
    if (failures) return false;
  }
  return true;
}

}  // namespace kem::analysis
