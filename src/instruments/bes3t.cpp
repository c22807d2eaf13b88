// Bruker BES3T: a text descriptor (.DSC) and a headerless value file (.DTA).
//
//   #DESC 1.2 * DESCRIPTOR INFORMATION ***
//   BSEQ  BIG          byte order of the values
//   IKKF  CPLX         columns per point: REAL one, CPLX two
//   IRFMT D            format of a value
//   XTYP  IDX          axis: equidistant (IDX), stored (IGD), absent (NODATA)
//   XPTS  1024
//   XMIN  3375.0
//   XWID  50.0
//   TITL  'strong pitch'
//   #SPL  1.2 * STANDARD PARAMETER LAYER
//   MWFQ  9.58667e+09
#include <algorithm>
#include <fstream>
#include <iterator>
#include <string>
#include <type_traits>
#include <variant>

#include "kem.h"
#include "load/announced.h"
#include "load/block.h"
#include "load/files.h"
#include "record/findings.h"
#include "record/storage.h"
#include "text/fields.h"

using namespace kem::load;
using namespace kem::text;
using namespace kem::record;

namespace {

enum class Bes3tDataFormat { None, Char, Short, Int, Float, Double, Ascii };
enum class Bes3tAxisType { NoData, Idx, Igd, Ntup };

// ------------------------------------------------------------ messages

// Errors of a stage are numbered from 1. A refusal prints nothing: there is nothing more to say than that the
// files are not what they should be.
constexpr int kRefused = -1;

struct Stage {
  const char* prefix;
  std::span<const char* const> messages;
};

constexpr const char* kDescMessages[] = {
    "BSEQ in #DESC: Keyword absent!",        "IKKF in #DESC: No columns!",
    "?TYP in #DESC: NTUP not supported!",    "?TYP in #DESC: Unknown keyword!",
    "IRFMT != IIFMT in #DESC: Unsupported!", "Transformations not supported!",
};
enum : int { kNoByteOrder = 1, kNoColumns, kTuplesInDesc, kUnknownAxisType, kMixedFormats, kTransformation };

constexpr const char* kDataMessages[] = {
    "3D Data not supported yet!",
    "No data present to read!",
    "Can't read No Data Format!",
    "Can't read ASCII Data Format!",
};
enum : int { kDataIs3D = 1, kNoData, kDataWithoutFormat, kDataIsAscii };

constexpr const char* kAxisMessages[] = {
    "Direction must be X, Y or Z!",
    "Tuple Files not yet supported!",
    "Can't read No Data Format!",
    "Can't read ASCII Data Format!",
};
enum : int { kUnknownDirection = 1, kAxisIsTuple, kAxisWithoutFormat, kAxisIsAscii };

constexpr Stage kDescStage{"DESC: ", kDescMessages};
constexpr Stage kSplStage{"SPL: ", {}};
constexpr Stage kDataStage{"DATA: ", kDataMessages};
constexpr Stage kAxisStage{"AX: ", kAxisMessages};

bool Succeeded(const Stage& stage, int code) {
  if (code == 0) return true;
  if (code == kRefused) return false;
  const auto row = static_cast<std::size_t>(code) - 1;
  *Found().messages << stage.prefix << (row < stage.messages.size() ? stage.messages[row] : "Unknown error.")
                    << std::endl;
  return false;
}

// ------------------------------------------------------------ sections

// Walks the lines of a section, without comments, and stops at the first error.
template <class ParseLine>
int ForEachLine(std::istream& in, std::string_view section, ParseLine parse) {
  SeekTo(in, 0);
  Text line = {};
  do {
    if (!in.good()) return kRefused;
    ReadStartOfLine(in, line);
  } while (!TextOf(line).starts_with(section));
  while (in.good()) {
    ReadStartOfLine(in, line);
    TrimTrailing(line);
    if (in.fail() || line[0] == '#') break;
    const std::string_view text = TextOf(line);
    const auto content = text.substr(0, text.find('*'));
    if (content.empty()) continue;
    if (const int error = parse(content); error != 0) return error;
  }
  return 0;
}

// What follows the keyword of a line.
std::string_view ValueOf(std::string_view line) {
  constexpr std::string_view kBlanks = " \t";
  const auto skip = [&line](std::size_t count) { line.remove_prefix(std::min(count, line.size())); };
  skip(line.find_first_not_of(kBlanks));
  skip(line.find_first_of(kBlanks));
  skip(line.find_first_not_of(kBlanks));
  return line;
}

// ------------------------------------------------------------ #DESC

struct Bes3tDescValues {
  Order order = Order::Big;  // also that of a descriptor without BSEQ
  int columns = 0;
  Bes3tDataFormat realFormat{}, imaginaryFormat{}, xFormat{}, yFormat{}, zFormat{};
  Bes3tAxisType xType{}, yType{}, zType{};
  float xMin = 0, xWidth = 0, yMin = 0, yWidth = 0, zMin = 0, zWidth = 0;
  int xPoints = 0, yPoints = 0, zPoints = 0;
  Text title = {}, realName = {}, xName = {}, realUnit = {}, xUnit = {};
};
using Desc = Bes3tDescValues;

Bes3tDataFormat ParseBes3tFormat(std::string_view line) {
  line.remove_prefix(line.find("FMT") + 3);
  const auto letter = line.find_first_not_of(" \t");
  if (letter == line.npos) return Bes3tDataFormat::None;
  const auto format = std::string_view("CSIFDA").find(line[letter]);
  return format == std::string_view::npos ? Bes3tDataFormat::None : static_cast<Bes3tDataFormat>(format + 1);
}

int StoreByteOrder(Desc& desc, std::string_view line) {
  if (Contains(line, "BIG")) {
    desc.order = Order::Big;
  } else if (Contains(line, "LIT")) {
    desc.order = Order::Little;
  } else {
    return kNoByteOrder;
  }
  return 0;
}

int CountOf(std::string& line, std::string_view word) {
  int count = 0;
  for (auto at = line.find(word); at != line.npos; at = line.find(word), ++count) line.erase(at, word.size());
  return count;
}

int StoreColumns(Desc& desc, std::string_view line) {
  std::string rest(line);
  desc.columns = 2 * CountOf(rest, "CPLX");
  desc.columns += CountOf(rest, "REAL");
  return desc.columns == 0 ? kNoColumns : 0;
}

int RefuseTransformation(Desc&, std::string_view) { return kTransformation; }

int Store(Bes3tDataFormat& format, std::string_view line) {
  format = ParseBes3tFormat(line);
  return 0;
}

int Store(Bes3tAxisType& type, std::string_view line) {
  constexpr std::string_view kTypes[] = {"NODATA", "IDX", "IGD", "NTUP"};
  for (std::size_t k = 0; k < std::size(kTypes); ++k) {
    if (!Contains(line, kTypes[k])) continue;
    type = static_cast<Bes3tAxisType>(k);
    return type == Bes3tAxisType::Ntup ? kTuplesInDesc : 0;
  }
  return kUnknownAxisType;
}

template <class Number>
int Store(Number& number, std::string_view line) {
  ScanLine(line, std::is_same_v<Number, float> ? "%*s %g" : "%*s %d", {&number});
  return 0;
}

int Store(Text& text, std::string_view line) {
  const auto quote = line.find('\'');
  line.remove_prefix(quote == line.npos ? line.size() : quote + 1);
  CopyText(text, line.substr(0, line.find('\'')));
  return 0;
}

struct Ignore {};

struct DescKeyword {
  std::string_view word;
  std::variant<Ignore, Bes3tDataFormat Desc::*, Bes3tAxisType Desc::*, float Desc::*, int Desc::*, Text Desc::*,
               int (*)(Desc&, std::string_view)>
      to;
};

// Anywhere in a line; the first that is found wins.
constexpr DescKeyword kDescKeywords[] = {
    {"DSRC", Ignore{}},
    {"BSEQ", StoreByteOrder},
    {"IKKF", StoreColumns},
    {"XTYP", &Desc::xType},
    {"YTYP", &Desc::yType},
    {"ZTYP", &Desc::zType},
    {"IRFMT", &Desc::realFormat},
    {"IIFMT", &Desc::imaginaryFormat},
    {"XFMT", &Desc::xFormat},
    {"YFMT", &Desc::yFormat},
    {"ZFMT", &Desc::zFormat},
    {"XMIN", &Desc::xMin},
    {"YMIN", &Desc::yMin},
    {"ZMIN", &Desc::zMin},
    {"XWID", &Desc::xWidth},
    {"YWID", &Desc::yWidth},
    {"ZWID", &Desc::zWidth},
    {"XPTS", &Desc::xPoints},
    {"YPTS", &Desc::yPoints},
    {"ZPTS", &Desc::zPoints},
    {"IRTOF", RefuseTransformation},
    {"IITOF", RefuseTransformation},
    {"IRTSP", RefuseTransformation},
    {"IITSP", RefuseTransformation},
    {"TITL", &Desc::title},
    {"IRNAM", &Desc::realName},
    {"IINAM", Ignore{}},
    {"XNAM", &Desc::xName},
    {"YNAM", Ignore{}},
    {"ZNAM", Ignore{}},
    {"IRUNI", &Desc::realUnit},
    {"IIUNI", Ignore{}},
    {"XUNI", &Desc::xUnit},
};

int StoreDesc(Desc& desc, const DescKeyword& keyword, std::string_view line) {
  return std::visit(
      [&](auto to) {
        if constexpr (std::is_same_v<decltype(to), Ignore>)
          return 0;
        else if constexpr (std::is_member_pointer_v<decltype(to)>)
          return Store(desc.*to, line);
        else
          return to(desc, line);
      },
      keyword.to);
}

int ParseBes3tDesc(Desc& desc, std::istream& in) {
  return ForEachLine(in, "#DESC", [&desc](std::string_view line) {
    for (const DescKeyword& keyword : kDescKeywords)
      if (Contains(line, keyword.word)) return StoreDesc(desc, keyword, line);
    return 0;
  });
}

// ------------------------------------------------------------ #SPL

struct Description {
  std::string_view code;
  std::string_view text;
};

constexpr Description kParameterDescriptions[] = {
    {"SANX", "Sample Angle X (rad)"},
    {"SANY", "Sample Angle Y (rad)"},
    {"SANZ", "Sample Angle Z (rad)"},
    {"STMP", "Sample Temperature (K)"},
    {"SCON", "Sample Concentration (M)"},
    {"R1VL", "Multi.Res. Freq. 1 (Hz)"},
    {"R1FM", "Multi.Res. Freq. 1 FM Depth (Hz)"},
    {"R1AM", "Multi.Res. Freq. 1 AM Depth"},
    {"R1MF", "Multi.Res. Freq. 1 FM/AM Freq (Hz)"},
    {"R1AT", "Multi.Res. Freq. 1 Atten. (dB)"},
    {"R2VL", "Multi.Res. Freq. 2 (Hz)"},
    {"R2FM", "Multi.Res. Freq. 2 FM Depth (Hz)"},
    {"R2MF", "Multi.Res. Freq. 2 FM/AM Freq (Hz)"},
    {"R2AT", "Multi.Res. Freq. 2 Atten. (dB)"},
    {"RCAG", "Receiver Amp. Gain"},
    {"RCTC", "Receiver Time Constant (s)"},
    {"RCPH", "Receiver Phase (rad)"},
    {"RCHM", "Receiver Harmonic"},
    {"RCOF", "Receiver Offset"},
    {"B0VL", "Magnetic Field (T)"},
    {"B0RS", "Magnetic Field (T) Rapid Scan"},
    {"B0FL", "Magnetic Field (T) FF Lock"},
    {"B0TH", "Magnetic Field (T) Tesla Meter"},
    {"B0MA", "Magnetic Field Mod. Amplitude (T)"},
    {"B0MF", "Magnetic Field Mod. Frequency (Hz)"},
    {"IADC", "High-Res Integrating ADC"},
    {"FADC", "Flash Digitizer"},
    {"TADC", "Transient Recorder"},
    {"NONE", "None"},
    {"ETIM", "Time (s)"},
    {"MWFQ", "Microwave Frequency (Hz)"},
    {"MWPW", "Microwave Power (W)"},
};

constexpr Description kExperimentDescriptions[] = {
    {"CW", "Continuous Wave"},
    {"PLS", "Pulse"},
    {"SIM", "Simulation"},
    {"CAL", "Calibration"},
};

// Codes and keywords are searched in the group of their first character only.
char GroupOf(std::string_view groups, std::string_view text) {
  return !text.empty() && Contains(groups, text.substr(0, 1)) ? text[0] : '\0';
}

void DescribeBes3tParameter(Text& target, std::string_view line) {
  const std::string_view value = ValueOf(line);
  CopyText(target, value);
  for (const auto& [code, text] : kParameterDescriptions)
    if (GroupOf("SRB", code) == GroupOf("SRB", value) && Contains(value, code)) return CopyText(target, text);
}

void DescribeBes3tExperiment(Text& target, std::string_view line) {
  const std::string_view value = ValueOf(line);
  CopyText(target, value);
  for (const auto& [code, text] : kExperimentDescriptions)
    if (Contains(value, code)) return CopyText(target, text);
}

void CopyValue(Text& target, std::string_view line) { CopyText(target, ValueOf(line)); }

// A text of the parameter block and what makes it out of a line.
struct SplText {
  Text BES3THeaderType::*field;
  void (*make)(Text& target, std::string_view line);
};

struct SplKeyword {
  std::string_view word;
  std::variant<Ignore, float BES3THeaderType::*, SplText> to = Ignore{};
};

using Block3T = BES3THeaderType;

// In the group of the line's first character; the first that is found wins, also where its value is not kept.
constexpr SplKeyword kSplKeywords[] = {
    {"A1CT"},
    {"A1LL"},
    {"A1SW"},
    {"AVGS"},
    {"AXS1", SplText{&Block3T::bes3tAbscissaSource, DescribeBes3tParameter}},
    {"SAMP"},
    {"SFOR"},
    {"STAG"},
    {"SANX"},
    {"SANY"},
    {"SANZ"},
    {"STMP"},
    {"SPTP", &Block3T::bes3tSptp},
    {"B0VL"},
    {"B0RS"},
    {"B0FL"},
    {"B0TH"},
    {"B0MA", &Block3T::bes3tModAmplitude},
    {"B0MF", &Block3T::bes3tModFrequency},
    {"R1VL"},
    {"R1FM"},
    {"R1AM"},
    {"R1MF"},
    {"R1AT"},
    {"R2VL"},
    {"R2FM"},
    {"R2MF"},
    {"R2AT"},
    {"RCAG", &Block3T::bes3tGain},
    {"RCTC", &Block3T::bes3tTimeConstant},
    {"RCPH", &Block3T::bes3tPhase},
    {"RCHM", &Block3T::bes3tHarmonic},
    {"RCOF", &Block3T::bes3tOffset},
    {"OPER"},
    {"DATE"},
    {"TIME"},
    {"CMNT", SplText{&Block3T::bes3tComment, CopyValue}},
    {"DTRS"},
    {"EXPT", SplText{&Block3T::bes3tExperiment, DescribeBes3tExperiment}},
    {"OXS1", SplText{&Block3T::bes3tOrdinateSource, DescribeBes3tParameter}},
    {"ETIM"},
    {"MWFQ", &Block3T::bes3tMwFrequency},
    {"MWPW", &Block3T::bes3tMwPower},
};

void StoreSpl(Block3T& block, const SplKeyword& keyword, std::string_view line) {
  if (const auto* number = std::get_if<float Block3T::*>(&keyword.to)) Store(block.**number, line);
  if (const auto* text = std::get_if<SplText>(&keyword.to)) text->make(block.*(text->field), line);
}

int ParseBes3tSpl(Block3T& block, std::istream& in) {
  return ForEachLine(in, "#SPL", [&block](std::string_view line) {
    constexpr std::string_view kGroups = "ASBR";
    for (const SplKeyword& keyword : kSplKeywords) {
      if (GroupOf(kGroups, keyword.word) != GroupOf(kGroups, line) || !Contains(line, keyword.word)) continue;
      StoreSpl(block, keyword, line);
      break;
    }
    return 0;
  });
}

// ------------------------------------------------------------ axes and values

// Null for formats that cannot be read: none and text.
const Wire* WireOf(Bes3tDataFormat format) {
  static constexpr Wire kWires[] = {Wire::S8, Wire::S16, Wire::S32, Wire::F32, Wire::F64};
  const auto row = static_cast<std::size_t>(format) - 1;
  return row < std::size(kWires) ? &kWires[row] : nullptr;
}

struct Bes3tAxis {
  float first = 0;
  float last = 0;
  float step = 0;
  std::unique_ptr<float[]> values;  // of a stored axis
};

struct AxisDescription {
  Bes3tAxisType type;
  Bes3tDataFormat format;
  float minimum;
  float width;
  int points;
};

// Stored axis values are taken from the start of the descriptor itself, not from the .XGF companion: records
// made from such files over the years agree on it.
int ReadBes3tAxis(Bes3tAxis& axis, char direction, const Desc& desc, std::istream& stored) {
  const auto describe = [&desc, direction]() -> AxisDescription {
    if (direction == 'X') return {desc.xType, desc.xFormat, desc.xMin, desc.xWidth, desc.xPoints};
    if (direction == 'Y') return {desc.yType, desc.yFormat, desc.yMin, desc.yWidth, desc.yPoints};
    return {desc.zType, desc.zFormat, desc.zMin, desc.zWidth, desc.zPoints};
  };
  if (!Contains("XYZ", {&direction, 1})) return kUnknownDirection;
  const AxisDescription d = describe();
  switch (d.type) {
    case Bes3tAxisType::Ntup:
      return kAxisIsTuple;
    case Bes3tAxisType::Idx:
      axis.first = d.minimum;
      axis.last = d.minimum + d.width;
      axis.step = d.points > 1 ? d.width / static_cast<float>(d.points - 1) : 0;
      return 0;
    case Bes3tAxisType::Igd: {
      const Wire* wire = WireOf(d.format);
      if (!wire) return d.format == Bes3tDataFormat::Ascii ? kAxisIsAscii : kAxisWithoutFormat;
      axis.values = NewZeroArray(d.points);
      SeekTo(stored, 0);
      ReadValues(stored, *wire, desc.order, {axis.values.get(), static_cast<std::size_t>(d.points)});
      return 0;
    }
    default:
      return 0;
  }
}

// Whether the values can be read at all.
int CheckBes3tData(const Desc& desc) {
  const bool grid = desc.yType == Bes3tAxisType::Idx;
  // More than one column has a place in a square block only, where the columns stay interleaved.
  if (grid && desc.columns > 1 && desc.xPoints != desc.yPoints) return kDataIs3D;
  if (!grid && (desc.yType != Bes3tAxisType::NoData || desc.zType != desc.yType)) return kDataIs3D;
  if (!grid && desc.xType == Bes3tAxisType::NoData) return kNoData;
  if (desc.realFormat == Bes3tDataFormat::Ascii) return kDataIsAscii;
  if (desc.realFormat == Bes3tDataFormat::None) return kDataWithoutFormat;
  if (desc.xPoints < 0 || (grid && (desc.yPoints < 0 || desc.xType != Bes3tAxisType::Idx))) return kRefused;
  return 0;
}

// One column of a file whose columns follow each other within a point.
std::unique_ptr<float[]> ReadBes3tColumn(const Desc& desc, int column, std::istream& in) {
  auto values = NewZeroArray(desc.xPoints);
  const auto points = static_cast<std::size_t>(desc.xPoints);
  const auto columns = static_cast<std::size_t>(desc.columns);
  const Wire wire = *WireOf(desc.realFormat);
  const std::size_t before = static_cast<std::size_t>(column - 1) * SizeOf(wire);
  const Block block(in, 0, points * columns * SizeOf(wire));
  const auto bytes = block.Bytes();
  Decode(wire, desc.order, bytes.subspan(std::min(before, bytes.size())), {values.get(), points}, columns);
  return values;
}

// The block is meant to be square; X varies fastest, so that one that is not has its place too. The file type
// of a grid stays what it was.
void FillGrid(PrnType& record, const Desc& desc, const Bes3tAxis& x, const Bes3tAxis& y, std::istream& in) {
  Grid grid = NewZeroGrid(desc.xPoints, desc.yPoints);
  SeekTo(in, 0);
  ReadLines(in, *WireOf(desc.realFormat), desc.order, grid.get(), desc.xPoints, desc.yPoints);
  Own(record.zArray, std::move(grid));
  record.allocType = AllocZ;
  record.nX = desc.xPoints;
  record.nY = desc.yPoints;
  record.xStart = x.first;
  record.xEnd = x.last;
  record.xStep = x.step;
  record.yStart = y.first;
  record.yEnd = y.last;
  record.yStep = y.step;
}

void FillCurve(PrnType& record, const Desc& desc, Bes3tAxis& x, int column, std::istream& in) {
  auto values = ReadBes3tColumn(desc, column, in);
  Own(record.yArray, std::move(values));
  record.fileType = FileBES3T;
  record.allocType = x.values ? AllocXY : AllocY;
  record.nX = record.nY = desc.xPoints;
  record.xStart = x.first;
  record.xEnd = x.last;
  record.xStep = x.step;
  record.yStep = 0;
  if (x.values) Own(record.xArray, std::move(x.values));
}

std::string TitleOf(const Text& name, const Text& unit) {
  return std::string(TextOf(name)).append(" (").append(TextOf(unit)).append(")");
}

}  // namespace

int PrnType::ReadBES3T(const char* name, int& columns, int which) {
  const EmptyOnThrow guard(*this);
  if (BaseOf(name).size() + 4 >= kTextSize || which < 0) return 0;
  std::ifstream descriptor;
  std::ifstream values;
  if (!OpenForReading(descriptor, PartnerOf(name, ".DSC"))) return 0;
  if (!OpenForReading(values, PartnerOf(name, ".DTA"))) return 0;

  Desc desc;
  BES3THeaderType parameters = {};
  Bes3tAxis x;
  Bes3tAxis y;
  if (!Succeeded(kDescStage, ParseBes3tDesc(desc, descriptor))) return 0;
  if (!Succeeded(kSplStage, ParseBes3tSpl(parameters, descriptor))) return 0;
  if (!Succeeded(kDataStage, CheckBes3tData(desc))) return 0;
  if (desc.yType == Bes3tAxisType::Idx)
    CheckGrid(values, desc.xPoints, desc.yPoints);
  else
    CheckedCount(values, desc.xPoints);
  if (!Succeeded(kAxisStage, ReadBes3tAxis(x, 'X', desc, descriptor))) return 0;
  if (!Succeeded(kAxisStage, ReadBes3tAxis(y, 'Y', desc, descriptor))) return 0;

  if (desc.yType == Bes3tAxisType::Idx) {
    FillGrid(*this, desc, x, y, values);
  } else {
    columns = desc.columns;
    which = which == 0 ? 1 : which;
    if (which > columns) return 0;
    FillCurve(*this, desc, x, which, values);
  }
  CopyText(xLabel, TitleOf(desc.xName, desc.xUnit));
  CopyText(yLabel, TitleOf(desc.realName, desc.realUnit));
  CopyText(zLabel, TextOf(desc.title));
  bes3t = parameters;
  *Found().readNext = which == columns ? 0 : which;
  return Finish(*this, descriptor, values);
}
