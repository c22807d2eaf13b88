#include "pairs.h"

#include <algorithm>
#include <filesystem>
#include <map>
#include <span>
#include <system_error>

#include "system.h"
#include "text.h"

namespace kem::tool {
namespace {

namespace fs = std::filesystem;

struct Pair {
  std::string_view format;
  std::string_view parameters;  // extensions in small letters
  std::string_view values;
  std::span<const std::string_view> axes;      // files of coordinates that may lie beside them
  std::span<const std::string_view> openedBy;  // spellings of a value file by which the library opens the pair
};

constexpr std::string_view kAxes[] = {".xgf", ".ygf", ".zgf"};
constexpr std::string_view kDta[] = {".DTA"};
constexpr std::string_view kSpc[] = {".spc", ".SPC"};
constexpr Pair kPairs[] = {{"Bruker BES3T", ".dsc", ".dta", kAxes, kDta},
                           {"Bruker ESR spc/par", ".par", ".spc", {}, kSpc}};

bool Contains(std::span<const std::string_view> texts, std::string_view text) {
  return std::find(texts.begin(), texts.end(), text) != texts.end();
}

// A file as a member of a pair.
struct Member {
  const Pair* pair;  // null for a file of its own
  fs::path path;
  std::string extension;  // in small letters

  explicit Member(const std::string& file) : path(PathOf(file)), extension(LowerCase(path.extension().string())) {
    const auto* found = std::find_if(std::begin(kPairs), std::end(kPairs), [this](const Pair& p) {
      return extension == p.parameters || extension == p.values || Contains(p.axes, extension);
    });
    pair = found == std::end(kPairs) ? nullptr : found;
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
  return std::any_of(std::begin(kPairs), std::end(kPairs), [format](const Pair& p) { return p.format == format; });
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
      Contains(member.pair->openedBy, member.path.extension().string()))
    return file;
  const Partner partner = PartnerOf(file);
  return partner.exists ? partner.file : file;
}

}  // namespace kem::tool
