// Opening files as datasets, against what the system takes to hand over their bytes.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "kem/dataset.h"

namespace {

// Files that live as long as the program.
class Files {
 public:
  explicit Files(std::vector<std::pair<std::string, std::string>> files) {
    for (const auto& [name, bytes] : files) {
      paths_.push_back(std::filesystem::temp_directory_path() / ("kem-datasets-bench-" + name));
      std::ofstream(paths_.back(), std::ios::binary) << bytes;
    }
  }
  ~Files() {
    for (const auto& path : paths_) std::filesystem::remove(path);
  }
  Files(const Files&) = delete;
  Files& operator=(const Files&) = delete;
  const std::filesystem::path& First() const { return paths_.front(); }
  const std::filesystem::path& Last() const { return paths_.back(); }

 private:
  std::vector<std::filesystem::path> paths_;
};

std::string Noise(std::size_t bytes) {
  std::string noise(bytes, '\0');
  unsigned random = 1;
  for (char& c : noise) c = static_cast<char>((random = random * 1664525 + 1013904223) >> 26);
  return noise;
}

// A million points of 64 bits, most significant byte first.
const Files& Curve() {
  static const Files files(
      {{"a.DSC", "#DESC\nBSEQ BIG\nIKKF REAL\nIRFMT D\nXTYP IDX\nXPTS 1000000\nXMIN 0\nXWID 1\n#SPL\n"},
       {"a.DTA", Noise(8000000)}});
  return files;
}

// 1344 x 1024 values of 16 bits.
const Files& Image() {
  static const Files files({{"a.img", std::string("IM\2\0\x40\5\0\4\0\0\0\0\2\0", 14) + std::string(50, '\0') +
                                          "[]" + Noise(2 * 1344 * 1024)}});
  return files;
}

// 5 MB of differences of one to three digits and duplicates, 40 ordinates a line.
const Files& Squeezed() {
  static const Files files = [] {
    constexpr int kLines = 50000;
    constexpr const char* kSteps[] = {"J4", "j4", "K12", "k12", "%", "J", "j", "M7", "m7", "%T"};
    std::string text =
        "##TITLE=t\n##JCAMP-DX=5\n##DATA TYPE=IR\n##XFACTOR=1\n##YFACTOR=1\n##FIRSTX=0\n##LASTX=1999999\n"
        "##NPOINTS=2200000\n##XYDATA=(X++(Y..Y))\n";
    for (int line = 0; line < kLines; ++line) {
      text += std::to_string(line * 44) + "A00";  // repeats the ordinate before: the steps add up to nothing
      for (int k = 0; k < 40; ++k) text += kSteps[k % 10];
      text += '\n';
    }
    return Files({{"a.dx", text + "##END=\n"}});
  }();
  return files;
}

std::vector<unsigned char> Bytes(const std::filesystem::path& path) {
  std::vector<unsigned char> bytes(std::filesystem::file_size(path));
  std::FILE* in = std::fopen(path.string().c_str(), "rb");
  if (!in || std::fread(bytes.data(), 1, bytes.size(), in) != bytes.size()) throw std::logic_error("short file");
  std::fclose(in);
  return bytes;
}

void Opened(benchmark::State& state, const std::filesystem::path& path, const std::filesystem::path& bytes) {
  for (auto _ : state) {
    const kem::Dataset dataset = kem::Open(path);
    benchmark::DoNotOptimize(dataset.values.Bytes().data());
  }
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(std::filesystem::file_size(bytes)));
}

void CurveBytes(benchmark::State& state) {
  for (auto _ : state) {
    std::vector<unsigned char> bytes = Bytes(Curve().Last());
    for (std::size_t k = 0; k < bytes.size(); k += 8) {
      std::uint64_t value;
      std::memcpy(&value, &bytes[k], sizeof value);
      value = __builtin_bswap64(value);
      std::memcpy(&bytes[k], &value, sizeof value);
    }
    benchmark::DoNotOptimize(bytes.data());
  }
}

void ImageBytes(benchmark::State& state) {
  for (auto _ : state) {
    const auto bytes = Bytes(Image().First());
    benchmark::DoNotOptimize(bytes.data());
  }
}

void CurveOpened(benchmark::State& state) { Opened(state, Curve().First(), Curve().Last()); }
void ImageOpened(benchmark::State& state) { Opened(state, Image().First(), Image().First()); }
void SqueezedOpened(benchmark::State& state) { Opened(state, Squeezed().First(), Squeezed().First()); }

BENCHMARK(CurveBytes)->Unit(benchmark::kMicrosecond);
BENCHMARK(CurveOpened)->Unit(benchmark::kMicrosecond);
BENCHMARK(ImageBytes)->Unit(benchmark::kMicrosecond);
BENCHMARK(ImageOpened)->Unit(benchmark::kMicrosecond);
BENCHMARK(SqueezedOpened)->Unit(benchmark::kMillisecond);

}  // namespace
