#include "input.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
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

std::string LowerCase(std::string text) {
  for (char& c : text)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return text;
}

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

Input Load(const std::string& file, int item, int index) {
  Input input{.file = file, .item = item, .record = nullptr};
  const Source source(file);
  input.problem = source.WhyNot();
  if (!input.problem.empty()) return input;
  std::string messages;
  {
    const CapturedOutput output;
    input.record = std::make_unique<PrnType>(source.Name().c_str(), index);
    messages = output.Lines();
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

// Index of the item behind the one just read at `index`. Most readers count from 1, and take 0 for 1 too.
int NextIndex(const PrnType& record, int index) {
  switch (record.fileType) {
    case FileIccdCurve:
    case FileBruker:
    case FileNPico:
      return index + 1;
    default:
      return ReadNextFlag + 1;
  }
}

// Their readers take any number but one for the other.
bool HoldsTwoAtMost(const PrnType& record) { return record.fileType == FileBruker || record.fileType == FileNPico; }

Input LoadFirst(const std::string& file) {
  ReadNextFlag = 0;
  return Load(file, 1, 0);
}

}  // namespace

Input LoadItem(const std::string& file, int item) {
  Input first = LoadFirst(file);
  if (item == 1 || !first.record) return first;
  if (first.more && !(item > 2 && HoldsTwoAtMost(*first.record))) {
    Input input = Load(file, item, NextIndex(*first.record, 0) + item - 2);
    // A reader that refuses the item leaves the file to others that may make something of it.
    if (input.record && input.record->fileType == first.record->fileType) return input;
  }
  return {.file = file, .item = item, .record = nullptr, .problem = "holds no item " + std::to_string(item)};
}

bool EachItem(const std::string& file, const std::function<bool(Input&)>& action) {
  bool succeeded = true;
  int index = 0;
  for (Input input = LoadFirst(file);; input = Load(file, input.item + 1, index)) {
    if (!NoProblem(file, input.problem)) return false;
    if (input.more) index = NextIndex(*input.record, index);
    succeeded = action(input) && succeeded;
    if (!input.more) return succeeded;
  }
}

}  // namespace kem::tool
