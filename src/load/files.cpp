#include "load/files.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace kem::load {
namespace {

#ifdef _WIN32
constexpr bool kNamesTellCase = false;
#else
constexpr bool kNamesTellCase = true;
#endif

char Lower(char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; }

bool EqualButCase(std::string_view a, std::string_view b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](char x, char y) { return Lower(x) == Lower(y); });
}

}  // namespace

bool IsReadable(const std::string& name) { return std::ifstream(name, std::ios::binary).is_open(); }

std::string AnyCase(const std::string& name) {
  if (!kNamesTellCase || IsReadable(name)) return name;
  const auto slash = name.rfind('/');
  const std::string folder = slash == name.npos ? "" : name.substr(0, slash + 1);
  const std::string_view wanted = std::string_view(name).substr(folder.size());
  std::string found;
  std::error_code error;
  for (std::filesystem::directory_iterator at(folder.empty() ? "." : folder, error), end; !error && at != end;
       at.increment(error)) {
    const std::string candidate = at->path().filename().string();
    if (EqualButCase(candidate, wanted) && (found.empty() || candidate < found)) found = candidate;
  }
  return found.empty() ? name : folder + found;
}

std::string_view BaseOf(std::string_view name) { return name.substr(0, std::min(name.rfind('.'), name.size())); }

}  // namespace kem::load
