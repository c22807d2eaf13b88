#include "analysis/search.h"

#include <algorithm>
#include <limits>

#include "support/support.h"

using namespace kem::test;
using Floats = std::vector<float>;
using Limits = std::numeric_limits<float>;

namespace {

// ------------------------------------------------------------ the rules, sample by sample

std::size_t LiteralNearest(const Floats& c, float t) {
  std::size_t nearest = 0;
  float best = std::fabs(c[0] - t);
  for (std::size_t k = 1; k < c.size(); ++k)
    if (std::fabs(c[k] - t) < best) best = std::fabs(c[nearest = k] - t);
  return nearest;
}

std::size_t LiteralSecond(const Floats& c, float t, std::size_t nearest, float measure) {
  if (c.size() == 1) return 0;
  std::size_t second = nearest == 0 ? 1 : 0;
  float best = std::fabs(c[0] - t);
  for (std::size_t k = 1; k < c.size(); ++k)
    if (std::fabs(c[k] - t) < best && k != nearest && c[k] != c[nearest]) best = std::fabs(c[second = k] - measure);
  return second;
}

std::size_t LiteralAcross(const Floats& c, float t, std::size_t nearest, std::size_t none) {
  std::size_t m = 0;
  while (m < c.size() && (m == nearest || !((c[m] - t) * (c[nearest] - t) <= 0))) ++m;
  if (m == c.size()) return none;
  float best = std::fabs(c[m] - t);
  for (std::size_t k = 0; k < c.size() && best != 0; ++k)
    if (k != nearest && (c[nearest] - t) * (c[k] - t) <= 0 && std::fabs(c[k] - t) < best)
      best = std::fabs(c[m = k] - t);
  return m;
}

// ------------------------------------------------------------ hard axes and targets

struct Random {
  Rng rng{kSeed};

  bool OneIn(unsigned n) { return rng() % n == 0; }
  float Whole(unsigned bound) { return static_cast<float>(rng() % bound); }
  float Between(float low, float high) { return low + (high - low) * static_cast<float>(rng() >> 8) * 0x1p-24f; }
  float Special() { return OneIn(3) ? Limits::quiet_NaN() : OneIn(2) ? Limits::infinity() : -Limits::infinity(); }

  Floats Axis() {
    const auto kind = rng() % 9;
    const auto coordinate = [&](std::size_t k) {
      const float kinds[] = {10 + 0.5f * static_cast<float>(k),
                             Between(-50, 50),
                             Whole(12),          // repeated
                             1e8f + Whole(200),  // hardly apart
                             (Whole(40) - 20) * Limits::denorm_min(),
                             Between(-1, 1) * Limits::max(),  // differences overflow
                             Between(-1e-22f, 1e-22f),        // products vanish
                             std::pow(10.0f, Between(-10, 10)),
                             Whole(20) + Whole(2) * 1e9f};  // far distances tie
      return kinds[kind];
    };
    Floats c(1 + rng() % (OneIn(2) ? 70 : 8));
    for (std::size_t k = 0; k < c.size(); ++k) c[k] = coordinate(k);
    if (!OneIn(10)) std::sort(c.begin(), c.end());
    if (OneIn(2)) std::reverse(c.begin(), c.end());
    if (OneIn(12)) c[rng() % c.size()] = Special();
    if (OneIn(4)) std::fill_n(c.rbegin(), rng() % c.size(), OneIn(3) ? Special() : Whole(3));
    return c;
  }

  float Target(const Floats& c) {
    const float a = c[rng() % c.size()], b = c[rng() % c.size()];
    const float targets[] = {a,
                             a + (b - a) / 2,
                             std::nextafter(a, b),
                             Special(),
                             a + Between(-2, 2) * (b - a),
                             (Whole(2) - 0.5f) * std::pow(10.0f, Between(-32, 38))};
    return targets[rng() % std::size(targets)];
  }
};

}  // namespace

TEST_CASE("search: every answer is the literal scan's, to the last tie") {
  Random random;
  CAPTURE(kSeed);
  for (int round = 0; round < 20000; ++round) {
    CAPTURE(round);
    const Floats axis = random.Axis();
    kem::analysis::AxisSearch search(axis);
    Floats targets(12);
    for (float& t : targets) t = random.Target(axis);
    if (round % 2) std::sort(targets.begin(), targets.end(), [&](float a, float b) { return search.Before(a, b); });
    const float x = random.Target(axis);
    std::size_t nearest = 0;
    for (const float t : targets) {
      CAPTURE(t);
      nearest = search.Nearest(t, nearest);
      REQUIRE(nearest == LiteralNearest(axis, t));
      REQUIRE(search.Across(t, nearest).value_or(axis.size()) == LiteralAcross(axis, t, nearest, axis.size()));
      const float measure = round % 3 ? x : t;
      REQUIRE(search.Second(t, nearest, measure) == LiteralSecond(axis, t, nearest, measure));
    }
  }
}
