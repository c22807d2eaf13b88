// How the time to resample grows with the number of samples and targets.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>
#include <random>
#include <vector>

#include "kem.h"

namespace {

using Axis = std::vector<float>;

int Count(const Axis& axis) { return static_cast<int>(axis.size()); }

// Uneven: each step is up to half a step off.
Axis UnevenAxis(int count, float start, float end) {
  std::mt19937 rng(1);
  std::uniform_real_distribution<float> offset(-0.5f, 0.5f);
  Axis axis;
  for (int k = 0; k < count; ++k)
    axis.push_back(start + (end - start) * (static_cast<float>(k) + offset(rng)) / static_cast<float>(count));
  return axis;
}

Axis Shuffled(Axis axis) {
  std::shuffle(axis.begin(), axis.end(), std::mt19937(2));
  return axis;
}

PrnType Curve(const Axis& x) {
  PrnType curve(AllocXY, Count(x), 0);
  std::copy(x.begin(), x.end(), curve.xArray);
  for (int k = 0; k < curve.nY; ++k) curve.yArray[k] = static_cast<float>(k % 1000);
  curve.MinMax();
  return curve;
}

PrnType Grid(const Axis& x, const Axis& y) {
  PrnType grid(AllocXYZ, Count(x), Count(y));
  std::copy(x.begin(), x.end(), grid.xArray);
  std::copy(y.begin(), y.end(), grid.yArray);
  for (int i = 0; i < grid.nX; ++i)
    for (int j = 0; j < grid.nY; ++j) grid.zArray[i][j] = static_cast<float>((i * 7 + j * 3) % 1000);
  grid.MinMax();
  return grid;
}

void Resample(benchmark::State& state, const PrnType& curve, Axis targets) {
  for (auto _ : state) std::unique_ptr<PrnType>(&curve.InterpolateXY(targets.data(), Count(targets)));
  state.SetItemsProcessed(state.iterations() * Count(targets));
}

void CurveInOrder(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  Resample(state, Curve(UnevenAxis(count, 0, 1)), UnevenAxis(count, 0.1f, 1.1f));
}

void CurveShuffledTargets(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  Resample(state, Curve(UnevenAxis(count, 0, 1)), Shuffled(UnevenAxis(count, 0.1f, 1.1f)));
}

void CurveUnordered(benchmark::State& state) {
  const int count = static_cast<int>(state.range(0));
  Resample(state, Curve(Shuffled(UnevenAxis(count, 0, 1))), UnevenAxis(count, 0.1f, 1.1f));
}

BENCHMARK(CurveInOrder)->RangeMultiplier(10)->Range(1000, 1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(CurveShuffledTargets)->RangeMultiplier(10)->Range(1000, 1000000)->Unit(benchmark::kMillisecond);
BENCHMARK(CurveUnordered)->RangeMultiplier(10)->Range(1000, 1000000)->Unit(benchmark::kMillisecond);

// Two images of 640 x 480. The second neighbour along y depends on x, so how the axes lie to each other matters.
void ResampleImage(benchmark::State& state, Axis x, Axis y, Axis toX, Axis toY) {
  const PrnType grid = Grid(x, y);
  for (auto _ : state)
    std::unique_ptr<PrnType>(&grid.InterpolateXYZ(toX.data(), Count(toX), toY.data(), Count(toY)));
  state.SetItemsProcessed(state.iterations() * Count(toX) * Count(toY));
}

// Wavelength and time, pixels, a detail of one pixel, and time that is not in order, which is scanned.
BENCHMARK_CAPTURE(ResampleImage, apart, UnevenAxis(640, 300, 900), UnevenAxis(480, 0, 50),
                  UnevenAxis(640, 310, 910), UnevenAxis(480, 1, 51))
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ResampleImage, same, UnevenAxis(640, 0, 640), UnevenAxis(480, 0, 480), UnevenAxis(640, 1, 641),
                  UnevenAxis(480, 1, 481))
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ResampleImage, detail, UnevenAxis(640, 0, 640), UnevenAxis(480, 0, 480),
                  UnevenAxis(640, 449, 450), UnevenAxis(480, 450, 451))
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(ResampleImage, unordered, UnevenAxis(640, 300, 900), Shuffled(UnevenAxis(480, 0, 50)),
                  UnevenAxis(640, 310, 910), UnevenAxis(480, 1, 51))
    ->Unit(benchmark::kMillisecond);

}  // namespace
