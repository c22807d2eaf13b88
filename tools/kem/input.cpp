#include "input.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <new>
#include <sstream>
#include <string_view>
#include <system_error>

#include "source.h"
#include "system.h"
#include "text.h"

namespace kem::tool {
namespace {

namespace fs = std::filesystem;

// Keeps what readers print away from standard output.
class CapturedOutput {
 public:
  CapturedOutput() = default;
  ~CapturedOutput() { std::cout.rdbuf(before_); }
  CapturedOutput(const CapturedOutput&) = delete;
  CapturedOutput& operator=(const CapturedOutput&) = delete;

  // The lines as parts of one sentence.
  std::string Lines() const {
    std::string text = text_.str();
    while (text.ends_with('\n')) text.pop_back();
    for (auto at = text.find('\n'); at != text.npos; at = text.find('\n', at)) text.replace(at, 1, "; ");
    return text;
  }

 private:
  std::ostringstream text_;
  std::streambuf* before_ = std::cout.rdbuf(text_.rdbuf());
};

// ------------------------------------------------------------ why a load failed

// Formats whose data come in two files of one name.
struct Pair {
  std::string_view format;
  const char* extensions[2];
};

constexpr Pair kPairs[] = {
    {"Bruker BES3T", {".DSC", ".DTA"}},
    {"Bruker ESR spc/par", {".par", ".spc"}},
};

bool ExistsInAnyCase(const fs::path& path) try {
  const std::string wanted = LowerCase(path.filename().string());
  const fs::directory_iterator entries(path.has_parent_path() ? path.parent_path() : ".");
  return std::any_of(begin(entries), end(entries), [&wanted](const fs::directory_entry& entry) {
    return LowerCase(entry.path().filename().string()) == wanted;
  });
} catch (const fs::filesystem_error&) {
  return false;
}

bool IsPair(std::string_view format) {
  return std::any_of(std::begin(kPairs), std::end(kPairs), [format](const Pair& p) { return p.format == format; });
}

// Name of the file of a pair that is not there; empty when none is missing.
std::string MissingPartner(const std::string& file, std::string_view format) {
  for (const Pair& pair : kPairs) {
    if (pair.format != format) continue;
    for (const char* extension : pair.extensions) {
      const fs::path partner = PathOf(file).replace_extension(extension);
      if (!ExistsInAnyCase(partner)) return partner.filename().string();
    }
  }
  return {};
}

Problem WhyUnreadable(const std::string& file) {
  std::error_code error;
  const fs::file_status status = fs::status(PathOf(file), error);
  if (status.type() == fs::file_type::not_found)
    return IsPattern(file) ? "no file matches this pattern" : "no such file";
  if (error) return error.message();
  if (fs::is_directory(status)) return "is a folder";
  if (!std::ifstream(PathOf(file), std::ios::binary)) return std::generic_category().message(errno);
  return {};
}

// `name` is what the library was asked for.
Problem WhyNotLoaded(const std::string& file, const std::string& name, const std::string& messages) {
  if (Problem unreadable = WhyUnreadable(name); !unreadable.empty()) return unreadable;
  if (!messages.empty()) return messages;
  const char* format = KemFormatName(name.c_str());
  if (!format) return "unknown format";
  const std::string recognised = std::string("recognised as ") + format + ", but ";
  if (file == kStandard && IsPair(format)) return recognised + "that is a pair of files, and standard input is one";
  if (const std::string missing = MissingPartner(file, format); !missing.empty())
    return recognised + missing + ", which belongs to it, is missing";
  return recognised + "kem cannot read this layout";
}

// ------------------------------------------------------------ items

// JCAMP-DX files may name factors.
void WarnOfFactors(const std::string& file) {
  if (ReadXFactor == 1 && ReadYFactor == 1) return;
  Complain(file + ": XFACTOR " + Shortest(ReadXFactor) + " and YFACTOR " + Shortest(ReadYFactor) +
           " are not applied; the numbers are those in the file");
}

// Why there is no memory for a file: there is no value without a byte. Else the failure being handled goes on.
Problem AnnouncesTooMuch() {
  if (ReadAnnounced >= 0 && ReadAnnounced <= ReadFileBytes) throw;
  char text[2 * kTextSize];
  std::snprintf(text, sizeof text, "announces %.0f values, the file has %.0f bytes", ReadAnnounced, ReadFileBytes);
  return text;
}

Input Load(const std::string& file, int item, int index) {
  Input input{.file = file, .item = item, .record = nullptr};
  const Source source(file);
  input.problem = source.WhyNot();
  if (!input.problem.empty()) return input;
  std::string messages;
  ReadNextFlag = item - 1;  // readers of two signals look at what has been read before
  try {
    const CapturedOutput output;
    input.record = std::make_unique<PrnType>(source.Name().c_str(), index);
    messages = output.Lines();
  } catch (const std::bad_alloc&) {
    input.problem = AnnouncesTooMuch();
    return input;
  }
  input.more = ReadNextFlag != 0;
  if (!*input.record) {
    input.record = nullptr;
    input.problem = WhyNotLoaded(file, source.Name(), messages);
  } else {
    source.Restore(*input.record);
    WarnOfFactors(file);
  }
  return input;
}

Input LoadFirst(const std::string& file) { return Load(file, 1, 0); }

}  // namespace

Items ListItems(const std::string& file) {
  const Source source(file);
  Items items{.held = {}, .problem = source.WhyNot()};
  if (!items.problem.empty()) return items;
  int announced = 0;
  std::string messages;
  try {
    const CapturedOutput output;
    const auto take = [](const KemItem& item, void* host) { static_cast<Items*>(host)->held.push_back(item); };
    announced = KemItems(source.Name().c_str(), take, &items);
    messages = output.Lines();
  } catch (const std::bad_alloc&) {
    items.problem = AnnouncesTooMuch();
    return items;
  }
  if (announced == 0) items.problem = WhyNotLoaded(file, source.Name(), messages);
  if (announced > std::ssize(items.held))
    items.problem = "announces " + std::to_string(announced) + " items, the file has " +
                    std::to_string(fs::file_size(PathOf(source.Name()))) + " bytes";
  return items;
}

Input LoadItem(const std::string& file, int item) {
  Input first = LoadFirst(file);
  if (item == 1 || !first.record) return first;
  const auto number = static_cast<std::size_t>(item);
  const auto held = first.more ? ListItems(file).held : std::vector<KemItem>();
  if (number <= held.size()) return Load(file, item, held[number - 1].index);
  return {.file = file, .item = item, .record = nullptr, .problem = "holds no item " + std::to_string(item)};
}

bool EachItem(const std::string& file, const std::function<bool(Input&)>& action) {
  Input first = LoadFirst(file);
  if (!NoProblem(file, first.problem)) return false;
  bool succeeded = action(first);
  if (!first.more) return succeeded;
  first.record = nullptr;
  const Items items = ListItems(file);
  for (std::size_t k = 1; k < items.held.size(); ++k) {
    Input input = Load(file, static_cast<int>(k) + 1, items.held[k].index);
    if (!NoProblem(file, input.problem)) return false;
    succeeded = action(input) && succeeded;
  }
  return NoProblem(file, items.problem) && succeeded;
}

}  // namespace kem::tool
