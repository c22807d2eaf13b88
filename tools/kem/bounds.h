// Bounds along an axis as an option, "--x FROM TO": in either order, and included.
#pragma once

#include <CLI/CLI.hpp>
#include <array>
#include <limits>
#include <vector>

namespace kem::tool {

struct Bounds {
  static constexpr float kOpen = std::numeric_limits<float>::infinity();
  float from = -kOpen;
  float to = kOpen;
};

struct BoundsOption {
  std::array<float, 2> at = {};
  CLI::Option* option = nullptr;

  bool Given() const { return option->count() > 0; }
  // Those given, else others.
  Bounds Or(const Bounds& others) const { return Given() ? Bounds{at[0], at[1]} : others; }
};

// The option --x or --y.
void AddBounds(CLI::App& app, char axis, BoundsOption& bounds, const char* help);

// Whether any of the values lies within the bounds.
bool HoldAnyOf(const Bounds& bounds, const std::vector<float>& values);

}  // namespace kem::tool
