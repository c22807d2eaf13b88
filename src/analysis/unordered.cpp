#include "analysis/unordered.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace kem::analysis {

UnorderedSearch::UnorderedSearch(std::span<const float> axis) : axis_(axis) {
  std::vector<std::uint32_t> indices(axis.size());
  std::iota(indices.begin(), indices.end(), 0);
  std::erase_if(indices, [&](std::uint32_t k) { return std::isnan(axis[k]); });
  std::sort(indices.begin(), indices.end(), [&](std::uint32_t a, std::uint32_t b) {
    return axis[a] != axis[b] ? axis[a] < axis[b] : a < b;  // equal ones in the order of the axis
  });
  const std::size_t count = indices.size();
  ordered_.resize(count);
  std::transform(indices.begin(), indices.end(), ordered_.begin(), [&](std::uint32_t k) { return axis[k]; });
  lowest_.resize(2 * count);
  std::copy(indices.begin(), indices.end(), lowest_.begin() + static_cast<std::ptrdiff_t>(count));
  for (std::size_t k = count; k-- > 1;) lowest_[k] = std::min(lowest_[2 * k], lowest_[2 * k + 1]);
}

template <class Holds>
std::size_t UnorderedSearch::PartitionPoint(Part part, Holds holds) const {
  const auto begin = ordered_.begin();
  const auto from = begin + static_cast<std::ptrdiff_t>(part.first);
  const auto to = begin + static_cast<std::ptrdiff_t>(part.last);
  return static_cast<std::size_t>(std::partition_point(from, to, holds) - begin);
}

// Those of a part, which has one at least, that no other is nearer than. Distances never rise up to the target and
// never fall from there on, whatever they round to.
UnorderedSearch::Part UnorderedSearch::AsNear(Part part, float t) const {
  const std::size_t above = PartitionPoint(part, [t](float c) { return c <= t; });
  const auto distance = [&](std::size_t k) { return std::fabs(ordered_[k] - t); };
  float least = distance(above == part.last ? above - 1 : above);
  if (above > part.first) least = std::min(least, distance(above - 1));
  return {PartitionPoint({part.first, above}, [&](float c) { return std::fabs(c - t) > least; }),
          PartitionPoint({above, part.last}, [&](float c) { return std::fabs(c - t) <= least; })};
}

std::size_t UnorderedSearch::LowestIndex(Part part) const {
  std::uint32_t lowest = lowest_[part.first + ordered_.size()];
  std::size_t a = part.first + ordered_.size();
  std::size_t b = part.last + ordered_.size();
  for (; a < b; a /= 2, b /= 2) {
    if (a % 2) lowest = std::min(lowest, lowest_[a++]);
    if (b % 2) lowest = std::min(lowest, lowest_[--b]);
  }
  return lowest;
}

// Where a sample of the axis lies among the ordered ones.
std::size_t UnorderedSearch::PlaceOf(std::size_t index) const {
  const auto equal = std::equal_range(ordered_.begin(), ordered_.end(), axis_[index]);
  const auto leaves = lowest_.begin() + std::ssize(ordered_);
  const auto from = leaves + (equal.first - ordered_.begin());
  const auto to = leaves + (equal.second - ordered_.begin());
  return static_cast<std::size_t>(std::lower_bound(from, to, index) - leaves);
}

std::size_t UnorderedSearch::Nearest(float target) const {
  if (std::isnan(axis_[0]) || !std::isfinite(target)) return 0;  // no distance is smaller than the first
  return LowestIndex(AsNear({0, ordered_.size()}, target));
}

std::optional<std::size_t> UnorderedSearch::Across(float target, std::size_t nearest) const {
  const float own = axis_[nearest] - target;
  if (!std::isfinite(target) || std::isnan(own)) return {};
  const auto across = [&](float c) { return (c - target) * own <= 0; };
  const auto same = [&](float c) { return !across(c); };
  const std::size_t place = PlaceOf(nearest);
  Part part{0, ordered_.size()};
  // At the target itself those across are on both sides, but for the infinitely far ones.
  if (own <= 0) part.first = PartitionPoint({0, own == 0 ? place : part.last}, same);
  if (own >= 0) part.last = PartitionPoint(part, across);
  const Part sides[] = {{part.first, std::min(place, part.last)}, {std::max(place + 1, part.first), part.last}};
  std::optional<std::size_t> best;
  const auto distance = [&](std::size_t k) { return std::fabs(axis_[k] - target); };
  for (const Part& side : sides) {
    if (side.first >= side.last) continue;
    const std::size_t found = LowestIndex(AsNear(side, target));
    const bool better = !best || distance(found) < distance(*best);
    if (better || (distance(found) == distance(*best) && found < *best)) best = found;
  }
  return best;
}

}  // namespace kem::analysis
