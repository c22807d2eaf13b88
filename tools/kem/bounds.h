// Bounds along an axis as an option, "--x FROM TO": in either order, and included.
#pragma once

#include <CLI/CLI.hpp>
#include <array>
#include <limits>
#include <vector>

#include "each_file.h"
#include "kem.h"

namespace kem::tool {

struct Bounds {
  static constexpr float kOpen = std::numeric_limits<float>::infinity();
  float from = -kOpen;
  float to = kOpen;
};

struct BoundsOption {
  std::array<float, 2> at = {};
  CLI::Option* option = nullptr;

  bool Given() const { return option && option->count() > 0; }
  // Those given, else others.
  Bounds Or(const Bounds& others) const { return Given() ? Bounds{at[0], at[1]} : others; }
};

// The ranges of a record.
inline Bounds XRange(const PrnType& r) { return {r.xStart, r.xEnd}; }
inline Bounds YRange(const PrnType& r) { return {r.yStart, r.yEnd}; }

// The option --x or --y.
void AddBounds(CLI::App& app, char axis, BoundsOption& bounds, const char* help);

// Why an axis that goes over a range does not reach both of the bounds; nothing when it does.
Problem CannotReach(char axis, const Bounds& range, const Bounds& bounds);

// What there is of a range between bounds that it reaches at least in part.
Bounds Within(const Bounds& range, const Bounds& bounds);

// Whether any of the values lies within the bounds.
bool HoldAnyOf(const Bounds& bounds, const std::vector<float>& values);

}  // namespace kem::tool
