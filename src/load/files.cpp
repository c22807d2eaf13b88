#include "load/files.h"

#include <dirent.h>
#ifdef _WIN32
#include <windows.h>
#endif

#include <algorithm>
#include <cerrno>
#include <memory>
#include <utility>
#include <vector>

#include "text/words.h"

namespace kem::load {
using namespace text;
namespace {

#ifdef _WIN32
constexpr bool kNamesTellCase = false;
using Folder = _WDIR;
constexpr auto kOpenFolder = _wopendir;
constexpr auto kReadFolder = _wreaddir;
constexpr auto kCloseFolder = _wclosedir;
#else
constexpr bool kNamesTellCase = true;
using Folder = DIR;
constexpr auto kOpenFolder = opendir;
constexpr auto kReadFolder = readdir;
constexpr auto kCloseFolder = closedir;
#endif

// An extension with each letter in the case of that of another.
std::string InCaseOf(std::string_view other, std::string text) {
  for (std::size_t k = 0; k < text.size() && k < other.size(); ++k)
    text[k] = IsUpper(other[k]) ? Upper(text[k]) : IsLower(other[k]) ? Lower(text[k]) : text[k];
  return text;
}

bool IsReadable(const std::string& name) {
  std::ifstream in;
  return OpenForReading(in, name);
}

struct CloseFolder {
  void operator()(Folder* folder) const { kCloseFolder(folder); }
};

// The names in a folder; none if it cannot be listed. The standard library's iterator would end the program when
// memory runs out.
std::vector<std::filesystem::path> NamesIn(const std::filesystem::path& path) {
  std::vector<std::filesystem::path> names;
  const std::unique_ptr<Folder, CloseFolder> folder(kOpenFolder(path.c_str()));
  while (const auto* entry = folder ? kReadFolder(folder.get()) : nullptr) names.emplace_back(entry->d_name);
  return names;
}

// A name in the folder of another that differs from it in case only, at best not in its base; the other itself
// when there is none, or no folder that can be listed.
std::string Listed(const std::string& name) {
  const auto slash = name.rfind('/');
  const std::string folder = slash == name.npos ? "" : name.substr(0, slash + 1);
  const std::string_view wanted = std::string_view(name).substr(folder.size());
  const std::string_view base = BaseOf(wanted);
  const auto rank = [base](const std::string& file) { return std::pair(!file.starts_with(base), file); };
  std::string found;
  for (const std::filesystem::path& listed : NamesIn(PathOf(folder.empty() ? "." : folder))) {
    const auto utf8 = listed.u8string();
    const std::string file(utf8.begin(), utf8.end());
    if (EqualButCase(file, wanted) && (found.empty() || rank(file) < rank(found))) found = file;
  }
  return found.empty() ? name : folder + found;
}

}  // namespace

std::filesystem::path PathOf(std::string_view name) {
#ifdef _WIN32
  for (const auto& [page, flags] : {std::pair(CP_UTF8, MB_ERR_INVALID_CHARS), {CP_ACP, 0}}) {
    std::wstring wide(name.size(), L'\0');
    const int size = static_cast<int>(name.size());
    const int length = MultiByteToWideChar(page, flags, name.data(), size, wide.data(), size);
    if (length > 0) return wide.substr(0, static_cast<std::size_t>(length));
  }
#endif
  return name;
}

bool OpenForReading(std::ifstream& in, const std::string& name) {
  std::error_code error;
  const auto status = std::filesystem::status(PathOf(name), error);
  if (std::filesystem::is_directory(status)) errno = EISDIR;
  if (std::filesystem::is_directory(status) || std::filesystem::is_other(status)) return false;
  in.clear();
  in.open(PathOf(name), std::ios::in | std::ios::binary);
  in.peek();
  const bool readable = in.is_open() && !in.bad();
  if (readable)
    errno = 0;
  else
    in.close();
  return readable;
}

std::string_view BaseOf(std::string_view name) { return name.substr(0, std::min(name.rfind('.'), name.size())); }

std::string PartnerOf(std::string_view name, std::string_view extension) {
  const std::string base(BaseOf(name));
  const std::string partner = base + std::string(extension);
  const std::string alike = base + InCaseOf(name.substr(base.size()), std::string(extension));
  for (const std::string& spelling : {partner, alike, Upper(partner)})
    if (IsReadable(spelling)) return spelling;
  return kNamesTellCase ? Listed(partner) : partner;
}

}  // namespace kem::load
