// The second neighbours of many targets along one axis, for one measure after the other; search.cpp tells why the
// conditions are what they are.
//
// Up to a measure below the target, the samples of an even axis are taken in one stride: each is the first whose
// coordinate is farther from that of the one before than the target is from the measure. Roundings change nothing
// where no coordinate comes near that, nor where none are made: differences of small multiples of one number.
#include "analysis/second.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "analysis/neighbours.h"
#include "record/vectors.h"

namespace kem::analysis {
namespace {

constexpr std::size_t kMostSamples = 1 << 29;  // sums of two indices are indices, too
constexpr float kNever = std::numeric_limits<float>::infinity();

// Answers that take another look.
constexpr std::int32_t kRun = -1;     // the sample above is taken, and those that follow it
constexpr std::int32_t kSearch = -2;  // not plain

bool IsMultiple(float number, float quantum) {
  constexpr float kMost = 1 << 23;  // of which two differ by a number of 24 bits
  const float times = number / quantum;
  return std::fabs(times) <= kMost && times == std::trunc(times);
}

}  // namespace

SecondNeighbours::SecondNeighbours(std::span<const float> axis, std::span<const float> targets)
    : search_(axis, targets.size()),
      targets_(targets),
      axis_(axis.begin(), axis.end()),
      nearest_(targets.size()),
      second_(targets.size()),
      order_(targets.size()),
      target_(targets.size()),
      rounding_(targets.size()),
      end_(targets.size()),
      below_(targets.size()),
      lastOffer_(targets.size(), kNever),
      above_(targets.size()),
      nextOffer_(targets.size(), kNever),
      last_(targets.size()),
      next_(targets.size()),
      answer_(targets.size(), kSearch) {
  const float direction = search_.Direction();
  for (float& c : axis_) c *= direction;
  if (direction != 0) LookForSteps();
  std::size_t nearest = 0;
  for (std::size_t j = 0; j < targets.size(); ++j) {
    nearest = search_.Nearest(targets[j], nearest);
    nearest_[j] = static_cast<std::int32_t>(nearest);
  }
  std::iota(order_.begin(), order_.end(), 0u);
  std::sort(order_.begin(), order_.end(),
            [this](std::uint32_t a, std::uint32_t b) { return search_.Before(targets_[a], targets_[b]); });
  for (std::size_t j = 0; j < targets.size(); ++j) {
    const float t = target_[j] = direction * targets[order_[j]];
    rounding_[j] = Rounding(t);
    end_[j] = std::max(nearest_[order_[j]], 1);
    const auto end = axis_.begin() + end_[j];
    below_[j] = end[-1];
    // A search where the second sample is not nearer than the first, or not below the nearest.
    if (direction == 0 || nearest_[order_[j]] < 2 || !(std::fabs(axis_[1] - t) < std::fabs(axis_[0] - t))) continue;
    lastOffer_[j] = std::fabs(below_[j] - t);
    const auto above = std::upper_bound(end, axis_.end(), *end);
    above_[j] = static_cast<std::int32_t>(above - axis_.begin());
    if (above != axis_.end()) nextOffer_[j] = std::fabs(*above - t);
  }
}

void SecondNeighbours::LookForSteps() {
  const double first = axis_.front();
  const double step = (axis_.back() - first) / static_cast<double>(axis_.size() - 1);
  if (!(step > 0 && std::isfinite(1 / step))) return;
  even_ = {step, 1 / step, 0};
  for (std::size_t k = 0; k < axis_.size(); ++k)
    even_.deviation = std::max(even_.deviation, std::fabs(axis_[k] - (first + step * static_cast<double>(k))));
  const float most = std::max(std::fabs(axis_.front()), std::fabs(axis_.back()));
  quantum_ = std::ldexp(1.0f, std::ilogb(most) - 22);
  if (!std::all_of(axis_.begin(), axis_.end(), [this](float c) { return IsMultiple(c, quantum_); })) quantum_ = 0;
}

// How far the distances of samples to a number may be from what they would be without rounding, with room to spare.
double SecondNeighbours::Rounding(float number) const {
  if (quantum_ > 0 && IsMultiple(number, quantum_)) return 0;
  return std::fabs(static_cast<double>(number) - axis_.front()) * 0x1p-22;
}

// Targets up to the measure, or all of them where only the first sample is not above it. Samples are taken to the
// last below the nearest, where none of them keeps less than that one offers.
void SecondNeighbours::TakeAll(float m, std::size_t to) {
  record::WithVectors([m, keptFirst = std::fabs(axis_[1] - m), end = end_.data(), below = below_.data(),
                       lastOffer = lastOffer_.data(), nextOffer = nextOffer_.data(), answer = answer_.data(), to] {
    for (std::size_t j = 0; j < to; ++j) {
      const float kept = std::fabs(below[j] - m);
      const bool plain = (keptFirst > lastOffer[j]) & (kept > lastOffer[j]);
      const std::int32_t found = nextOffer[j] < kept ? kRun : end[j] - 1;
      answer[j] = plain ? found : kSearch;
    }
  });
}

// Targets above the measure, which itself lies above the first `upTo` samples, two at least.
void SecondNeighbours::TakeStrides(float m, std::size_t upTo, std::size_t from) {
  record::WithVectors([m = static_cast<double>(m), even = even_, margin = 2 * even_.deviation + Rounding(m),
                       walked = static_cast<double>(upTo - 2), most = static_cast<double>(axis_.size()),
                       target = target_.data(), rounding = rounding_.data(), last = last_.data(),
                       next = next_.data(), from, to = target_.size()] {
    for (std::size_t j = from; j < to; ++j) {
      const double apart = target[j] - m;
      const std::int32_t stride = 1 + static_cast<std::int32_t>(std::min(most, apart * even.perStep));
      const double beyond = stride * even.step - apart;
      const double near = margin + rounding[j];
      last[j] = 1 + static_cast<std::int32_t>(walked / stride) * stride;
      const bool known = (beyond > near) & (even.step - beyond >= near);
      next[j] = last[j] + (known ? stride : 0);
    }
  });
  record::WithVectors([m, axis = axis_.data(), end = end_.data(), lastOffer = lastOffer_.data(),
                       nextOffer = nextOffer_.data(), last = last_.data(), next = next_.data(),
                       answer = answer_.data(), from, to = target_.size()] {
    for (std::size_t j = from; j < to; ++j) {
      const float offered = lastOffer[j];
      // Either none is taken after the measure, or, as what is kept never falls from there on, all to the nearest.
      const bool none = next[j] >= end[j];
      const std::int32_t taken = none ? last[j] : end[j] - 1;
      const float kept = std::fabs(axis[taken] - m);
      const float keptFirst = std::fabs(axis[none ? 0 : next[j]] - m);
      const bool known = (next[j] > last[j]) & (last[j] < end[j]) & (offered < kNever);
      const bool plain = known & (none | (keptFirst > offered));
      const std::int32_t found = nextOffer[j] < kept ? kRun : taken;
      answer[j] = plain ? found : kSearch;
    }
  });
}

void SecondNeighbours::FindPlain(float measure) {
  const float m = search_.Direction() * measure;
  if (!std::isfinite(m) || axis_.size() < 2 || axis_.size() > kMostSamples) {
    std::fill(answer_.begin(), answer_.end(), kSearch);
    return;
  }
  const auto above = std::upper_bound(axis_.begin(), axis_.end(), m);
  const auto upTo = static_cast<std::size_t>(above - axis_.begin());
  if (upTo < 2) return TakeAll(m, target_.size());
  const auto first = std::upper_bound(order_.begin(), order_.end(), measure, [this](float a, std::uint32_t place) {
    return search_.Before(a, targets_[place]);
  });
  const auto from = static_cast<std::size_t>(first - order_.begin());
  TakeAll(m, from);
  TakeStrides(m, upTo, from);
}

const std::vector<std::int32_t>& SecondNeighbours::Second(float measure) {
  FindPlain(measure);
  const float m = search_.Direction() * measure;
  const std::span<const float> axis = axis_;
  std::size_t end = 0;  // of the samples taken one after the other for the target before
  for (std::size_t j = 0; j < answer_.size(); ++j) {
    const std::uint32_t place = order_[j];
    std::int32_t second = answer_[j];
    if (second == kSearch) {
      const auto nearest = static_cast<std::size_t>(nearest_[place]);
      second = static_cast<std::int32_t>(search_.Second(targets_[place], nearest, measure));
    } else if (second == kRun) {
      // What follows for one target does so for every greater one that lies below it; often that is all there is.
      const auto follows = [t = target_[j], m](float a, float b) { return std::fabs(b - t) < std::fabs(a - m); };
      const auto first = static_cast<std::size_t>(above_[j]);
      if (end == 0 && AllNeighbours(axis.subspan(first), follows)) end = axis.size() - 1;
      end = std::max(end, first);
      while (end + 1 < axis.size() && follows(axis[end], axis[end + 1])) ++end;
      second = static_cast<std::int32_t>(end);
    }
    second_[place] = second;
  }
  return second_;
}

}  // namespace kem::analysis
