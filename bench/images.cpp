// Reading an image of 16-bit values into a record, against its bytes read at once and converted in a plain loop.
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

// Pseudo-random values behind a header; the file lives as long as the program.
struct ImageFile {
  std::string path;
  std::size_t header;
  std::size_t values;

  ImageFile(const char* name, const std::string& head, std::size_t count)
      : path((std::filesystem::temp_directory_path() / name).string()), header(head.size()), values(count) {
    std::ofstream out(path, std::ios::binary);
    out << head;
    unsigned random = 1;
    for (std::size_t k = 0; k < 2 * values; ++k) {
      random = random * 1664525 + 1013904223;
      out.put(static_cast<char>(random >> 24));
    }
  }
  ~ImageFile() { std::filesystem::remove(path); }
  ImageFile(const ImageFile&) = delete;
  ImageFile& operator=(const ImageFile&) = delete;
};

// 640 x 480, sweep range 7.
const ImageFile& Hama() {
  static const ImageFile file("kem-images-bench.raw",
                              "HPK8TMAP" + std::string(11, '\0') + '\7' + std::string(236, '\0'),
                              std::size_t{640} * 480);
  return file;
}

// 1344 x 1024, values of 16 bits, a status text without settings.
const ImageFile& Hpdta() {
  static const ImageFile file("kem-images-bench.img",
                              std::string("IM\2\0\x40\5\0\4\0\0\0\0\2\0", 14) + std::string(50, '\0') + "[]",
                              std::size_t{1344} * 1024);
  return file;
}

// After a large block has been released, the allocator keeps what is released later. Without that, clearing
// fresh pages for every image would be most of what is measured.
void WarmAllocator() {
  char* block = new char[std::size_t{16} << 20];
  benchmark::DoNotOptimize(block);
  delete[] block;
}

template <bool bigEndian>
void ReadPlain(benchmark::State& state, const ImageFile& file) {
  WarmAllocator();
  for (auto _ : state) {
    std::vector<unsigned char> bytes(file.header + 2 * file.values);
    std::FILE* in = std::fopen(file.path.c_str(), "rb");
    if (!in || std::fread(bytes.data(), 1, bytes.size(), in) != bytes.size()) throw std::logic_error("short file");
    std::fclose(in);
    const std::unique_ptr<float[]> values(new float[file.values]);
    const unsigned char* at = bytes.data() + file.header;
    for (std::size_t k = 0; k < file.values; ++k, at += 2)
      values[k] = static_cast<float>(bigEndian ? at[0] << 8 | at[1] : at[1] << 8 | at[0]);
    benchmark::DoNotOptimize(values.get());
    benchmark::ClobberMemory();
  }
}

void ReadRecord(benchmark::State& state, const ImageFile& file, int (PrnType::*read)(std::ifstream&)) {
  WarmAllocator();
  for (auto _ : state) {
    std::ifstream in(file.path, std::ios::binary);
    PrnType record;
    if ((record.*read)(in) != 1) throw std::logic_error("not read");
    benchmark::DoNotOptimize(record.zMax);
  }
}

void HamaPlain(benchmark::State& state) { ReadPlain<true>(state, Hama()); }
void HamaRecord(benchmark::State& state) { ReadRecord(state, Hama(), &PrnType::ReadHama); }
void HpdtaPlain(benchmark::State& state) { ReadPlain<false>(state, Hpdta()); }
void HpdtaRecord(benchmark::State& state) { ReadRecord(state, Hpdta(), &PrnType::ReadHPDTA); }

BENCHMARK(HamaPlain)->Unit(benchmark::kMicrosecond);
BENCHMARK(HamaRecord)->Unit(benchmark::kMicrosecond);
BENCHMARK(HpdtaPlain)->Unit(benchmark::kMicrosecond);
BENCHMARK(HpdtaRecord)->Unit(benchmark::kMicrosecond);

}  // namespace

// CPU time in us, GCC 12, x86-64 at 2.6 GHz:
//
//             raw 640 x 480   HPDTA 1344 x 1024
//   plain                38                 151
//   record              108                 383
