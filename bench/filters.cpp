// Medians and smoothing at the size of a camera image and of a long trace: the library against the literal rule,
// which sorts a span for every median and smooths an image column by column. A literal median is timed for one
// row, or for as many samples of the trace. bench/compare sets kem beside SciPy and OpenCV.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <initializer_list>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "kem.h"

namespace {

constexpr int kRows = 1344;
constexpr int kColumns = 1024;
constexpr int kSamples = 1000000;

void FillNormal(float* values, int count, std::mt19937& random) {
  std::normal_distribution<float> normal;
  std::generate_n(values, count, [&] { return normal(random); });
}

std::unique_ptr<PrnType> NewImage() {
  std::mt19937 random(1);
  auto image = std::make_unique<PrnType>(AllocZ, kRows, kColumns);
  for (int i = 0; i < kRows; ++i) FillNormal(image->zArray[i], kColumns, random);
  return image;
}

std::unique_ptr<PrnType> NewTrace() {
  std::mt19937 random(1);
  auto trace = std::make_unique<PrnType>(AllocY, kSamples);
  FillNormal(trace->yArray, kSamples, random);
  return trace;
}

// The median of one sample; the indices count inside the data.
float LiteralMedian(const float* const* rows, int i, int j, int halfX, int halfY, int above) {
  std::vector<float> span;
  for (int b = j - halfY; b <= j + halfY; ++b)
    for (int a = i - halfX; a <= i + halfX; ++a) span.push_back(rows[a][b]);
  std::sort(span.begin(), span.end() - 1);
  return span[(span.size() - 1) / 2 + static_cast<std::size_t>(above)];
}

void LiteralMedian3D(const PrnType& image, int w) {
  const int half = w / 2;
  for (int j = half; j < kColumns - half; ++j)
    benchmark::DoNotOptimize(LiteralMedian(image.zArray, kRows / 2, j, half, half, 1));
}

void LiteralMedian2D(const PrnType& trace, int w) {
  for (int j = 0; j < kColumns; ++j)
    benchmark::DoNotOptimize(LiteralMedian(&trace.yArray, 0, kSamples / 2 + j, 0, w / 2, 0));
}

// Smoothing by `at(centre, i)`, the value i samples from a centre.
template <class At>
float LiteralSmooth(int w, At at) {
  const int m = w / 2;
  const auto weight = [m](int i) { return static_cast<double>(3 * (3 * m * m + 3 * m - 1) - 15 * i * i); };
  double sum = weight(0) * at(0);
  double norm = weight(0);
  for (int i = 1; i <= m; ++i) {
    sum += weight(i) * (at(-i) + at(i));
    norm += 2 * weight(i);
  }
  return static_cast<float>(sum / norm);
}

void LiteralXSmooth(const PrnType& image, int w) {
  PrnType source(image);
  PrnType result(AllocZ, kRows - w + 1, kColumns);
  for (int j = 0; j < result.nY; ++j)
    for (int k = 0; k < result.nX; ++k)
      result.zArray[k][j] = LiteralSmooth(w, [&](int i) { return source.zArray[k + w / 2 + i][j]; });
  result.MinMax();
}

void LiteralYSmooth(const PrnType& image, int w) {
  PrnType source(image);
  PrnType result(AllocZ, kRows, kColumns - w + 1);
  for (int k = 0; k < result.nX; ++k)
    for (int j = 0; j < result.nY; ++j)
      result.zArray[k][j] = LiteralSmooth(w, [&](int i) { return source.zArray[k][j + w / 2 + i]; });
  result.MinMax();
}

struct Filter {
  std::string name;
  std::unique_ptr<PrnType> (*data)();
  PrnType& (PrnType::*fast)(int) const;
  void (*literal)(const PrnType& source, int w);
  std::initializer_list<int> widths;
};

const Filter kFilters[] = {
    {"Median3D", NewImage, &PrnType::Median3D, LiteralMedian3D, {3, 5, 9, 21}},
    {"Median2D", NewTrace, &PrnType::Median2D, LiteralMedian2D, {5, 51, 501}},
    {"XSmooth", NewImage, &PrnType::XSmooth, LiteralXSmooth, {5, 7, 9, 13, 17, 21}},
    {"YSmooth", NewImage, &PrnType::YSmooth, LiteralYSmooth, {5, 7, 9, 13, 17, 21}},
};

void Register(const std::string& name, const Filter& filter, void (*run)(const Filter&, const PrnType&, int)) {
  auto* made = benchmark::RegisterBenchmark(name.c_str(), [&filter, run](benchmark::State& state) {
    const auto source = filter.data();
    for (auto _ : state) run(filter, *source, static_cast<int>(state.range(0)));
  });
  for (const int w : filter.widths) made->Arg(w)->Unit(benchmark::kMillisecond);
}

void RegisterAll() {
  for (const Filter& filter : kFilters) {
    Register(filter.name, filter, [](const Filter& f, const PrnType& source, int w) {
      const std::unique_ptr<PrnType> result(&(source.*f.fast)(w));
      benchmark::DoNotOptimize(result.get());
    });
    Register(filter.name + "/literal", filter,
             [](const Filter& f, const PrnType& source, int w) { f.literal(source, w); });
  }
}

const bool kRegistered = (RegisterAll(), true);

}  // namespace
