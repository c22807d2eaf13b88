// What the bytes of a fuzzer stand for: a file, what else lies beside it, and what is done with it.
#pragma once

#include <cstdint>
#include <filesystem>
#include <span>
#include <string>

namespace kem::fuzz {

// A byte that chooses the extension, one that chooses what is done with the file, its content and, each behind a
// separator, those of the files that may belong to it.
class Files {
 public:
  explicit Files(std::span<const std::uint8_t> bytes);

  // The file lies there, with the others beside it, until the next ones are made.
  const std::string& Path() const { return path_; }
  std::size_t Choice() const { return choice_; }

 private:
  std::string path_;
  std::size_t choice_ = 0;
};

// The bytes that stand for a file, and for what lies beside it.
std::string BytesOf(const std::filesystem::path& file, std::size_t choice);

}  // namespace kem::fuzz
