#include "source.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <system_error>

#include "system.h"
#include "text.h"

namespace kem::tool {
namespace {

namespace fs = std::filesystem;

// ------------------------------------------------------------ standard input

std::unique_ptr<TemporaryFile> standardInput;

Problem Keep(std::FILE* input, const std::string& name) {
  SetBinary(input);
  std::ofstream out(PathOf(name), std::ios::binary);
  std::vector<char> block(1 << 16);
  errno = 0;
  while (const std::size_t count = std::fread(block.data(), 1, block.size(), input))
    out.write(block.data(), static_cast<std::streamsize>(count));
  out.close();
  return std::ferror(input) || !out ? "cannot be read and kept: " + std::generic_category().message(errno) : "";
}

Problem KeepStandardInput() {
  if (standardInput) return {};
  auto file = std::make_unique<TemporaryFile>(TemporaryFolder());
  Problem problem = file->WhyNot().empty() ? Keep(stdin, file->Name()) : file->WhyNot();
  if (problem.empty()) standardInput = std::move(file);
  return problem;
}

// ------------------------------------------------------------ long names

// Where there are no links a copy will do.
bool MakeLink(const fs::path& to, const fs::path& link) {
  std::error_code error;
  fs::create_symlink(to, link, error);
  if (error) fs::create_hard_link(to, link, error);
  if (error) fs::copy_file(to, link, error);
  return !error;
}

// The files beside one that have its name but for the extension, those that spell it in the same case first.
std::vector<fs::path> NeighboursOf(const fs::path& file) try {
  const std::string stem = file.stem().string();
  std::vector<fs::path> found;
  for (const fs::directory_entry& entry : fs::directory_iterator(file.parent_path())) {
    const std::string other = entry.path().stem().string();
    if (LowerCase(other) == LowerCase(stem))
      found.insert(other == stem ? found.begin() : found.end(), entry.path());
  }
  return found;
} catch (const fs::filesystem_error&) {
  return {};
}

Problem NoOrdinaryFile(const std::string& name) {
  std::error_code error;
  switch (fs::status(PathOf(name), error).type()) {
    case fs::file_type::fifo:
    case fs::file_type::socket:
      return "is a pipe; kem reads files, and standard input as -";
    case fs::file_type::character:
    case fs::file_type::block:
      return "is a device";
    default:
      return {};
  }
}

}  // namespace

Source::Source(const std::string& typed, Names names) : typed_(typed), name_(typed) {
  if (typed == kStandard) {
    problem_ = KeepStandardInput();
    if (standardInput) name_ = standardInput->Name();
    return;
  }
  problem_ = NoOrdinaryFile(typed);
  if (problem_.empty() && names == Names::Short && typed.size() >= kTextSize) Link();
}

void Source::Link() {
  constexpr std::size_t kMostLinks = 16;
  std::error_code error;
  const fs::path file = fs::absolute(PathOf(typed_), error);
  folder_ = NewTemporaryFolder(problem_);
  if (!folder_) return;
  const auto link = [this](const fs::path& to) {
    const fs::path path = folder_.get() / fs::path("scan").replace_extension(to.extension());
    if (links_.size() < kMostLinks && MakeLink(to, path)) links_.push_back(RemovedLater(path));
    return path.string();
  };
  name_ = link(file);
  for (const fs::path& neighbour : NeighboursOf(file)) link(neighbour);
  if (name_.size() >= kTextSize) problem_ = "its path is long, and so is that of the folder for temporary files";
}

// The library puts the number of an item in front of the first dot of a name.
void Source::Restore(PrnType& record) const {
  if (name_ == typed_) return;
  const std::string numbered = record.fileName;
  std::string name = typed_;
  if (numbered.size() > name_.size())
    name.insert(std::min(name.find('.'), name.size()),
                numbered.substr(std::min(name_.find('.'), name_.size()), numbered.size() - name_.size()));
  if (name.size() >= kTextSize) {
    name.erase(0, name.size() - (kTextSize - 1));
    name.erase(0, name.find('/') + 1);
    while (!name.empty() && (name.front() & 0xC0) == 0x80) name.erase(0, 1);  // within a character
  }
  std::snprintf(record.fileName, sizeof record.fileName, "%s", name.c_str());
}

}  // namespace kem::tool
