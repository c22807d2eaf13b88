// Numbers that are infinite or NaN, counted in vectors.
#pragma once

#include <cmath>
#include <cstddef>
#include <limits>
#include <span>

#include "record/vectors.h"

namespace kem::record {

template <class T>
std::size_t NotFinite(std::span<const T> numbers) {
  std::size_t count = 0;
  WithVectors([numbers, &count] {
    for (const T v : numbers) count += std::abs(v) <= std::numeric_limits<T>::max() ? 0 : 1;
  });
  return count;
}

}  // namespace kem::record
