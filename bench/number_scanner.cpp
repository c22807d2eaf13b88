// Reading a file of one million XY pairs: NumberScanner against a stream.
#include <benchmark/benchmark.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>

#include "formats/output_file.h"
#include "text/number_scanner.h"
#include "text/number_text.h"

namespace {
constexpr int kPairs = 1'000'000;

// The file lives as long as the program.
class PairsFile {
 public:
  PairsFile() {
    kem::formats::OutputFile out(path_.c_str(), {});
    for (int k = 0; k < kPairs; ++k) {
      const float x = 400.0f + 0.05f * static_cast<float>(k);
      out << x << "   " << 1e3f * std::sin(1e-3f * x) + 0.37f * static_cast<float>(k % 13) << '\n';
    }
  }
  ~PairsFile() { std::filesystem::remove(path_); }
  PairsFile(const PairsFile&) = delete;
  PairsFile& operator=(const PairsFile&) = delete;

  std::ifstream Open() const { return std::ifstream(path_, std::ios::binary); }

 private:
  std::string path_ = (std::filesystem::temp_directory_path() / "kem-number-scanner-bench.txt").string();
};

const PairsFile& File() {
  static const PairsFile file;
  return file;
}

void Check(int pairs) {
  if (pairs != kPairs) throw std::logic_error("not all pairs were read");
}

void Stream(benchmark::State& state) {
  while (state.KeepRunning()) {
    auto in = File().Open();
    int pairs = 0;
    for (float x = 0, y = 0; in >> x >> y; ++pairs) benchmark::DoNotOptimize(x + y);
    Check(pairs);
  }
  state.SetItemsProcessed(state.iterations() * kPairs);
}

void Scanner(benchmark::State& state) {
  while (state.KeepRunning()) {
    auto in = File().Open();
    kem::text::NumberScanner scan(in);
    int pairs = 0;
    for (float x = 0, y = 0;; ++pairs) {
      scan.Next(x);
      scan.Next(y);
      if (!scan.Good()) break;
      benchmark::DoNotOptimize(x + y);
    }
    Check(pairs);
  }
  state.SetItemsProcessed(state.iterations() * kPairs);
}

BENCHMARK(Stream)->Unit(benchmark::kMillisecond);
BENCHMARK(Scanner)->Unit(benchmark::kMillisecond);

}  // namespace

// CPU time in ms for a million pairs, GCC 12, x86-64 at 2.6 GHz:   stream 204   scanner 26
