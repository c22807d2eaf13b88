#include "bounds.h"

#include <algorithm>

namespace kem::tool {

void AddBounds(CLI::App& app, char axis, BoundsOption& bounds, const char* help) {
  const std::string name = {'-', axis, ',', '-', '-', axis};
  bounds.option = app.add_option(name, bounds.at, help)->type_name("FROM TO");
}

bool HoldAnyOf(const Bounds& bounds, const std::vector<float>& values) {
  const auto [low, high] = std::minmax(bounds.from, bounds.to);
  return std::ranges::any_of(values, [low = low, high = high](float v) { return low <= v && v <= high; });
}

}  // namespace kem::tool
