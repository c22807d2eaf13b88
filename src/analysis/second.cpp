// The second neighbours of many targets along one axis, for one measure after the other; search.cpp tells why the
// conditions are what they are.
#include "analysis/second.h"

#include <algorithm>
#include <cmath>

namespace kem::analysis {

SecondNeighbours::SecondNeighbours(std::span<const float> axis, std::span<const float> targets)
    : search_(axis), axis_(axis.begin(), axis.end()), nearest_(targets.size()), second_(targets.size()) {
  const float direction = search_.Direction();
  for (float& c : axis_) c *= direction;
  targets_.reserve(targets.size());
  for (std::size_t j = 0; j < targets.size(); ++j) {
    const std::size_t nearest = search_.Nearest(targets[j], targets_.empty() ? 0 : targets_.back().nearest);
    nearest_[j] = static_cast<std::int32_t>(nearest);
    const float t = direction * targets[j];
    const auto distance = [&](std::size_t k) { return std::fabs(axis_[k] - t); };
    Target target{j, nearest, axis_.size(), targets[j], 0, 0, false};
    if (direction != 0 && nearest > 1) {
      const auto from = axis_.begin() + static_cast<std::ptrdiff_t>(nearest);
      const auto above = std::upper_bound(from, axis_.end(), axis_[nearest]);
      target.above = static_cast<std::size_t>(above - axis_.begin());
      target.toLast = distance(nearest - 1);
      target.toAbove = target.above < axis_.size() ? distance(target.above) : 0;
      target.plain = distance(1) < distance(0);
    }
    targets_.push_back(target);
  }
  std::sort(targets_.begin(), targets_.end(),
            [this](const Target& a, const Target& b) { return search_.Before(a.target, b.target); });
}

const std::vector<std::int32_t>& SecondNeighbours::Second(float measure) {
  const float direction = search_.Direction();
  const float m = direction * measure;
  const bool plain = direction != 0 && std::isfinite(m);
  const auto kept = [&](std::size_t k) { return std::fabs(axis_[k] - m); };
  std::size_t end = 0;  // of the samples taken one after the other for the target before
  for (const Target& target : targets_) {
    const float t = direction * target.target;
    std::size_t second = target.nearest - 1;
    // The samples below the nearest are taken to their last where none before keeps less than it offers.
    const bool toLast = plain && target.plain && (m >= t || axis_[1] > m) && kept(1) > target.toLast &&
                        kept(second) > target.toLast;
    if (!toLast) {
      second = search_.Second(target.target, target.nearest, measure);
    } else if (target.above < axis_.size() && target.toAbove < kept(second)) {
      end = std::max(end, target.above);
      while (end + 1 < axis_.size() && std::fabs(axis_[end + 1] - t) < kept(end)) ++end;
      second = end;
    }
    second_[target.index] = static_cast<std::int32_t>(second);
  }
  return second_;
}

}  // namespace kem::analysis
