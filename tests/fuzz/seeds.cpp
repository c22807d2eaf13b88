// Writes what a fuzzer begins with: "fuzz_seeds TO FROM..." makes its bytes of all small files in folders.
#include <filesystem>
#include <fstream>

#include "fuzz/files.h"

int main(int count, char** arguments) {
  namespace fs = std::filesystem;
  constexpr std::uintmax_t kMost = 1 << 14;
  std::size_t made = 0;
  for (int k = 2; k < count; ++k)
    for (const auto& entry : fs::recursive_directory_iterator(arguments[k])) {
      if (!entry.is_regular_file() || entry.file_size() > kMost) continue;
      const std::string bytes = kem::fuzz::BytesOf(entry.path(), made);
      std::ofstream(fs::path(arguments[1]) / std::to_string(made++), std::ios::binary) << bytes;
    }
  return made > 0 ? 0 : 1;
}
