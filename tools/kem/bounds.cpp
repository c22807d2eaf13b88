#include "bounds.h"

#include <algorithm>

#include "options.h"
#include "text.h"

namespace kem::tool {

void AddBounds(CLI::App& app, char axis, BoundsOption& bounds, const char* help) {
  const std::string name = {'-', axis, ',', '-', '-', axis};
  bounds.option = app.add_option(name, bounds.at, help)->type_name("FROM TO")->check(BoundNumber());
}

Problem CannotReach(char axis, const Bounds& range, const Bounds& bounds) {
  const auto [low, high] = std::minmax(range.from, range.to);
  for (const float at : {bounds.from, bounds.to})
    if (!(low <= at && at <= high))
      return std::string("its ") + axis + " axis goes from " + Shortest(range.from) + " to " + Shortest(range.to) +
             " and does not reach " + Shortest(at);
  return {};
}

Bounds Within(const Bounds& range, const Bounds& bounds) {
  const auto [low, high] = std::minmax(range.from, range.to);
  return {std::clamp(bounds.from, low, high), std::clamp(bounds.to, low, high)};
}

bool HoldAnyOf(const Bounds& bounds, const std::vector<float>& values) {
  const auto [low, high] = std::minmax(bounds.from, bounds.to);
  return std::any_of(values.begin(), values.end(),
                     [low = low, high = high](float v) { return low <= v && v <= high; });
}

}  // namespace kem::tool
