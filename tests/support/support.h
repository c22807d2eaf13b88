// What the tests share: bytes of files, loading them, comparing floats by their bits, fixed random numbers.
#pragma once

#include <doctest/doctest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "kem.h"
#include "portable.h"

namespace kem::test {

// Builds the bytes of a file. It encodes numbers by itself, so that a mistake of the library's decoder shows.
class Bytes {
 public:
  explicit Bytes(std::endian order = std::endian::little) : order_(order) {}

  Bytes& Text(std::string_view text) {
    bytes_ += text;
    return *this;
  }

  template <class Number>
  Bytes& Put(Number number) {
    for (std::size_t k = 0; k < sizeof number; ++k) {
      const std::size_t at = order_ == std::endian::native ? k : sizeof number - 1 - k;
      bytes_ += reinterpret_cast<const char*>(&number)[at];
    }
    return *this;
  }

  // Fills up to an offset of the file.
  Bytes& PadTo(std::size_t size, char fill = '\0') {
    if (bytes_.size() < size) bytes_.resize(size, fill);
    return *this;
  }

  operator std::string() const { return bytes_; }

 private:
  std::endian order_;
  std::string bytes_;
};

// A name in UTF-8 as the system takes it.
inline std::filesystem::path PathOf(const std::string& name) { return std::u8string(name.begin(), name.end()); }

// An empty folder that goes when the test ends. If KEM_SEEDS names a folder, a copy of what it holds then stays
// there.
class TempFolder {
 public:
  TempFolder();
  ~TempFolder();
  TempFolder(const TempFolder&) = delete;
  TempFolder& operator=(const TempFolder&) = delete;

  std::string Path(const std::string& name) const { return (path_ / PathOf(name)).string(); }
  // Writes a file and returns its path.
  std::string Write(const std::string& name, const std::string& bytes) const;

 private:
  std::filesystem::path path_;
};

std::string ReadBytes(const std::string& path);
// The same of a text file, whose lines end with CR LF under Windows.
std::string ReadLines(const std::string& path);

// The lengths at which a file is cut for tests of short input: all up to `dense`, then every 97th, then those
// near the end.
std::vector<std::size_t> Prefixes(std::size_t size, std::size_t dense);

// Loads a file and lists its items again and again, each time with reads failing from another one on, and checks
// that no such load succeeds. Does nothing where reads cannot be made to fail, and with libc++,
// whose streams take a failing read for the end of the file.
void LoadWithReadErrors(const std::string& path);

// What a function prints to standard output, or to standard error.
std::string Printed(const std::function<void()>& run, std::FILE* stream = stdout);

// Folder of real instrument files, from the environment; empty when there is none.
std::string SampleFolder();

// Marks a case that needs the real files: says that it is skipped, and returns false, when there are none.
bool HaveSamples();

// Checks a text against an approved one, a file of tests/; with KEM_APPROVE in the environment it takes its place.
void CheckApproved(const std::string& file, const std::string& text);

// A fixed stream of random numbers; print its seed with CAPTURE when a case fails.
using Rng = std::mt19937;
inline constexpr unsigned kSeed = 20240917;

// Floats are equal when their bits are, NaN being one value.
inline bool SameBits(float a, float b) {
  if (std::isnan(a) && std::isnan(b)) return true;
  return portable::bit_cast<std::uint32_t>(a) == portable::bit_cast<std::uint32_t>(b);
}

double Sum(std::span<const float> values);

}  // namespace kem::test

#define CHECK_BITS(a, b)                                                                                \
  do {                                                                                                  \
    const float checkedA = (a);                                                                         \
    const float checkedB = (b);                                                                         \
    CHECK_MESSAGE(kem::test::SameBits(checkedA, checkedB), checkedA, " is not bit for bit ", checkedB); \
  } while (false)
