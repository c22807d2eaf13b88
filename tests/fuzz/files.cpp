#define DOCTEST_CONFIG_IMPLEMENT  // for the checks of support/, none of which runs
#include "fuzz/files.h"

#include <algorithm>
#include <array>
#include <vector>

#include "host/detect.h"
#include "kem/dataset.h"
#include "support/support.h"
#include "text/words.h"

namespace kem::fuzz {
namespace {

constexpr std::string_view kSeparator = "\n%%%%\n";

// One that leaves the format to the content, and all those that decide for one.
const std::vector<std::string>& Extensions() {
  static const std::vector<std::string> extensions = [] {
    std::vector<std::string> all = {".txt"};
    for (const host::Test& test : host::NameTests()) all.emplace_back(test.text);
    for (const FormatInfo& format : Formats())
      all.insert(all.end(), format.extensions.begin(), format.extensions.end());
    return all;
  }();
  return extensions;
}

// The extensions of a file and of those beside it.
std::array<std::string, 4> Family(const std::string& extension) {
  constexpr const char* kPairs[][2] = {{".par", ".spc"}, {".DSC", ".DTA"}, {".dhd", ".dat"}};
  for (const auto& [first, second] : kPairs)
    for (const auto& [own, other] : {std::pair(first, second), {second, first}})
      if (text::EqualButCase(extension, own)) return {extension, other, ".XGF", ".YGF"};
  return {extension, ".spc", ".DTA", ".DSC"};  // of what the content may turn out to be
}

}  // namespace

Files::Files(std::span<const std::uint8_t> bytes) {
  static const test::TempFolder folder;
  for (const auto& entry : std::filesystem::directory_iterator(folder.Path(""))) std::filesystem::remove(entry);
  std::string_view left(reinterpret_cast<const char*>(bytes.data()), bytes.size());
  const auto take = [&left] {
    const auto byte = static_cast<unsigned char>(left.empty() ? 0 : left.front());
    left.remove_prefix(std::min<std::size_t>(left.size(), 1));
    return std::size_t{byte};
  };
  const std::string& extension = Extensions()[take() % Extensions().size()];
  choice_ = take();
  path_ = folder.Path("a" + extension);
  for (const std::string& name : Family(extension)) {
    const auto end = std::min(left.find(kSeparator), left.size());
    folder.Write("a" + name, std::string(left.substr(0, end)));
    left.remove_prefix(end);
    if (left.empty()) break;
    left.remove_prefix(kSeparator.size());
  }
}

std::string BytesOf(const std::filesystem::path& file, std::size_t choice) {
  const auto& extensions = Extensions();
  const std::string own = file.extension().string();
  auto found = std::find(extensions.begin(), extensions.end(), own);
  if (found == extensions.end()) found = extensions.begin();
  std::string bytes = {static_cast<char>(found - extensions.begin()), static_cast<char>(choice)};
  std::size_t end = 0;  // of the last file that is there
  for (const std::string& extension : Family(own)) {
    const auto member = std::filesystem::path(file).replace_extension(extension);
    if (extension != own) bytes += kSeparator;
    if (!std::filesystem::is_regular_file(member)) continue;
    bytes += test::ReadBytes(member.string());
    end = bytes.size();
  }
  return bytes.substr(0, end);
}

}  // namespace kem::fuzz
