// The second neighbours of many targets along one axis, for one measure after the other; search.cpp tells why the
// conditions are what they are.
#include "analysis/second.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace kem::analysis {

SecondNeighbours::SecondNeighbours(std::span<const float> axis, std::span<const float> targets)
    : search_(axis, targets.size()),
      targets_(targets),
      axis_(axis.begin(), axis.end()),
      order_(targets.size()),
      above_(targets.size()),
      nearest_(targets.size()),
      second_(targets.size()) {
  const float direction = search_.Direction();
  for (float& c : axis_) c *= direction;
  std::size_t nearest = 0;
  for (std::size_t j = 0; j < targets.size(); ++j) {
    nearest = search_.Nearest(targets[j], nearest);
    nearest_[j] = static_cast<std::int32_t>(nearest);
    const float t = direction * targets[j];
    if (direction == 0 || nearest < 2 || !(std::fabs(axis_[1] - t) < std::fabs(axis_[0] - t))) continue;
    const auto from = axis_.begin() + static_cast<std::ptrdiff_t>(nearest);
    const auto above = std::upper_bound(from, axis_.end(), axis_[nearest]);
    above_[j] = static_cast<std::uint32_t>(above - axis_.begin());
  }
  std::iota(order_.begin(), order_.end(), 0u);
  std::sort(order_.begin(), order_.end(),
            [this](std::uint32_t a, std::uint32_t b) { return search_.Before(targets_[a], targets_[b]); });
}

const std::vector<std::int32_t>& SecondNeighbours::Second(float measure) {
  const float direction = search_.Direction();
  const float m = direction * measure;
  const bool plain = direction != 0 && std::isfinite(m);
  const auto kept = [&](std::size_t k) { return std::fabs(axis_[k] - m); };
  std::size_t end = 0;  // of the samples taken one after the other for the target before
  for (const std::uint32_t j : order_) {
    const float t = direction * targets_[j];
    const auto distance = [&](std::size_t k) { return std::fabs(axis_[k] - t); };
    const auto nearest = static_cast<std::size_t>(nearest_[j]);
    const std::size_t above = above_[j];
    std::size_t second = nearest - 1;
    // The samples below the nearest are taken to their last where none before keeps less than it offers.
    const bool toLast = plain && above != 0 && (m >= t || axis_[1] > m) && kept(1) > distance(second) &&
                        kept(second) > distance(second);
    if (!toLast) {
      second = search_.Second(targets_[j], nearest, measure);
    } else if (above < axis_.size() && distance(above) < kept(second)) {
      end = std::max(end, above);
      while (end + 1 < axis_.size() && distance(end + 1) < kept(end)) ++end;
      second = end;
    }
    second_[j] = static_cast<std::int32_t>(second);
  }
  return second_;
}

}  // namespace kem::analysis
