#include "foreign.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string_view>
#include <system_error>

#include "pairs.h"
#include "system.h"
#include "text.h"

namespace kem::tool {
namespace {

// What says what a file is stands in its first bytes, or in the lines of a parameter file.
constexpr std::size_t kFirstBytes = 64;
constexpr std::size_t kManyLines = 1 << 16;

std::string StartOf(const std::string& file, std::size_t size) {
  std::error_code error;
  if (std::filesystem::is_other(PathOf(file), error)) return {};
  std::string start(size, '\0');
  std::ifstream in(PathOf(file), std::ios::binary);
  in.read(start.data(), static_cast<std::streamsize>(size));
  start.resize(static_cast<std::size_t>(in.gcount()));
  return start;
}

// ------------------------------------------------------------ spc and par

// Every parameter file has a line with one of these in front. Lines end in CR, LF or both.
bool HasMarks(std::string_view parameters) {
  while (!parameters.empty()) {
    const auto end = std::min(parameters.find_first_of("\r\n"), parameters.size());
    const std::string_view key = parameters.substr(0, std::min(end, parameters.find_first_of(" \t")));
    if (key == "JSS" || key == "DOS" || key == "GST" || key == "JEX") return true;
    parameters.remove_prefix(std::min(end + 1, parameters.size()));
  }
  return false;
}

// Values can begin with any bytes: these tell something only where no parameter file vouches for them.
const char* MakerOf(std::string_view values) {
  if (values.starts_with("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1")) return "a Shimadzu spc file";
  if (values.size() > 1 && (values[1] == '\x4B' || values[1] == '\x4D')) return "a Galactic spc file";
  return nullptr;
}

Problem NotOurPair(const std::string& file, const Partner& partner) {
  if (HasMarks(StartOf(partner.holdsParameters ? partner.file : file, kManyLines))) return {};
  std::string reason = " has no line that begins with JSS, DOS, GST or JEX";
  reason.insert(0, partner.holdsParameters ? PathOf(partner.file).filename().string() : "it");
  if (partner.holdsParameters) {
    if (const char* maker = MakerOf(StartOf(file, kFirstBytes)))
      reason = std::string("it begins like ") + maker;
    else if (!partner.exists)
      return {};
  }
  return "not a Bruker ESR spc/par file: " + reason;
}

// ------------------------------------------------------------ CVT

bool BeginsWithPair(std::string_view line) {
  std::string text(line);
  std::replace(text.begin(), text.end(), ',', ' ');
  std::istringstream in(text);
  float x = 0;
  float y = 0;
  return static_cast<bool>(in >> x >> y);
}

// A table would give each of its numbers as a value. One with words where the values should begin is left to the
// reader, which refuses it.
Problem NotCvt(const std::string& file) {
  constexpr int kHeaderLines = 6;
  std::istringstream in(StartOf(file, kManyLines));
  std::string value;
  std::string line;
  for (int k = 0; std::getline(in, line); ++k) {
    if (k < kHeaderLines && line.find("start") != line.npos) return {};
    if (line.find_first_not_of(" \t\r") == line.npos) continue;
    value = line;
    if (k >= kHeaderLines) break;
  }
  return BeginsWithPair(value) ? "not a CVT file: it is a table with several numbers in a line" : "";
}

// ------------------------------------------------------------ files that stand for others

bool IsPointer(const std::string& file) {
  return StartOf(file, kFirstBytes).starts_with("version https://git-lfs");
}

}  // namespace

Problem WhyForeign(const std::string& file) {
  const Partner partner = PartnerOf(file);
  const char* const pointer = " is a pointer of git-lfs to the data";
  if (IsPointer(file)) return std::string("not a data file: it") + pointer;
  if (IsPointer(partner.file))
    return "not a pair of data files: " + PathOf(partner.file).filename().string() + pointer;
  const std::string extension = LowerCase(PathOf(file).extension().string());
  if (extension == ".spc" || extension == ".par") return NotOurPair(file, partner);
  return extension == ".cvt" ? NotCvt(file) : "";
}

}  // namespace kem::tool
