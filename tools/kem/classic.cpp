// The classic reading: records as their hosts receive them, and why there is none.
#include "classic.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <new>
#include <sstream>
#include <system_error>

#include "files.h"
#include "foreign.h"
#include "pairs.h"
#include "shape.h"
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

std::string Span(double a, double b) {
  const auto [low, high] = std::minmax(a, b);
  return Shortest(static_cast<float>(low)) + " to " + Shortest(static_cast<float>(high));
}

// Six digits, the precision of the text formats, are not a difference.
bool Differ(double a1, double a2, double b1, double b2) {
  const auto [low, high] = std::minmax(a1, a2);
  const auto [otherLow, otherHigh] = std::minmax(b1, b2);
  const double tolerance = 1e-5 * std::max({high - low, std::fabs(low), std::fabs(high)});
  return std::fabs(low - otherLow) > tolerance || std::fabs(high - otherHigh) > tolerance;
}

void CompareAxis(std::vector<std::string>& told, const char* name, const std::vector<float>& here,
                 const Axis& axis) {
  if (here.empty() || !Differ(axis.Start(), axis.End(), here.front(), here.back())) return;
  told.push_back(std::string(name) + " is " + Span(axis.Start(), axis.End()) + " in the file, but " +
                 Span(here.front(), here.back()) + " in the record");
}

// Where a record is not what the file says.
std::vector<std::string> Differences(const PrnType& r, const Dataset& d) {
  std::string shape;
  for (const Axis& axis : d.axes) shape.insert(0, std::to_string(axis.Count()) + (shape.empty() ? "" : " x "));
  const std::string ours = r.Is3D() ? std::to_string(r.nX) + " x " + std::to_string(r.nY) : std::to_string(r.nY);
  std::vector<std::string> told;
  if (shape != ours) {
    told.push_back("the file holds " + shape + " values, the record " + ours);
    return told;
  }
  if (d.values.IsComplex()) told.push_back("the values are complex, those of the record real");
  CompareAxis(told, "X", XCoordinates(r), d.axes.back());
  if (r.Is3D()) CompareAxis(told, "Y", YCoordinates(r), d.axes.front());
  const auto record = d.ToRecord(Part::Real);
  const auto low = [](const PrnType& of) { return of.Is3D() ? of.zMin : of.yStart; };
  const auto high = [](const PrnType& of) { return of.Is3D() ? of.zMax : of.yEnd; };
  if (Differ(low(*record), high(*record), low(r), high(r)))
    told.push_back("values are " + Span(low(*record), high(*record)) + " in the file, but " +
                   Span(low(r), high(r)) + " in the record");
  return told;
}

// Tells where the record is not what the instrument recorded, and what is doubtful in the file itself.
void Warn(const std::string& file, const std::string& name, int item, const PrnType& record) {
  if (record.nX < 1 || record.nY < 1) Tell(file, "holds no points");
  if (HowToRead().quiet) return;
  try {
    const Dataset d = Open(PathOf(name), item);
    for (const Note& note : d.notes)
      if (note.severity != Severity::Remark) Tell(file, note.text);
    for (const std::string& difference : Differences(record, d)) Tell(file, difference + " (--classic)");
  } catch (const Error& error) {
    Tell(file, "only the classic reading takes this file");
  }
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
    Warn(file, source.Name(), item, *input.record);
  }
  return input;
}

}  // namespace

ClassicItems ListClassic(const std::string& file) {
  const Source source(NameToOpen(file));
  ClassicItems items{.held = {}, .problem = WhyNotAsked(file, source)};
  if (!items.problem.empty()) return items;
  int announced = 0;
  int error = 0;
  std::string messages;
  try {
    const CapturedOutput output;
    const auto take = [](const KemItem& item, void* host) {
      static_cast<ClassicItems*>(host)->held.push_back(item);
    };
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

Input LoadClassic(const std::string& file, int item) {
  Input first = Load(file, 1, 0);
  if (item == 1 || !first.record) return first;
  const auto number = static_cast<std::size_t>(item);
  const auto held = first.more ? ListClassic(file).held : std::vector<KemItem>();
  if (number <= held.size()) return Load(file, item, held[number - 1].index);
  return {.file = file, .item = item, .record = nullptr, .problem = "holds no item " + std::to_string(item)};
}

bool EachClassic(const std::string& file, const std::function<bool(Input&)>& action) {
  Input first = Load(file, 1, 0);
  if (!NoProblem(file, first.problem)) return false;
  bool succeeded = action(first);
  if (!first.more) return succeeded;
  first.record = nullptr;
  const ClassicItems items = ListClassic(file);
  for (std::size_t k = 1; k < items.held.size(); ++k) {
    Input input = Load(file, static_cast<int>(k) + 1, items.held[k].index);
    if (!NoProblem(file, input.problem)) return false;
    succeeded = action(input) && succeeded;
  }
  return NoProblem(file, items.problem) && succeeded;
}

}  // namespace kem::tool
