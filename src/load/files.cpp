#include "load/files.h"

#ifdef _WIN32
#include <windows.h>
#endif

#include <algorithm>
#include <cerrno>
#include <utility>

#include "text/words.h"

namespace kem::load {
using namespace text;
namespace {

#ifdef _WIN32
constexpr bool kNamesTellCase = false;
#else
constexpr bool kNamesTellCase = true;
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

// A name in the folder of another that differs from it in case only, at best not in its base; the other itself
// when there is none, or no folder that can be listed.
std::string Listed(const std::string& name) try {
  namespace fs = std::filesystem;
  const auto slash = name.rfind('/');
  const std::string folder = slash == name.npos ? "" : name.substr(0, slash + 1);
  const std::string_view wanted = std::string_view(name).substr(folder.size());
  const std::string_view base = BaseOf(wanted);
  const auto rank = [base](const std::string& file) { return std::pair(!file.starts_with(base), file); };
  std::string found;
  for (const fs::directory_entry& entry : fs::directory_iterator(PathOf(folder.empty() ? "." : folder))) {
    const std::string file = entry.path().filename().string();
    if (EqualButCase(file, wanted) && (found.empty() || rank(file) < rank(found))) found = file;
  }
  return found.empty() ? name : folder + found;
} catch (const std::filesystem::filesystem_error&) {
  return name;
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
