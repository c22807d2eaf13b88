// Exact searches over coordinates in no order, for many targets.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace kem::analysis {

// The coordinates that are numbers in ascending order, and for any part of them the lowest index that one had: what
// a scan over an axis finds first. Answers are those of AxisSearch, in the logarithm of the time.
class UnorderedSearch {
 public:
  explicit UnorderedSearch(std::span<const float> axis);

  std::size_t Nearest(float target) const;
  std::optional<std::size_t> Across(float target, std::size_t nearest) const;

 private:
  // A part of the ordered coordinates.
  struct Part {
    std::size_t first;
    std::size_t last;
  };

  template <class Holds>
  std::size_t PartitionPoint(Part part, Holds holds) const;
  Part AsNear(Part part, float t) const;
  std::size_t LowestIndex(Part part) const;
  std::size_t PlaceOf(std::size_t index) const;

  std::span<const float> axis_;
  std::vector<float> ordered_;
  std::vector<std::uint32_t> lowest_;  // a tree: each node is the lower of the two below it, the leaves are indices
};

}  // namespace kem::analysis
