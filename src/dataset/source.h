// A measurement file on its way into a dataset: its name, its bytes, and the files that belong to it.
#pragma once

#include <any>
#include <bit>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <map>
#include <memory>
#include <span>
#include <string>
#include <string_view>

#include "kem/dataset.h"
#include "record/findings.h"

namespace kem::dataset {

// An error whose sentence begins with the name of a file.
[[noreturn]] void Fail(ErrorCode code, const std::filesystem::path& file, std::string_view problem);

// The name of a file as UTF-8.
std::string NameOf(const std::filesystem::path& file);

class Source {
 public:
  // Throws Error when the file cannot be opened, or is none.
  explicit Source(std::filesystem::path path);

  const std::filesystem::path& Path() const { return path_; }
  std::uint64_t Size() const { return size_; }

  // The first bytes, 4096 at most. Valid until more are asked for.
  std::string_view Head();
  // All bytes. Valid as long as the source.
  const std::string& Content();
  // The file from its first byte.
  std::ifstream& Stream();
  // Fills a buffer with bytes that are there.
  void Read(std::uint64_t at, std::span<std::byte> to);

  bool HasExtension(std::string_view extension) const;  // in any case
  // The file that differs in the extension only, whatever the case of its letters; that of this file's extension
  // is tried first. It is kept, as this one is; nothing when there is none.
  Source* Companion(std::string_view extension);
  // This file when it has the extension, else its companion.
  Source* WithExtension(std::string_view extension) {
    return HasExtension(extension) ? this : Companion(extension);
  }

  // What is made of the file when it is first asked for, and kept for its other items.
  template <class Made, class Make>
  const Made& Once(Make make) {
    const auto* made = std::any_cast<Made>(&made_);
    return made ? *made : made_.emplace<Made>(make());
  }
  // Where the item read last begins.
  record::Place place;

 private:
  // The first bytes of the file, at least so many.
  const std::string& Begin(std::uint64_t size);

  std::filesystem::path path_;
  std::ifstream in_;
  std::uint64_t size_ = 0;
  std::string content_;  // as far as it was asked for
  std::any made_;
  std::map<std::string, std::unique_ptr<Source>, std::less<>> companions_;
};

// Numbers that lie at equal distances: of `columns` numbers per value, `taken` are kept from `column` on.
struct Layout {
  std::uint64_t at = 0;
  std::endian order = std::endian::little;
  NumberType type = NumberType::F32;
  std::size_t columns = 1;
  std::size_t column = 0;
  std::size_t taken = 1;  // 2: complex
};

// How many values a file holds from `at` on.
std::uint64_t HeldValues(const Source& source, const Layout& layout);
// Reads values that are there.
Values ReadValues(Source& source, const Layout& layout, std::size_t count);

}  // namespace kem::dataset
