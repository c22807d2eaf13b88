// Bruker BES3T as the instrument meant it: see bes3t.cpp for the layout of the descriptor.
//
// The value file (.DTA) has no header: for each Z, for each Y, for each X the columns of IKKF in order. A complex
// variable is two columns, real and imaginary; each variable is an item. An axis is linear (IDX), stored in a file
// of its own (IGD: .XGF, .YGF, .ZGF, headerless), or absent (NODATA).
#include <algorithm>
#include <array>

#include "dataset/reader.h"
#include "text/words.h"

namespace kem::dataset {
using namespace text;
namespace {

constexpr std::string_view kDescriptor = ".DSC";
constexpr std::string_view kValueFile = ".DTA";

// ------------------------------------------------------------ descriptor

// Units of the standard parameters, which the file does not name.
constexpr TextRow kUnits[] = {
    {"B0MA", "T"},   {"B0MF", "Hz"}, {"B0VL", "T"}, {"MWFQ", "Hz"}, {"MWPW", "W"}, {"RCAG", "dB"},
    {"RCPH", "deg"}, {"RCTC", "s"},  {"SPTP", "s"}, {"STMP", "K"},  {"A1CT", "T"}, {"A1SW", "T"},
};

// A line that ends in a backslash goes on in the next one; such texts spell their line ends as "\n".
std::string JoinedLine(std::string_view line, Lines& lines) {
  std::string joined(line);
  while (joined.ends_with('\\')) {
    joined.pop_back();
    if (joined.ends_with("\\n")) joined.replace(joined.size() - 2, 2, "\n");
    if (!lines.Next(line)) break;
    joined += line;
  }
  return joined;
}

// Keeps every line of the layers #DESC, #SPL and #DSL as a parameter. A device (".DVC recorder, 1.0") is a
// section of its own; what follows "#MHL" is a copy of other files.
void ReadDescriptor(Dataset& d, std::string_view text) {
  Lines lines(text);
  std::string section;
  for (std::string_view line; lines.Next(line);) {
    if (line.starts_with("#MHL")) return;
    if (line.starts_with('#')) {
      section = line.substr(1, line.find_first_of(" \t") - 1);
      continue;
    }
    const std::string whole = JoinedLine(line, lines);
    const std::string_view content = Trimmed(whole);
    if (content.empty() || content.front() == '*' || section.empty()) continue;
    const auto blank = content.find_first_of(" \t\n");
    const std::string_view key = content.substr(0, blank);
    const std::string_view value = blank == content.npos ? std::string_view() : Trimmed(content.substr(blank));
    if (key == ".DVC")
      section = std::string("DSL ").append(value.substr(0, value.find(',')));
    else
      AddParameter(d, section, key, value, section == "SPL" ? TextOf(kUnits, key) : std::string_view());
  }
}

std::string TextOf(const Dataset& d, std::string_view key) {
  const Parameter* found = d.Find(key, "DESC");
  return found ? found->text : std::string();
}

double NumberOf(const Dataset& d, std::string_view key) {
  const Parameter* found = d.Find(key, "DESC");
  return found && found->number ? *found->number : 0;
}

// An entry of a list by its place; the last one stands for those that are missing.
std::string Entry(const std::vector<std::string>& list, std::size_t k) {
  return list[std::min(k, list.size() - 1)];
}

// ------------------------------------------------------------ axes

// By the letter of a format.
struct Format {
  char letter;
  NumberType type;
};
constexpr Format kFormats[] = {{'C', NumberType::I8},
                               {'S', NumberType::I16},
                               {'I', NumberType::I32},
                               {'F', NumberType::F32},
                               {'D', NumberType::F64}};

NumberType TypeOf(const Source& source, std::string_view key, const std::string& letters) {
  for (const Format& format : kFormats)
    if (letters == std::string(1, format.letter)) return format.type;
  const char* const what = letters == "A" ? " A, text, is not read" : " names no format of numbers that kem knows";
  Fail(ErrorCode::NotReadable, source.Path(), std::string(key) + what);
}

std::endian OrderOf(const Source& source, const Dataset& d) {
  const std::string order = TextOf(d, "BSEQ");
  if (order == "BIG") return std::endian::big;
  if (order == "LIT") return std::endian::little;
  Fail(ErrorCode::Damaged, source.Path(), "names no byte order (BSEQ BIG or LIT)");
}

// One direction of the descriptor: X, Y or Z.
struct Direction {
  char letter;
  std::string Key(std::string_view rest) const { return std::string(1, letter).append(rest); }
};

std::size_t PointsOf(const Source& source, const Dataset& d, const Direction& direction) {
  const double points = NumberOf(d, direction.Key("PTS"));
  constexpr double kMost = 2147483647;
  if (!(points >= 0 && points <= kMost) || points != static_cast<double>(static_cast<std::size_t>(points)))
    Fail(ErrorCode::Damaged, source.Path(), direction.Key("PTS") + " is no count of points");
  return static_cast<std::size_t>(points);
}

Axis LinearAxis(Dataset& d, const Direction& direction, std::size_t points) {
  const double start = NumberOf(d, direction.Key("MIN"));
  const double width = NumberOf(d, direction.Key("WID"));
  if (width != 0 || points < 2) return Axis::Linear({}, {}, points, start, start + width);
  d.notes.push_back({Severity::Doubtful, direction.Key("WID") + " is 0; the axis counts the points"});
  return Axis::Linear({}, {}, points, 1, static_cast<double>(points));
}

// A file of an axis is as long as its points; a shorter one leaves the axis that MIN and WID describe.
Axis StoredAxis(Source& source, Dataset& d, const Direction& direction, std::size_t points) {
  const std::string extension = direction.Key("GF");
  Source* const companion = source.Companion("." + extension);
  const std::string key = direction.Key("FMT");
  const std::string letters = TextOf(d, key);
  const Layout layout{.order = OrderOf(source, d), .type = TypeOf(source, key, letters.empty() ? "D" : letters)};
  const bool complete = companion && HeldValues(*companion, layout) >= points;
  if (!complete) {
    const std::string why = companion ? "." + extension + " is too short" : "there is no ." + extension;
    d.notes.push_back({companion ? Severity::Damaged : Severity::Doubtful,
                       direction.Key("TYP") + " is IGD, but " + why + "; the axis is that of " +
                           direction.Key("MIN") + " and " + direction.Key("WID")});
    return LinearAxis(d, direction, points);
  }
  d.companions.push_back(companion->Path());
  const Values values = ReadValues(*companion, layout, points);
  std::vector<double> coordinates(points);
  for (std::size_t k = 0; k < points; ++k) coordinates[k] = values.Real(k);
  return Axis::Stored({}, {}, std::move(coordinates));
}

// Slowest first. A second or third direction with one point is none: the value stays a parameter.
void ReadAxes(Source& source, Dataset& d) {
  for (const Direction direction : {Direction{'Z'}, Direction{'Y'}, Direction{'X'}}) {
    const std::string type = TextOf(d, direction.Key("TYP"));
    if (type == "NTUP")
      Fail(ErrorCode::NotReadable, source.Path(), direction.Key("TYP") + " NTUP, tuples, is not read");
    if (type == "NODATA" || (type.empty() && direction.letter != 'X')) continue;
    const std::size_t points = PointsOf(source, d, direction);
    if (points == 1 && direction.letter != 'X') continue;
    Axis axis = type == "IGD" ? StoredAxis(source, d, direction, points) : LinearAxis(d, direction, points);
    axis.name = SplitList(TextOf(d, direction.Key("NAM"))).front();
    axis.unit = SplitList(TextOf(d, direction.Key("UNI"))).front();
    d.axes.push_back(std::move(axis));
  }
  if (d.axes.empty()) Fail(ErrorCode::Damaged, source.Path(), "describes no axis");
}

// ------------------------------------------------------------ values

struct Variable {
  bool complex;
  std::size_t column;  // of its first number
};

struct Variables {
  std::vector<Variable> all;
  std::size_t columns = 0;
};

Variables VariablesOf(const Source& source, const Dataset& d) {
  Variables variables;
  for (const std::string& kind : SplitList(TextOf(d, "IKKF"))) {
    if (kind != "REAL" && kind != "CPLX")
      Fail(ErrorCode::Damaged, source.Path(), "IKKF names no kind of values (REAL or CPLX)");
    variables.all.push_back({kind == "CPLX", variables.columns});
    variables.columns += kind == "CPLX" ? 2 : 1;
  }
  return variables;
}

NumberType ValueType(const Source& source, const Dataset& d) {
  const std::vector<std::string> letters = SplitList(TextOf(d, "IRFMT"));
  for (const std::string& letter : letters)
    if (letter != letters.front()) Fail(ErrorCode::NotReadable, source.Path(), "IRFMT names several formats");
  return TypeOf(source, "IRFMT", letters.front());
}

void NoteRest(Dataset& d, const Source& values, const Layout& layout) {
  const std::uint64_t used = CountOf(d.axes) * layout.columns * SizeOf(layout.type);
  if (values.Size() <= used) return;
  d.notes.push_back(
      {Severity::Doubtful, "values file has " + std::to_string(values.Size() - used) + " bytes behind the data"});
}

// ------------------------------------------------------------ reader

// Other programs put comments in front of it.
bool HasDescription(Source& source) {
  const std::string_view head = source.Head();
  const auto at = head.find("#DESC");
  return at == 0 || (at != head.npos && (head[at - 1] == '\n' || head[at - 1] == '\r'));
}

std::string RecogniseBES3T(Source& source) {
  if (!source.HasExtension(kValueFile)) return HasDescription(source) ? "its first lines hold #DESC" : "";
  Source* const descriptor = source.Companion(kDescriptor);
  return descriptor && HasDescription(*descriptor) ? "name ends in .DTA, its .DSC holds #DESC" : "";
}

// The descriptor, whichever file of the pair was named.
Source& DescriptorOf(Source& source) {
  return source.HasExtension(kValueFile) ? *source.Companion(kDescriptor) : source;
}

// What all items share.
Dataset HeaderOf(Source& descriptor) {
  Dataset d;
  ReadDescriptor(d, descriptor.Content());
  d.title = SplitList(TextOf(d, "TITL")).front();
  return d;
}

std::vector<std::string> BES3TItems(Source& source) {
  Source& descriptor = DescriptorOf(source);
  const Dataset d = HeaderOf(descriptor);
  const std::vector<std::string> names = SplitList(TextOf(d, "IRNAM"));
  std::vector<std::string> items;
  for (std::size_t k = 0; k < VariablesOf(descriptor, d).all.size(); ++k)
    items.push_back(k < names.size() ? names[k] : std::string());
  return items;
}

Dataset OpenBES3T(Source& source, int item) {
  Source& descriptor = DescriptorOf(source);
  Source* const values = source.WithExtension(kValueFile);
  if (!values)
    Fail(ErrorCode::Damaged, source.Path(), "its values, a file of the same name with .DTA, are missing");
  Dataset d = HeaderOf(descriptor);
  d.companions.push_back(values == &source ? descriptor.Path() : values->Path());
  ReadAxes(descriptor, d);

  const auto k = static_cast<std::size_t>(item) - 1;
  const Variables variables = VariablesOf(descriptor, d);
  const Variable& variable = variables.all[k];
  const Layout layout{.at = 0,
                      .order = OrderOf(descriptor, d),
                      .type = ValueType(descriptor, d),
                      .columns = variables.columns,
                      .column = variable.column,
                      .taken = variable.complex ? 2U : 1U};
  d.name = Entry(SplitList(TextOf(d, "IRNAM")), k);
  d.unit = Entry(SplitList(TextOf(d, "IRUNI")), k);
  NoteRest(d, *values, layout);
  const std::size_t count = FitToFile(d, HeldValues(*values, layout), "values file");
  d.values = ReadValues(*values, layout, count);
  return d;
}

}  // namespace

const Reader kBES3TReader{"Bruker BES3T", ".DSC .DTA", RecogniseBES3T,  BES3TItems,
                          OpenBES3T,      true,        ".XGF .YGF .ZGF"};

}  // namespace kem::dataset
