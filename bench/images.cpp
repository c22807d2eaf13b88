// Reading an image into a record against its bytes read at once and converted in a plain loop.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "kem.h"

namespace {

// A file of pseudo-random values behind a header; it lives as long as the program.
class ImageFile {
 public:
  ImageFile(const char* name, std::string header, std::size_t values)
      : path_((std::filesystem::temp_directory_path() / name).string()), values(values), headerSize(header.size()) {
    std::ofstream out(path_, std::ios::binary);
    out << header;
    unsigned random = 1;
    for (std::size_t k = 0; k < 2 * values; ++k) {
      random = random * 1664525 + 1013904223;
      out.put(static_cast<char>(random >> 24));
    }
  }
  ~ImageFile() { std::filesystem::remove(path_); }
  ImageFile(const ImageFile&) = delete;
  ImageFile& operator=(const ImageFile&) = delete;

  const char* Path() const { return path_.c_str(); }

 private:
  std::string path_;

 public:
  const std::size_t values;
  const std::size_t headerSize;
};

const ImageFile& Hama() {
  static const ImageFile file("kem-images-bench.raw",
                              "HPK8TMAP" + std::string(11, '\0') + '\7' + std::string(236, '\0'), 640 * 480);
  return file;
}

const ImageFile& Hpdta() {
  std::string header(64, '\0');
  header.replace(0, 14, std::string("IM\2\0\x40\x05\0\4\0\0\0\0\2\0", 14));
  static const ImageFile file("kem-images-bench.img", header + "[]", 1344 * 1024);
  return file;
}

template <bool bigEndian>
void Plain(benchmark::State& state, const ImageFile& file) {
  for (auto _ : state) {
    std::vector<unsigned char> bytes(file.headerSize + 2 * file.values);
    std::FILE* in = std::fopen(file.Path(), "rb");
    if (!in || std::fread(bytes.data(), 1, bytes.size(), in) != bytes.size()) throw std::logic_error("short file");
    std::fclose(in);
    const std::unique_ptr<float[]> values(new float[file.values]);
    const unsigned char* at = bytes.data() + file.headerSize;
    for (std::size_t k = 0; k < file.values; ++k, at += 2)
      values[k] = static_cast<float>(bigEndian ? at[0] << 8 | at[1] : at[1] << 8 | at[0]);
    benchmark::DoNotOptimize(values.get());
    benchmark::ClobberMemory();
  }
}

template <int (PrnType::*Read)(std::ifstream&)>
void Record(benchmark::State& state, const ImageFile& file) {
  for (auto _ : state) {
    std::ifstream in(file.Path(), std::ios::binary);
    PrnType record;
    if ((record.*Read)(in) != 1) throw std::logic_error("not read");
    benchmark::DoNotOptimize(record.zMax);
  }
}

BENCHMARK_CAPTURE(Plain<true>, Hama, Hama())->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(Record<&PrnType::ReadHama>, Hama, Hama())->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(Plain<false>, HPDTA, Hpdta())->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(Record<&PrnType::ReadHPDTA>, HPDTA, Hpdta())->Unit(benchmark::kMicrosecond);

}  // namespace
