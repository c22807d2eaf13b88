#include "system.h"

#ifdef _WIN32
#include <windows.h>

#include <shlwapi.h>
#endif

#include <algorithm>
#include <iterator>
#include <system_error>

namespace kem::tool {

namespace fs = std::filesystem;

// A name that is not UTF-8 is taken as it is.
fs::path PathOf(const std::string& name) {
  try {
    return std::u8string(name.begin(), name.end());
  } catch (const fs::filesystem_error&) {
    return name;
  }
}

#ifdef _WIN32

namespace {

std::vector<std::string> Matching(const fs::path& pattern) {
  const fs::path folder = pattern.parent_path();
  std::vector<std::string> found;
  std::error_code error;
  for (const fs::directory_entry& entry : fs::directory_iterator(folder.empty() ? "." : folder, error)) {
    const fs::path name = entry.path().filename();
    if (entry.is_regular_file(error) &&
        PathMatchSpecExW(name.c_str(), pattern.filename().c_str(), PMSF_NORMAL) == S_OK)
      found.push_back((folder / name).string());
  }
  std::sort(found.begin(), found.end());
  return found;
}

}  // namespace

// The C run time leaves the arguments alone: `*` also multiplies.
extern "C" {
int _dowildcard = 0;
}

bool IsPattern(const std::string& name) {
  std::error_code error;
  return name.find_first_of("*?") != name.npos && !fs::exists(PathOf(name), error);
}

std::vector<std::string> Expanded(const std::vector<std::string>& names) {
  std::vector<std::string> expanded;
  for (const std::string& name : names) {
    std::vector<std::string> found;
    if (IsPattern(name)) found = Matching(PathOf(name));
    if (found.empty()) found = {name};
    std::move(found.begin(), found.end(), std::back_inserter(expanded));
  }
  return expanded;
}

std::shared_ptr<void> Utf8Console() {
  const UINT before = GetConsoleOutputCP();
  SetConsoleOutputCP(CP_UTF8);
  return {nullptr, [before](void*) { SetConsoleOutputCP(before); }};
}

#else

bool IsPattern(const std::string&) { return false; }
std::vector<std::string> Expanded(const std::vector<std::string>& names) { return names; }
std::shared_ptr<void> Utf8Console() { return {}; }

#endif

}  // namespace kem::tool
