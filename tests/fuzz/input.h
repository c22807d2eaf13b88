// What the fuzz targets make of their input: files of one measurement under names that readers look for.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <random>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kem::fuzz {

// The first byte of an input chooses a row; each file but the last has its length, two bytes, in front.
inline constexpr std::string_view kNames[][3] = {{"a.DSC", "a.DTA", "a.XGF"},
                                                 {"a.DTA", "a.DSC", "a.YGF"},
                                                 {"a.par", "a.spc", ""},
                                                 {"a.spc", "a.par", ""},
                                                 {"a.PAR", "a.SPC", ""},
                                                 {"a.dhd", "a.dat", ""},
                                                 {"a.p3d", "", ""},
                                                 {"a.b3d", "", ""},
                                                 {"a.p2d", "", ""},
                                                 {"a.b2d", "", ""},
                                                 {"a.cvt", "", ""},
                                                 {"a.DSW", "", ""},
                                                 {"a.ms0", "", ""},
                                                 {"a.m3d", "", ""},
                                                 {"a.img", "", ""},
                                                 {"a.prf", "", ""},
                                                 {"a.crv", "", ""},
                                                 {"a.dx", "", ""},
                                                 {"a.txt", "", ""}};

// A folder of its own in memory, as long as the program runs.
class Folder {
 public:
  Folder() {
    namespace fs = std::filesystem;
    const fs::path memory = "/dev/shm";
    path_ = (fs::exists(memory) ? memory : fs::temp_directory_path()) /
            ("kem-fuzz-" + std::to_string(std::random_device{}()));
    fs::create_directories(path_);
  }
  ~Folder() { std::filesystem::remove_all(path_); }
  Folder(const Folder&) = delete;
  Folder& operator=(const Folder&) = delete;

  std::filesystem::path Path(std::string_view name) const { return path_ / name; }

  // Writes the files of an input and returns the path of the first.
  std::filesystem::path Write(std::span<const std::uint8_t> input) const {
    const auto& names = kNames[(input.empty() ? 0 : input[0]) % std::size(kNames)];
    input = input.subspan(input.empty() ? 0 : 1);
    for (std::size_t k = 0; k < std::size(names) && !names[k].empty(); ++k) {
      const bool last = k + 1 == std::size(names) || names[k + 1].empty();
      std::size_t size = input.size();
      if (!last && size >= 2) {
        const std::size_t announced = input[0] | static_cast<std::size_t>(input[1]) << 8;
        input = input.subspan(2);
        size = std::min(announced, input.size());
      }
      std::ofstream out(Path(names[k]), std::ios::binary);
      out.write(reinterpret_cast<const char*>(input.data()), static_cast<std::streamsize>(size));
      input = input.subspan(size);
    }
    return Path(names[0]);
  }

 private:
  std::filesystem::path path_;
};

}  // namespace kem::fuzz
