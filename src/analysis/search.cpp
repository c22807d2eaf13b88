// Exact searches over the coordinates of an axis.
//
// Each search is defined by a scan in single precision, and single precision rounds: distances to far samples
// tie, products of small differences vanish. On an axis whose coordinates are numbers and never fall, the scan
// can be answered by halving, because rounding keeps order (a <= b rounds to a' <= b'). For a finite target t
//   - the differences c[k] - t never fall with k, whatever they round to;
//   - the distances |c[k] - t| never rise while c[k] <= t and never fall from there on;
//   - so they never rise up to the nearest sample n, and never fall after it. Those below n are strictly
//     greater than its own, all their samples have c[k] <= t, and n is the first of its equals.
// Each condition below is put to the rounded numbers themselves, so that it changes where the scan changes.
//
// A descending axis is searched as its mirror image, whose differences -c[k] - -t have the same size to the bit.
// Left to the scan are unordered axes (for few targets, else see unordered.h), NaN among the coordinates, and a
// measure that is not finite. Equal samples at the end of an axis, as those are that a file does not hold, are two
// to a scan: after the second none changes an answer but that of Second(), which takes all when it takes two.
#include "analysis/search.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "analysis/neighbours.h"
#include "portable.h"

namespace kem::analysis {
namespace {

// The first index of [first, last) at which `holds` does not; it holds up to there and nowhere after. Looks
// around `near` in strides that double, so that a short way is found in few steps.
template <class Holds>
std::size_t PartitionPoint(std::size_t first, std::size_t last, std::size_t near, Holds holds) {
  std::size_t low = first;
  std::size_t high = last;
  near = std::clamp(near, first, last);
  if (near < last && holds(near)) {
    low = near + 1;
    for (std::size_t stride = 1; stride <= high - low; stride *= 2) {
      const std::size_t probe = low + stride - 1;
      if (!holds(probe)) {
        high = probe;
        break;
      }
      low = probe + 1;
    }
  } else {
    high = near;
    for (std::size_t stride = 1; stride <= high - low; stride *= 2) {
      const std::size_t probe = high - stride;
      if (holds(probe)) {
        low = probe + 1;
        break;
      }
      high = probe;
    }
  }
  while (low < high) {
    const std::size_t middle = low + (high - low) / 2;
    if (holds(middle))
      low = middle + 1;
    else
      high = middle;
  }
  return low;
}

// ------------------------------------------------------------ scans

std::size_t NearestByScan(std::span<const float> c, float t) {
  std::size_t nearest = 0;
  float best = std::fabs(c[0] - t);
  for (std::size_t k = 1; k < c.size(); ++k)
    if (const float distance = std::fabs(c[k] - t); distance < best) {
      nearest = k;
      best = distance;
    }
  return nearest;
}

std::optional<std::size_t> AcrossByScan(std::span<const float> c, float t, std::size_t nearest) {
  std::optional<std::size_t> across;
  float best = 0;
  for (std::size_t k = 0; k < c.size(); ++k) {
    if (k == nearest || !((c[k] - t) * (c[nearest] - t) <= 0)) continue;
    const float distance = std::fabs(c[k] - t);
    if (across && !(distance < best)) continue;
    across = k;
    best = distance;
  }
  return across;
}

std::size_t SecondByScan(std::span<const float> c, float t, std::size_t nearest, float measure) {
  std::size_t second = nearest == 0 ? 1 : 0;
  float best = std::fabs(c[0] - t);
  for (std::size_t k = 1; k < c.size(); ++k)
    if (std::fabs(c[k] - t) < best && k != nearest && c[k] != c[nearest]) {
      second = k;
      best = std::fabs(c[k] - measure);
    }
  return second;
}

// Ascends in the total order of IEEE 754, where -0 stands before 0 and NaN at either end.
std::int32_t Rank(float number) {
  const auto bits = portable::bit_cast<std::int32_t>(number);
  return bits < 0 ? bits ^ 0x7FFFFFFF : bits;
}

}  // namespace

// ------------------------------------------------------------ ordered axes

AxisSearch::AxisSearch(std::span<const float> axis, std::size_t targets) : axis_(axis) {
  const bool rising = AllNeighbours(axis, [](float a, float b) { return a <= b; });
  ordered_ = rising || AllNeighbours(axis, [](float a, float b) { return a >= b; });
  constexpr std::size_t kFew = 30;  // as many scans take about as long as putting the samples into order
  if (!ordered_ && targets > kFew) unordered_.emplace(axis);
  sign_ = rising ? 1.0f : -1.0f;
  const auto same = [last = axis.back()](float c) { return c == last || (std::isnan(c) && std::isnan(last)); };
  const auto differs = std::find_if_not(axis.rbegin(), axis.rend(), same);
  const auto equal = static_cast<std::size_t>(differs - axis.rbegin());
  scanned_ = axis.first(axis.size() - equal + std::min<std::size_t>(equal, 2));
}

bool AxisSearch::Before(float a, float b) const { return Rank(sign_ * a) < Rank(sign_ * b); }

// The lowest sample that is as near as sample k, where distances never rise from `first` to k.
std::size_t AxisSearch::LowestAsNear(std::size_t first, std::size_t k, float t) const {
  const float distance = std::fabs(Coordinate(k) - t);
  return PartitionPoint(first, k, k, [&](std::size_t j) { return std::fabs(Coordinate(j) - t) > distance; });
}

std::size_t AxisSearch::Nearest(float target, std::size_t hint) const {
  if (unordered_) return unordered_->Nearest(target);
  if (!ordered_) return NearestByScan(scanned_, target);
  if (!std::isfinite(target)) return 0;  // no distance is smaller than the first
  const float t = sign_ * target;
  const std::size_t above =
      PartitionPoint(0, axis_.size(), hint, [&](std::size_t k) { return Coordinate(k) <= t; });
  if (above == 0) return 0;
  const float below = std::fabs(Coordinate(above - 1) - t);
  if (above < axis_.size() && std::fabs(Coordinate(above) - t) < below) return above;
  return LowestAsNear(0, above - 1, t);
}

// The product of differences rises or falls with k as the sign of its second factor tells, so samples across the
// target are those up to an end or from a start on. A product that vanishes counts as one across, here as there.
std::optional<std::size_t> AxisSearch::Across(float target, std::size_t nearest) const {
  const float t = sign_ * target;
  const std::size_t count = axis_.size();
  const auto difference = [&](std::size_t k) { return Coordinate(k) - t; };
  if (unordered_) return unordered_->Across(target, nearest);
  if (!ordered_) return AcrossByScan(scanned_, target, nearest);
  if (!std::isfinite(target)) return {};  // no product of infinite differences of one sign is 0 or less
  const float own = difference(nearest);
  const auto across = [&](std::size_t k) { return difference(k) * own <= 0; };
  std::size_t first = 0;
  std::size_t last = count;
  if (own == 0) first = PartitionPoint(0, nearest, 0, [&](std::size_t k) { return !across(k); });  // infinitely far
  if (own >= 0)
    last = PartitionPoint(first, count, nearest, across);
  else
    first = PartitionPoint(0, count, nearest, [&](std::size_t k) { return !across(k); });

  std::optional<std::size_t> below;
  if (first < std::min(nearest, last)) below = LowestAsNear(first, std::min(nearest, last) - 1, t);
  const std::size_t above = std::max(nearest + 1, first);
  if (above >= last) return below;
  if (below && std::fabs(difference(*below)) <= std::fabs(difference(above))) return below;
  return above;
}

std::size_t AxisSearch::Second(float target, std::size_t nearest, float measure) {
  if (nearest == 0) return std::min<std::size_t>(1, axis_.size() - 1);  // nothing beats the first sample
  if (ordered_ && std::isfinite(measure)) return SecondInOrder(sign_ * target, nearest, sign_ * measure);
  const std::size_t second = SecondByScan(scanned_, target, nearest, measure);
  return second + 1 == scanned_.size() ? axis_.size() - 1 : second;
}

// A sample is taken when it offers a distance to the target below the best, which then becomes what it keeps:
// its distance to the measure.
std::size_t AxisSearch::SecondInOrder(float t, std::size_t nearest, float measure) {
  const auto offer = [&](std::size_t k) { return std::fabs(Coordinate(k) - t); };
  const auto keep = [&](std::size_t k) { return std::fabs(Coordinate(k) - measure); };
  std::size_t taken = 0;
  float best = offer(0);

  // Offers never rise below the nearest sample.
  const auto next = [&](std::size_t from) {
    if (from < nearest && offer(from) < best) return from;  // on fine axes almost always
    const std::size_t k =
        PartitionPoint(from, nearest, from + near_.stride, [&](std::size_t j) { return !(offer(j) < best); });
    near_.stride = k - from;
    return k;
  };
  for (std::size_t k = next(1); k < nearest; k = next(taken + 1)) {
    taken = k;
    // Above the measure what is kept never falls from here on; up to a measure beyond the target it never rises,
    // but no sample keeps less than it offers. Either way the samples below the nearest are taken to their last,
    // unless one before it keeps no more than the last offers.
    if (measure >= t || Coordinate(k) > measure) {
      const float last = offer(nearest - 1);
      const auto holds = [&](std::size_t j) { return keep(j) > last; };
      if (holds(k)) taken = holds(nearest - 1) ? nearest - 1 : PartitionPoint(k, nearest, k, holds);
    }
    best = keep(taken);
  }

  // Offers never fall above it: the first that differs from it is taken, or none.
  const std::size_t above = PartitionPoint(nearest, axis_.size(), nearest,
                                           [&](std::size_t k) { return Coordinate(k) <= Coordinate(nearest); });
  if (above == axis_.size() || !(offer(above) < best)) return taken;
  return EndOfRun(above, t, measure);
}

// The last sample taken when `first` is, where offers never fall: samples follow one another until one offers no
// less than the one before it keeps.
std::size_t AxisSearch::EndOfRun(std::size_t first, float t, float measure) {
  const std::size_t count = axis_.size();
  const auto goesOn = [&](std::size_t k) {
    return k + 1 < count && std::fabs(Coordinate(k + 1) - t) < std::fabs(Coordinate(k) - measure);
  };
  if (run_.measure != measure) {
    run_.measure = measure;
    run_.last = 0;
    near_.measure =
        PartitionPoint(0, count, near_.measure, [&](std::size_t k) { return Coordinate(k) <= measure; });
  }
  // Up to the measure what is kept never rises.
  const std::size_t beyond = std::max(first, near_.measure);
  const std::size_t k = near_.end = PartitionPoint(first, beyond, near_.end, goesOn);
  if (k < beyond) return k;

  // Beyond the measure it depends on each step of the axis. But what follows a sample for one target does so for
  // every greater one that still lies below it, so that runs are not walked again.
  Run run{measure, t, k, k};
  if (run_.measure == measure && run_.target <= t && run_.first <= k && k < run_.last && Coordinate(k + 1) > t)
    run.last = run_.last;
  while (goesOn(run.last)) ++run.last;
  run_ = run;
  return run.last;
}

}  // namespace kem::analysis
