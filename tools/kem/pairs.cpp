#include "pairs.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <system_error>

#include "kem/dataset.h"
#include "system.h"
#include "text.h"

namespace kem::tool {
namespace {

namespace fs = std::filesystem;

// Extensions in small letters.
struct Pair {
  std::string format;
  std::string parameters;
  std::string values;
  std::vector<std::string> axes;  // files of coordinates that may lie beside them
};

const std::vector<Pair>& Pairs() {
  static const std::vector<Pair> pairs = [] {
    std::vector<Pair> made;
    for (const FormatInfo& format : kem::Formats()) {
      if (!format.pair) continue;
      made.push_back({format.name, LowerCase(format.extensions[0]), LowerCase(format.extensions[1]), {}});
      for (const std::string& axis : format.companions) made.back().axes.push_back(LowerCase(axis));
    }
    return made;
  }();
  return pairs;
}

// Spellings of value files by which the classic reading opens a pair.
constexpr std::string_view kOpenedBy[] = {".DTA", ".spc", ".SPC"};

template <class Texts>
bool Contains(const Texts& texts, std::string_view text) {
  return std::find(std::begin(texts), std::end(texts), text) != std::end(texts);
}

// A file as a member of a pair.
struct Member {
  const Pair* pair;  // null for a file of its own
  fs::path path;
  std::string extension;  // in small letters

  explicit Member(const std::string& file) : path(PathOf(file)), extension(LowerCase(path.extension().string())) {
    const auto found = std::find_if(Pairs().begin(), Pairs().end(), [this](const Pair& p) {
      return extension == p.parameters || extension == p.values || Contains(p.axes, extension);
    });
    pair = found == Pairs().end() ? nullptr : &*found;
  }

  bool IsAxis() const { return pair && Contains(pair->axes, extension); }
  std::string Name() const { return fs::path(path).replace_extension(pair->parameters).string(); }
};

// A file of that name spelled in any way; empty if there is none.
fs::path InAnyCase(const fs::path& wanted) try {
  const std::string name = LowerCase(wanted.filename().string());
  for (const auto& entry : fs::directory_iterator(wanted.has_parent_path() ? wanted.parent_path() : "."))
    if (LowerCase(entry.path().filename().string()) == name)
      return fs::path(wanted).replace_filename(entry.path().filename());
  return {};
} catch (const fs::filesystem_error&) {
  return {};
}

}  // namespace

std::vector<std::string> EachPairOnce(const std::vector<std::string>& files) {
  std::map<std::string, std::string> taken;  // which member of a pair stands for it
  for (const std::string& file : files)
    if (const Member member(file); member.pair && !member.IsAxis()) taken.emplace(member.Name(), member.extension);
  std::vector<std::string> once;
  for (const std::string& file : files) {
    const Member member(file);
    const auto found = member.pair ? taken.find(member.Name()) : taken.end();
    if (found == taken.end() || found->second == member.extension) once.push_back(file);
  }
  return once;
}

bool IsPair(std::string_view format) {
  return std::any_of(Pairs().begin(), Pairs().end(), [format](const Pair& p) { return p.format == format; });
}

Partner PartnerOf(const std::string& file) {
  const Member member(file);
  if (!member.pair || member.IsAxis()) return {};
  const bool isValues = member.extension == member.pair->values;
  const std::string other(isValues ? member.pair->parameters : member.pair->values);
  const bool small = member.path.extension().string() == member.extension;
  const fs::path wanted = PathOf(file).replace_extension(small ? other : UpperCase(other));
  std::error_code error;
  const fs::path found = fs::exists(wanted, error) ? wanted : InAnyCase(wanted);
  return {found.empty() ? wanted.string() : found.string(), !found.empty(), isValues};
}

std::string NameToOpen(const std::string& file) {
  const Member member(file);
  if (!member.pair || member.extension != member.pair->values ||
      Contains(kOpenedBy, member.path.extension().string()))
    return file;
  const Partner partner = PartnerOf(file);
  return partner.exists ? partner.file : file;
}

}  // namespace kem::tool
