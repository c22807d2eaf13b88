// Curves and grids resampled at given coordinates.
#pragma once

#include <memory>
#include <span>

#include "kem.h"

namespace kem::analysis {

// A curve at abscissae, a grid at the points of two axes. Empty for a source of the other kind or without samples,
// and for no coordinates.
std::unique_ptr<PrnType> Resampled(const PrnType& curve, std::span<const float> xs);
std::unique_ptr<PrnType> Resampled(const PrnType& grid, std::span<const float> xs, std::span<const float> ys);

}  // namespace kem::analysis
