#include "input.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <new>
#include <sstream>
#include <string_view>
#include <system_error>

#include "foreign.h"
#include "pairs.h"
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

Problem WhyUnreadable(const std::string& file) {
  std::error_code error;
  const fs::file_status status = fs::status(PathOf(file), error);
  if (status.type() == fs::file_type::not_found)
    return IsPattern(file) ? "no file matches this pattern" : "no such file";
  if (error) return error.message();
  if (fs::is_directory(status)) return "is a folder";
  if (fs::is_other(status)) return "is no ordinary file";
  if (!std::ifstream(PathOf(file), std::ios::binary)) return std::generic_category().message(errno);
  return {};
}

// What is wrong with the other file of a pair.
Problem WhyIncomplete(const std::string& file, const char* format) {
  if (file == kStandard && IsPair(format)) return "that is a pair of files, and standard input is one";
  const Partner partner = PartnerOf(file);
  if (partner.file.empty()) return IsPair(format) ? "its extension is none of the two that such files have" : "";
  const std::string name = PathOf(partner.file).filename().string() + ", which belongs to it";
  if (!partner.exists) return name + ", is missing";
  const Problem unreadable = WhyUnreadable(partner.file);
  return unreadable.empty() ? "" : name + ": " + unreadable;
}

// `name` is what the library was asked for.
Problem WhyNotLoaded(const std::string& file, const std::string& name, const std::string& messages, int error) {
  if (Problem unreadable = WhyUnreadable(name); !unreadable.empty()) return unreadable;
  const char* format = KemFormatName(name.c_str());
  const std::string recognised = format ? std::string("recognised as ") + format + ", but " : "";
  if (const Problem incomplete = format ? WhyIncomplete(file, format) : ""; !incomplete.empty())
    return recognised + incomplete;
  if (error != 0 && error != ENOENT) return std::generic_category().message(error);
  if (!messages.empty()) return messages;
  return format ? recognised + "kem cannot read this layout" : "unknown format";
}

// ------------------------------------------------------------ items

// A file that only begins like one of a format may pass for one that ends early. JCAMP-DX files may name factors.
void Warn(const std::string& file, const PrnType& record) {
  if (record.nX < 1 || record.nY < 1) Complain(file + ": holds no points");
  if (ReadXFactor == 1 && ReadYFactor == 1) return;
  Complain(file + ": XFACTOR " + Shortest(ReadXFactor) + " and YFACTOR " + Shortest(ReadYFactor) +
           " are not applied; the numbers are those in the file");
}

// Why the library should not be asked for a file.
Problem WhyNotAsked(const std::string& file, const Source& source) {
  if (!source.WhyNot().empty()) return source.WhyNot();
  return WhyForeign(file == kStandard ? source.Name() : file);
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
  const Source source(NameToOpen(file));
  if (item == 1) input.problem = WhyNotAsked(file, source);
  if (!input.problem.empty()) return input;
  std::string messages;
  ReadNextFlag = item - 1;  // readers of two signals look at what has been read before
  int error = 0;
  try {
    const CapturedOutput output;
    input.record = std::make_unique<PrnType>(source.Name().c_str(), index);
    error = errno;
    messages = output.Lines();
  } catch (const std::bad_alloc&) {
    input.problem = AnnouncesTooMuch();
    return input;
  }
  input.more = ReadNextFlag != 0;
  if (!*input.record) {
    input.record = nullptr;
    input.problem = WhyNotLoaded(file, source.Name(), messages, error);
  } else {
    source.Restore(*input.record);
    Warn(file, *input.record);
  }
  return input;
}

Input LoadFirst(const std::string& file) { return Load(file, 1, 0); }

}  // namespace

Items ListItems(const std::string& file) {
  const Source source(NameToOpen(file));
  Items items{.held = {}, .problem = WhyNotAsked(file, source)};
  if (!items.problem.empty()) return items;
  int announced = 0;
  int error = 0;
  std::string messages;
  try {
    const CapturedOutput output;
    const auto take = [](const KemItem& item, void* host) { static_cast<Items*>(host)->held.push_back(item); };
    announced = KemItems(source.Name().c_str(), take, &items);
    error = errno;
    messages = output.Lines();
  } catch (const std::bad_alloc&) {
    items.problem = AnnouncesTooMuch();
    return items;
  }
  if (announced == 0) items.problem = WhyNotLoaded(file, source.Name(), messages, error);
  if (announced > std::ssize(items.held))
    items.problem = "announces " + std::to_string(announced) + " items, the file has " +
                    std::to_string(fs::file_size(PathOf(source.Name()))) + " bytes";
  return items;
}

NamedItem ItemNamed(const std::string& name) {
  const auto mark = name.rfind('#');
  std::error_code error;
  if (mark == name.npos || fs::exists(PathOf(name), error)) return {name};
  int item = 0;
  const char* const end = name.data() + name.size();
  const auto read = std::from_chars(name.data() + mark + 1, end, item);
  if (read.ec != std::errc() || read.ptr != end || item < 1) return {name};
  return {name.substr(0, mark), item};
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
