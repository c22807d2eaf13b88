// Medians and smoothing at the size of a camera image and of a long trace, medians also by their definition:
// a sort per value. compare_scipy.py puts the figures beside SciPy's.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <memory>
#include <random>
#include <vector>

#include "kem.h"

namespace {

constexpr int kRows = 1344;
constexpr int kColumns = 1024;
constexpr int kSamples = 1'000'000;

void FillNormal(float* values, int count, std::mt19937& random) {
  std::normal_distribution<float> normal;
  std::generate_n(values, count, [&] { return normal(random); });
}

const PrnType& Image() {
  static const auto image = [] {
    std::mt19937 random(1);
    auto made = std::make_unique<PrnType>(AllocZ, kRows, kColumns);
    for (int i = 0; i < kRows; ++i) FillNormal(made->zArray[i], kColumns, random);
    return made;
  }();
  return *image;
}

const PrnType& Trace() {
  static const auto trace = [] {
    std::mt19937 random(1);
    auto made = std::make_unique<PrnType>(AllocY, kSamples);
    FillNormal(made->yArray, kSamples, random);
    return made;
  }();
  return *trace;
}

using Filter = PrnType& (PrnType::*)(int) const;

void Run(benchmark::State& state, const PrnType& source, Filter filter) {
  for (auto _ : state) {
    const std::unique_ptr<PrnType> result(&(source.*filter)(static_cast<int>(state.range(0))));
    benchmark::DoNotOptimize(result.get());
  }
}

// What a median is by definition, for as much of the source as fits in a moment; the time is that of all.
void Sorted(benchmark::State& state, const float* const* rows, int nX, int nY, int halfX, int halfY, int above) {
  constexpr int kPart = 64;
  std::vector<float> span;
  const auto median = [&](int i, int j) {
    span.clear();
    for (int b = std::max(0, j - halfY); b <= std::min(nY - 1, j + halfY); ++b)
      for (int a = std::max(0, i - halfX); a <= std::min(nX - 1, i + halfX); ++a) span.push_back(rows[a][b]);
    std::sort(span.begin(), span.end() - 1);
    return span[(span.size() - 1) / 2 + static_cast<std::size_t>(above)];
  };
  const int i = nX / 2;
  for (auto _ : state)
    for (int j = 0; j < kPart; ++j) benchmark::DoNotOptimize(median(i, nY / 2 + j));
  state.counters["all_ms"] = benchmark::Counter(
      1e-3 * kPart / nY / nX, benchmark::Counter::kIsIterationInvariantRate | benchmark::Counter::kInvert);
}

void SortedImage(benchmark::State& state) {
  const int half = static_cast<int>(state.range(0)) / 2;
  Sorted(state, Image().zArray, kRows, kColumns, half, half, 1);
}

void SortedTrace(benchmark::State& state) {
  Sorted(state, &Trace().yArray, 1, kSamples, 0, static_cast<int>(state.range(0)) / 2, 0);
}

void Median3D(benchmark::State& state) { Run(state, Image(), &PrnType::Median3D); }
void Median2D(benchmark::State& state) { Run(state, Trace(), &PrnType::Median2D); }
void XSmooth(benchmark::State& state) { Run(state, Image(), &PrnType::XSmooth); }
void YSmooth(benchmark::State& state) { Run(state, Image(), &PrnType::YSmooth); }

BENCHMARK(Median3D)->Arg(3)->Arg(5)->Arg(9)->Arg(21)->Unit(benchmark::kMillisecond);
BENCHMARK(SortedImage)->Arg(3)->Arg(5)->Arg(9)->Arg(21)->Unit(benchmark::kMillisecond);
BENCHMARK(Median2D)->Arg(5)->Arg(7)->Arg(9)->Arg(11)->Arg(13)->Arg(15)->Arg(17)->Arg(51)->Arg(501)->Unit(
    benchmark::kMillisecond);
BENCHMARK(SortedTrace)->Arg(5)->Arg(51)->Arg(501)->Unit(benchmark::kMillisecond);
BENCHMARK(XSmooth)->Arg(5)->Arg(9)->Arg(21)->Unit(benchmark::kMillisecond);
BENCHMARK(YSmooth)->Arg(5)->Arg(9)->Arg(21)->Unit(benchmark::kMillisecond);

}  // namespace
