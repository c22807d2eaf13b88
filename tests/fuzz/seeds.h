// Inputs of the fuzz targets, made of the files that tests write.
#pragma once

#include "fuzz/input.h"

namespace kem::fuzz {

// Stores each file of a folder as an input, together with those that belong to it.
inline void SaveSeeds(const std::filesystem::path& folder, const std::filesystem::path& to) {
  namespace fs = std::filesystem;
  constexpr std::uintmax_t kLongest = 4096;
  const auto bytesOf = [](const fs::path& file) {
    std::ifstream in(file, std::ios::binary);
    return std::string{std::istreambuf_iterator<char>(in), {}};
  };
  for (const auto& entry : fs::directory_iterator(folder)) {
    if (!entry.is_regular_file() || entry.file_size() > kLongest) continue;
    std::size_t row = std::size(kNames) - 1;  // plain text, told by content
    for (std::size_t k = 0; k < std::size(kNames); ++k)
      if (fs::path(kNames[k][0]).extension() == entry.path().extension()) row = k;
    std::string input(1, static_cast<char>(row));
    for (std::size_t k = 0; k < 3 && !kNames[row][k].empty(); ++k) {
      const fs::path file =
          k == 0 ? entry.path() : fs::path(entry.path()).replace_extension(fs::path(kNames[row][k]).extension());
      const std::string bytes = fs::is_regular_file(file) ? bytesOf(file).substr(0, kLongest) : "";
      if (k < 2 && !kNames[row][k + 1].empty()) {
        input += static_cast<char>(bytes.size() & 0xFF);
        input += static_cast<char>(bytes.size() >> 8);
      }
      input += bytes;
    }
    std::ofstream(to / std::to_string(std::hash<std::string>{}(input)), std::ios::binary) << input;
  }
}

}  // namespace kem::fuzz
