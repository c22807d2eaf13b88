#include "files.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <span>
#include <system_error>

#include "input.h"
#include "pairs.h"
#include "source.h"
#include "system.h"

namespace kem::tool {
namespace {

namespace fs = std::filesystem;

constexpr std::string_view kAnyDepth = "**";

bool HasWildcard(std::string_view text) { return text.find_first_of("*?[") != text.npos; }
bool IsHidden(const fs::path& path) { return path.filename().string().starts_with('.'); }

bool IsFolder(const fs::path& path) {
  std::error_code error;
  return fs::is_directory(path, error);
}

// What lies in a folder, in alphabetical order; nothing where it cannot be listed.
std::vector<fs::path> EntriesOf(const fs::path& folder) try {
  std::vector<fs::path> entries;
  for (const auto& entry : fs::directory_iterator(folder.empty() ? "." : folder))
    entries.push_back(folder / entry.path().filename());
  std::sort(entries.begin(), entries.end());
  return entries;
} catch (const fs::filesystem_error&) {
  return {};
}

// Where the character of UTF-8 that begins a text ends.
std::size_t Character(std::string_view text) {
  std::size_t length = 1;
  while (length < text.size() && (text[length] & 0xC0) == 0x80) ++length;
  return length;
}

// Takes the pattern of one character, "?", "[a-z]" or itself, and the character that matches it.
bool TakeCharacter(std::string_view& pattern, std::string_view& name) {
  if (pattern.empty() || name.empty()) return false;
  const auto close = pattern.front() == '[' ? pattern.find(']', 2) : pattern.npos;
  if (close == pattern.npos) {
    const bool any = pattern.front() == '?';
    if (!any && pattern.front() != name.front()) return false;
    pattern.remove_prefix(1);
    name.remove_prefix(any ? Character(name) : 1);
    return true;
  }
  std::string_view set = pattern.substr(1, close - 1);
  const bool others = set.front() == '!' || set.front() == '^';
  bool holds = false;
  for (set.remove_prefix(others ? 1 : 0); !set.empty();) {
    const bool range = set.size() > 2 && set[1] == '-';
    holds |= set.front() <= name.front() && name.front() <= set[range ? 2 : 0];
    set.remove_prefix(range ? 3 : 1);
  }
  pattern.remove_prefix(close + 1);
  name.remove_prefix(1);
  return holds != others;
}

// The paths below a folder that match the parts of a pattern.
void Match(const fs::path& folder, std::span<const std::string> parts, std::vector<fs::path>& found) {
  const std::string& part = parts.front();
  const auto rest = parts.subspan(1);
  const auto take = [&](const fs::path& path) {
    if (rest.empty())
      found.push_back(path);
    else if (IsFolder(path))
      Match(path, rest, found);
  };
  std::error_code error;
  if (!HasWildcard(part)) {
    if (fs::exists(folder / PathOf(part), error)) take(folder / PathOf(part));
    return;
  }
  const bool anyDepth = part == kAnyDepth && !rest.empty();
  if (anyDepth) Match(folder, rest, found);
  for (const fs::path& entry : EntriesOf(folder)) {
    if (IsHidden(entry) && !part.starts_with('.')) continue;
    if (anyDepth && IsFolder(entry) && !fs::is_symlink(entry, error))
      Match(entry, parts, found);
    else if (!anyDepth && Matches(part, entry.filename().string()))
      take(entry);
  }
}

class Lister {
 public:
  explicit Lister(const FileList& list) : recursive_(list.recursive) {
    for (const std::string& name : list.names) {
      std::error_code error;
      const fs::path path = PathOf(name);
      if (IsPattern(name))
        TakePattern(name);
      else if (fs::is_directory(path, error))
        TakeFolder(path, path);
      else
        files_.push_back({name, false, path.parent_path().string()});
    }
  }

  Listing Result() && {
    std::vector<std::string> names;
    for (const File& file : files_) names.push_back(file.name);
    const auto once = EachPairOnce(names);
    Listing listing{{}, names.size() - once.size(), std::move(empty_)};
    auto next = once.begin();
    for (File& file : files_)
      if (next != once.end() && file.name == *next) listing.files.push_back(std::move(file)), ++next;
    return listing;
  }

 private:
  void TakePattern(const std::string& name) {
    const fs::path pattern = PathOf(name);
    std::vector<std::string> parts;
    fs::path folder;  // whose name has no wildcard
    for (const fs::path& part : pattern)
      if (parts.empty() && !HasWildcard(part.string()))
        folder /= part;
      else
        parts.push_back(part.string());
    std::vector<fs::path> found;
    Match(folder, parts, found);
    if (found.empty()) files_.push_back({name});
    for (const fs::path& path : found)
      if (IsFolder(path))
        TakeFolder(path, folder);
      else
        files_.push_back({path.generic_string(), false, folder.string()});
  }

  // Links to folders are left alone, which could lead round in a circle.
  void TakeFolder(const fs::path& folder, const fs::path& base) {
    const auto entries = EntriesOf(folder);
    if (entries.empty() && folder == base) empty_.push_back(folder.string());
    std::error_code error;
    for (const fs::path& entry : entries) {
      if (IsHidden(entry)) continue;
      if (fs::is_regular_file(entry, error)) files_.push_back({entry.generic_string(), true, base.string()});
      if (recursive_ && IsFolder(entry) && !fs::is_symlink(entry, error)) TakeFolder(entry, base);
    }
  }

  bool recursive_;
  std::vector<File> files_;
  std::vector<std::string> empty_;
};

}  // namespace

bool Matches(std::string_view pattern, std::string_view name) {
  std::string_view star;  // the pattern behind the last one
  std::string_view from;  // what it has not taken yet
  while (!name.empty()) {
    if (pattern.starts_with('*')) {
      pattern.remove_prefix(1);
      star = pattern;
      from = name;
      if (star.empty()) return true;
    } else if (!TakeCharacter(pattern, name)) {
      if (star.empty()) return false;
      pattern = star;
      from.remove_prefix(1);
      name = from;
    }
  }
  return pattern.find_first_not_of('*') == pattern.npos;
}

bool IsPattern(const std::string& name) {
  std::error_code error;
  return HasWildcard(name) && !fs::exists(PathOf(name), error);
}

bool FileList::IsOne() const {
  return names.size() == 1 && !IsPattern(names.front()) && !IsFolder(PathOf(names.front()));
}

Listing ListOf(const FileList& files) { return Lister(files).Result(); }

void AddFiles(CLI::App& app, FileList& files) {
  app.add_option("FILE", files.names,
                 "Files of any format that kem knows, patterns of them, and folders; - is standard input")
      ->type_name("")
      ->required();
  app.add_flag("-r,--recursive", files.recursive, "Go through the folders in folders, too");
  AddReading(app);
}

}  // namespace kem::tool
