// Bruker ESP and WinEPR as the instrument meant it: a text parameter file (.par) and a headerless value file
// (.spc).
//
// A line is KEY VALUE; the key is the first word and compared whole. Lines that begin with "*" are comments, those
// that begin with blanks go on with the line before.
//
//   DOS  Format        little-endian floats; big-endian 32-bit integers without this line
//   ANZ 15360          number of values; MIN and MAX are their range
//   JSS 4096           bits: 4096 two-dimensional, 16 complex
//   SSX 1024, SSY 15   points of an image, X fastest; XXLB, XXWI, XXUN and XYLB, XYWI, XYUN its axes
//   GST 3450, GSI 120  start and span of a curve's axis, JUN its unit
//   HCF 3510, HSW 120  centre and width of its field, where GST or GSI is missing
#include <algorithm>
#include <cctype>
#include <cmath>

#include "dataset/reader.h"
#include "text/words.h"

namespace kem::dataset {
using namespace text;
namespace {

constexpr std::string_view kParameterFile = ".par";
constexpr std::string_view kValueFile = ".spc";

constexpr TextRow kUnits[] = {{"MF", "GHz"},  {"MP", "mW"},  {"MPD", "dB"}, {"MPS", "dB"},  {"RMA", "G"},
                              {"RMF", "kHz"}, {"RCT", "ms"}, {"RTC", "ms"}, {"RPH", "deg"}, {"HCF", "G"},
                              {"HSW", "G"},   {"EMF", "G"},  {"TE", "K"}};

// What an axis of a unit shows; the file does not say.
constexpr TextRow kQuantities[] = {{"G", "Field"}, {"MHz", "Frequency"}, {"ns", "Time"},
                                   {"ms", "Time"}, {"s", "Time"},        {"dB", "Attenuation"}};

// ------------------------------------------------------------ parameter file

void ReadParameters(Dataset& d, std::string_view text) {
  Lines lines(text);
  std::string key;
  std::string value;
  const auto store = [&] {
    if (!key.empty()) AddParameter(d, {}, key, value, TextOf(kUnits, key));
    key.clear();
  };
  for (std::string_view line; lines.Next(line);) {
    const std::string_view content = Trimmed(line);
    if (content.empty() || line.front() == '*') continue;
    if (line.front() == ' ' || line.front() == '\t') {
      value.append(" ").append(content);
      continue;
    }
    store();
    const auto blank = content.find_first_of(" \t");
    key = content.substr(0, blank);
    value = blank == content.npos ? std::string_view() : Trimmed(content.substr(blank));
  }
  store();
}

std::string TextOf(const Dataset& d, std::string_view key) {
  const Parameter* found = d.Find(key);
  return found ? found->text : std::string();
}

std::optional<double> NumberOf(const Dataset& d, std::string_view key) {
  const Parameter* found = d.Find(key);
  return found ? found->number : std::nullopt;
}

bool HasBit(const Dataset& d, unsigned bit) {
  const double flags = NumberOf(d, "JSS").value_or(0);
  return flags >= 0 && flags < 4294967296.0 && (static_cast<std::uint32_t>(flags) & bit) != 0;
}

// ------------------------------------------------------------ axes

Axis NamedAxis(std::string unit, std::size_t count, double start, double width) {
  std::string name(TextOf(kQuantities, unit));
  return Axis::Linear(std::move(name), std::move(unit), count, start, start + width);
}

bool IsTimeSweep(const Dataset& d) { return EqualButCase(TextOf(d, "JEX"), "time-sweep"); }

Axis CurveAxis(Dataset& d, std::size_t count) {
  const auto last = static_cast<double>(count > 0 ? count - 1 : 0);
  if (const auto time = NumberOf(d, "RCT"); time && IsTimeSweep(d)) return NamedAxis("ms", count, 0, last * *time);
  const std::string unit = TextOf(d, "JUN");
  const auto start = NumberOf(d, "GST");
  const auto span = NumberOf(d, "GSI");
  if (start && span) return NamedAxis(unit.empty() ? "G" : unit, count, *start, *span);
  const auto centre = NumberOf(d, "HCF");
  const auto width = NumberOf(d, "HSW");
  for (const auto& [given, what] : {std::pair(centre, "HCF 3480"), std::pair(width, "HSW 50")})
    if (!given)
      d.notes.push_back({Severity::Doubtful,
                         std::string(what) + " is assumed for the axis; the file has no " + std::string(what, 3)});
  return NamedAxis("G", count, centre.value_or(3480) - width.value_or(50) / 2, width.value_or(50));
}

struct ImageAxis {
  const char* count;
  const char* start;
  const char* width;
  const char* unit;
};
constexpr ImageAxis kImageAxes[] = {{"SSY", "XYLB", "XYWI", "XYUN"}, {"SSX", "XXLB", "XXWI", "XXUN"}};

// Whether the values are an image: JSS says so, and both sizes are there.
bool IsImage(const Source& par, const Dataset& d) {
  constexpr unsigned kTwoDimensional = 4096;
  constexpr double kMost = 2147483647;
  if (!HasBit(d, kTwoDimensional)) return false;
  for (const ImageAxis& axis : kImageAxes) {
    const auto count = NumberOf(d, axis.count);
    if (!count)
      Fail(ErrorCode::Damaged, par.Path(), std::string("JSS says two-dimensional, but there is no ") + axis.count);
    if (!(*count >= 0 && *count <= kMost))
      Fail(ErrorCode::Damaged, par.Path(), std::string(axis.count) + " is no count of points");
  }
  return true;
}

Axis AxisOf(Dataset& d, const ImageAxis& axis) {
  const auto count = static_cast<std::size_t>(*NumberOf(d, axis.count));
  const auto width = NumberOf(d, axis.width);
  if (width || count < 2)
    return NamedAxis(TextOf(d, axis.unit), count, NumberOf(d, axis.start).value_or(0), width.value_or(0));
  d.notes.push_back({Severity::Doubtful, std::string("there is no ") + axis.width + "; the axis counts points"});
  return Axis::Linear("", "", count, 0, static_cast<double>(count - 1));
}

// ------------------------------------------------------------ values

// How many values a curve has: those that ANZ counts, as far as they are there.
std::size_t CurveCount(const Source& par, Dataset& d, std::uint64_t held) {
  const auto announced = NumberOf(d, "ANZ");
  if (!announced || *announced == static_cast<double>(held)) return static_cast<std::size_t>(held);
  if (!(*announced >= 0)) Fail(ErrorCode::Damaged, par.Path(), "ANZ is no count of points");
  if (*announced < static_cast<double>(held)) {
    d.notes.push_back(
        {Severity::Doubtful, "values file holds more than the " + TextOf(d, "ANZ") + " points of ANZ"});
    return static_cast<std::size_t>(*announced);
  }
  d.notes.push_back(
      {Severity::Damaged, "values file holds " + std::to_string(held) + " of " + TextOf(d, "ANZ") + " points"});
  return static_cast<std::size_t>(held);
}

// The file names the range of its values.
void CheckRange(Dataset& d) {
  const auto low = NumberOf(d, "MIN");
  const auto high = NumberOf(d, "MAX");
  if (!low || !high || d.values.Count() == 0 || d.values.IsComplex()) return;
  double least = d.values.Real(0);
  double most = least;
  for (std::size_t k = 0; k < d.values.Count(); ++k) {
    least = std::min(least, d.values.Real(k));
    most = std::max(most, d.values.Real(k));
  }
  const double tolerance = 1e-5 * std::max(std::abs(*low), std::abs(*high)) + 1e-6;
  if (std::abs(least - *low) > tolerance || std::abs(most - *high) > tolerance)
    d.notes.push_back({Severity::Doubtful, "the values are not in the range that MIN " + TextOf(d, "MIN") +
                                               " and MAX " + TextOf(d, "MAX") + " name"});
}

// ------------------------------------------------------------ reader

bool HasMarks(Source& par) {
  Dataset d;
  ReadParameters(d, par.Head());
  return d.Find("JSS") || d.Find("DOS") || d.Find("GST") || d.Find("JEX");
}

std::string RecogniseBruker(Source& source) {
  if (!source.HasExtension(kParameterFile) && !source.HasExtension(kValueFile)) return {};
  Source* const par = source.WithExtension(kParameterFile);
  if (!par || !HasMarks(*par)) return {};
  return "name ends in " + NameOf(source.Path().extension()) + ", its parameters hold JSS, DOS, GST or JEX";
}

// What all items share.
Dataset HeaderOf(Source& par) {
  Dataset d;
  ReadParameters(d, par.Content());
  d.title = TextOf(d, "JCO");
  d.name = "Intensity";
  return d;
}

// Two curves follow each other in one file.
bool HoldsTwo(const Dataset& d) { return d.Find("FDUA") != nullptr; }

std::vector<std::string> BrukerItems(Source& source) {
  return std::vector<std::string>(HoldsTwo(HeaderOf(*source.WithExtension(kParameterFile))) ? 2 : 1);
}

Dataset OpenBruker(Source& source, int item) {
  constexpr unsigned kComplex = 16;
  Source* const par = source.WithExtension(kParameterFile);
  Source* const spc = source.WithExtension(kValueFile);
  if (!spc) Fail(ErrorCode::Damaged, source.Path(), "its values, a file of the same name with .spc, are missing");
  Dataset d = HeaderOf(*par);
  d.companions.push_back(spc == &source ? par->Path() : spc->Path());

  const bool floats = d.Find("DOS") != nullptr;
  const std::size_t columns = HasBit(d, kComplex) ? 2 : 1;
  Layout layout{.order = floats ? std::endian::little : std::endian::big,
                .type = floats ? NumberType::F32 : NumberType::I32,
                .columns = columns,
                .taken = columns};
  const std::uint64_t held = HeldValues(*spc, layout);
  std::size_t count = 0;
  if (IsImage(*par, d)) {
    for (const ImageAxis& axis : kImageAxes) d.axes.push_back(AxisOf(d, axis));
    count = FitToFile(d, held, "values file");
  } else {
    count = CurveCount(*par, d, held) / (HoldsTwo(d) ? 2 : 1);
    layout.at = static_cast<std::uint64_t>(item - 1) * count * SizeOf(layout.type) * columns;
    d.axes.push_back(CurveAxis(d, count));
  }
  d.values = ReadValues(*spc, layout, count);
  if (!HoldsTwo(d)) CheckRange(d);
  return d;
}

}  // namespace

const Reader kBrukerReader{"Bruker ESR spc/par", ".par .spc", RecogniseBruker, BrukerItems, OpenBruker, true};

}  // namespace kem::dataset
