#include "analysis/search.h"
#include "analysis/second.h"

#include "support/records.h"

using namespace kem::test;
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

float Whole(Rng& rng, unsigned bound) { return static_cast<float>(rng() % bound); }

float Special(Rng& rng) { return Floats{NAN, INFINITY, -INFINITY}[rng() % 3]; }

// One of ten kinds, with differences that overflow, products that vanish and distances that tie among them.
Floats RandomAxis(Rng& rng) {
  const auto kind = rng() % 10;
  Floats c(1 + rng() % (rng() % 2 ? 70 : 8));
  for (std::size_t k = 0; k < c.size(); ++k) {
    const float even = 10 + 0.5f * static_cast<float>(k), anywhere = Uniform(rng, -50, 50),
                repeated = Whole(rng, 12);
    const float near = 1e8f + Whole(rng, 200), tied = Whole(rng, 20) + Whole(rng, 2) * 1e9f;
    const float large = Uniform(rng, -1, 1) * Limits::max(), power = std::pow(10.0f, Uniform(rng, -10, 10));
    const float small = Uniform(rng, -1e-22f, 1e-22f), tiny = (Whole(rng, 40) - 20) * Limits::denorm_min();
    const float drifting = (k ? c[k - 1] : 3) + 0.1f;
    c[k] = Floats{even, anywhere, repeated, near, tied, large, power, small, tiny, drifting}[kind];
  }
  if (rng() % 5) std::sort(c.begin(), c.end());
  if (rng() % 2) std::reverse(c.begin(), c.end());
  if (rng() % 12 == 0) c[rng() % c.size()] = Special(rng);
  return c;
}

float Target(Rng& rng, const Floats& c) {
  const float a = c[rng() % c.size()], b = c[rng() % c.size()];
  const float between = a + Uniform(rng, -2, 2) * (b - a);
  const float far = (Whole(rng, 2) - 0.5f) * std::pow(10.0f, Uniform(rng, -32, 38));
  return Floats{a, a + (b - a) / 2, std::nextafter(a, b), Special(rng), between, far}[rng() % 6];
}

}  // namespace

TEST_CASE("search: every answer is the literal scan's, to the last tie") {
  Rng rng(kSeed);
  CAPTURE(kSeed);
  for (int round = 0; round < 20000; ++round) {
    CAPTURE(round);
    const Floats axis = RandomAxis(rng);
    kem::analysis::AxisSearch search(axis, round % 4 < 2 ? 1 : 100);
    Floats targets(12);
    for (float& t : targets) t = Target(rng, axis);
    if (round % 2) std::sort(targets.begin(), targets.end(), [&](float a, float b) { return search.Before(a, b); });
    const float x = Target(rng, axis);
    kem::analysis::SecondNeighbours seconds(axis, targets);
    const std::vector<std::int32_t>& second = seconds.Second(x);
    std::size_t nearest = 0, above = 1;
    for (const float& t : targets) {
      CAPTURE(t);
      nearest = search.Nearest(t, nearest);
      REQUIRE(second[&t - targets.data()] == static_cast<int>(LiteralSecond(axis, t, nearest, x)));
      if (const auto pair = search.Between(t, above)) {
        REQUIRE(pair->nearest == nearest);
        REQUIRE(pair->across == LiteralAcross(axis, t, nearest, axis.size()));
      }
      REQUIRE(nearest == LiteralNearest(axis, t));
      REQUIRE(search.Across(t, nearest).value_or(axis.size()) == LiteralAcross(axis, t, nearest, axis.size()));
      const float measure = round % 3 ? x : t;
      REQUIRE(search.Second(t, nearest, measure) == LiteralSecond(axis, t, nearest, measure));
    }
  }
}
