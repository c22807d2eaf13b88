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
#include <string>

#include "kem.h"
#include "load/announced.h"
#include "load/block.h"
#include "load/files.h"
#include "load/keywords.h"
#include "record/findings.h"
#include "record/storage.h"
#include "text/fields.h"
#include "text/words.h"

using namespace kem::load;
using namespace kem::text;
using namespace kem::record;

namespace {

// What is wrong with the files, as it is printed; null when nothing is. Nothing is printed where there is nothing
// more to say than that they are not what they should be.
using Problem = const char*;
constexpr Problem kRefused = "";

bool IsFine(Problem problem) {
  if (problem && *problem) *Found().messages << problem << std::endl;
  return !problem;
}

// Walks the lines of a section, without comments, and stops at the first problem.
template <class ParseLine>
Problem ForEachLine(std::istream& in, std::string_view section, ParseLine parse) {
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
    if (const Problem problem = parse(content)) return problem;
  }
  return nullptr;
}

// ------------------------------------------------------------ #DESC

enum class AxisType { NoData, Linear, Stored };

struct AxisDesc {
  AxisType type{};
  char format = 0;
  float minimum = 0;
  float width = 0;
  int points = 0;
};

struct Desc {
  Order order = Order::Big;  // also that of a descriptor without BSEQ
  int columns = 0;
  char format = 0;  // of the values, a letter; 0: none
  AxisDesc x, y, z;
  Text title = {}, valueName = {}, xName = {}, valueUnit = {}, xUnit = {};
  Problem problem = nullptr;
};

void StoreByteOrder(Desc& desc, std::string_view line) {
  if (!Contains(line, "BIG") && !Contains(line, "LIT"))
    desc.problem = "DESC: BSEQ in #DESC: Keyword absent!";
  else
    desc.order = Contains(line, "BIG") ? Order::Big : Order::Little;
}

int CountOf(std::string& line, std::string_view word) {
  int count = 0;
  for (auto at = line.find(word); at != line.npos; at = line.find(word), ++count) line.erase(at, word.size());
  return count;
}

void StoreColumns(Desc& desc, std::string_view line) {
  std::string rest(line);
  desc.columns = 2 * CountOf(rest, "CPLX");
  desc.columns += CountOf(rest, "REAL");
  if (desc.columns == 0) desc.problem = "DESC: IKKF in #DESC: No columns!";
}

void RefuseTransformation(Desc& desc, std::string_view) { desc.problem = "DESC: Transformations not supported!"; }

char FormatIn(std::string_view line) {
  line.remove_prefix(line.find("FMT") + 3);
  const auto letter = line.find_first_not_of(" \t");
  return letter != line.npos && Contains("CSIFDA", line.substr(letter, 1)) ? line[letter] : '\0';
}

void StoreValueFormat(Desc& desc, std::string_view line) { desc.format = FormatIn(line); }

template <AxisDesc Desc::*axis>
void StoreFormat(Desc& desc, std::string_view line) {
  (desc.*axis).format = FormatIn(line);
}

template <AxisDesc Desc::*axis>
void StoreType(Desc& desc, std::string_view line) {
  AxisType& type = (desc.*axis).type;
  if (Contains(line, "NODATA"))
    type = AxisType::NoData;
  else if (Contains(line, "IDX"))
    type = AxisType::Linear;
  else if (Contains(line, "IGD"))
    type = AxisType::Stored;
  else
    desc.problem = Contains(line, "NTUP") ? "DESC: ?TYP in #DESC: NTUP not supported!"
                                          : "DESC: ?TYP in #DESC: Unknown keyword!";
}

template <AxisDesc Desc::*axis, auto field>
void StoreNumber(Desc& desc, std::string_view line) {
  if (const auto word = SecondWord(line)) StoreValue(desc.*axis.*field, *word);
}

std::optional<std::string_view> Quoted(std::string_view line) {
  const auto quote = std::min(line.find('\''), line.size() - 1);
  line.remove_prefix(quote + 1);
  return line.substr(0, line.find('\''));
}

constexpr Keyword<Desc> kDescKeywords[] = {
    {"DSRC"},
    {"BSEQ", StoreByteOrder},
    {"IKKF", StoreColumns},
    {"XTYP", StoreType<&Desc::x>},
    {"YTYP", StoreType<&Desc::y>},
    {"ZTYP", StoreType<&Desc::z>},
    {"IRFMT", StoreValueFormat},
    {"IIFMT"},
    {"XFMT", StoreFormat<&Desc::x>},
    {"YFMT"},
    {"ZFMT"},
    {"XMIN", StoreNumber<&Desc::x, &AxisDesc::minimum>},
    {"YMIN", StoreNumber<&Desc::y, &AxisDesc::minimum>},
    {"ZMIN"},
    {"XWID", StoreNumber<&Desc::x, &AxisDesc::width>},
    {"YWID", StoreNumber<&Desc::y, &AxisDesc::width>},
    {"ZWID"},
    {"XPTS", StoreNumber<&Desc::x, &AxisDesc::points>},
    {"YPTS", StoreNumber<&Desc::y, &AxisDesc::points>},
    {"ZPTS"},
    {"IRTOF", RefuseTransformation},
    {"IITOF", RefuseTransformation},
    {"IRTSP", RefuseTransformation},
    {"IITSP", RefuseTransformation},
    {"TITL", &Desc::title},
    {"IRNAM", &Desc::valueName},
    {"IINAM"},
    {"XNAM", &Desc::xName},
    {"YNAM"},
    {"ZNAM"},
    {"IRUNI", &Desc::valueUnit},
    {"IIUNI"},
    {"XUNI", &Desc::xUnit},
};

Problem ParseDesc(Desc& desc, std::istream& in) {
  return ForEachLine(in, "#DESC", [&desc](std::string_view line) {
    if (const auto* keyword = FirstIn(line, kDescKeywords)) Store(keyword->to, line, Quoted, desc);
    return desc.problem;
  });
}

// ------------------------------------------------------------ #SPL

using Header = BES3THeaderType;

constexpr TextRow kSources[] = {
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

constexpr TextRow kExperiments[] = {
    {"CW", "Continuous Wave"},
    {"PLS", "Pulse"},
    {"SIM", "Simulation"},
    {"CAL", "Calibration"},
};

// Codes and keywords are searched in the group of their first character only; all others are one group.
char GroupOf(std::string_view groups, std::string_view text) {
  return !text.empty() && Contains(groups, text.substr(0, 1)) ? text[0] : '\0';
}

// The value of a line, or what its code stands for.
void StoreDescribed(Text& target, std::string_view line, std::span<const TextRow> codes, std::string_view groups) {
  const std::string_view value = BehindFirstWord(line);
  CopyText(target, value);
  for (const auto& [code, text] : codes)
    if (GroupOf(groups, code) == GroupOf(groups, value) && Contains(value, code)) return CopyText(target, text);
}

template <Text Header::*source>
void StoreSource(Header& header, std::string_view line) {
  StoreDescribed(header.*source, line, kSources, "SRB");
}

void StoreExperiment(Header& header, std::string_view line) {
  StoreDescribed(header.bes3tExperiment, line, kExperiments, "");
}

void StoreComment(Header& header, std::string_view line) { CopyText(header.bes3tComment, BehindFirstWord(line)); }

// A keyword whose value is not kept stands in the way of those behind it, too.
constexpr Keyword<Header> kSplKeywords[] = {
    {"A1CT"},
    {"A1LL"},
    {"A1SW"},
    {"AVGS"},
    {"AXS1", StoreSource<&Header::bes3tAbscissaSource>},
    {"SAMP"},
    {"SFOR"},
    {"STAG"},
    {"SANX"},
    {"SANY"},
    {"SANZ"},
    {"STMP"},
    {"SPTP", &Header::bes3tSptp},
    {"B0VL"},
    {"B0RS"},
    {"B0FL"},
    {"B0TH"},
    {"B0MA", &Header::bes3tModAmplitude},
    {"B0MF", &Header::bes3tModFrequency},
    {"R1VL"},
    {"R1FM"},
    {"R1AM"},
    {"R1MF"},
    {"R1AT"},
    {"R2VL"},
    {"R2FM"},
    {"R2MF"},
    {"R2AT"},
    {"RCAG", &Header::bes3tGain},
    {"RCTC", &Header::bes3tTimeConstant},
    {"RCPH", &Header::bes3tPhase},
    {"RCHM", &Header::bes3tHarmonic},
    {"RCOF", &Header::bes3tOffset},
    {"OPER"},
    {"DATE"},
    {"TIME"},
    {"CMNT", StoreComment},
    {"DTRS"},
    {"EXPT", StoreExperiment},
    {"OXS1", StoreSource<&Header::bes3tOrdinateSource>},
    {"ETIM"},
    {"MWFQ", &Header::bes3tMwFrequency},
    {"MWPW", &Header::bes3tMwPower},
};

void ParseSplLine(Header& header, std::string_view line) {
  constexpr std::string_view kGroups = "ASBR";
  for (const auto& keyword : kSplKeywords)
    if (GroupOf(kGroups, keyword.word) == GroupOf(kGroups, line) && keyword.IsIn(line))
      return Store(keyword.to, line, SecondWord, header);
}

Problem ParseSpl(Header& header, std::istream& in) {
  return ForEachLine(in, "#SPL", [&header](std::string_view line) -> Problem {
    ParseSplLine(header, line);
    return nullptr;
  });
}

// ------------------------------------------------------------ axes and values

// None for formats that cannot be read: none and text.
std::optional<Wire> WireOf(char format) {
  constexpr Wire kWires[] = {Wire::S8, Wire::S16, Wire::S32, Wire::F32, Wire::F64};
  const auto row = std::string_view("CSIFD").find(format);
  return row < std::size(kWires) ? std::optional(kWires[row]) : std::nullopt;
}

struct Axis {
  float first = 0;
  float last = 0;
  float step = 0;
  std::unique_ptr<float[]> values;  // of a stored axis
};

// Stored axis values are taken from the start of the descriptor itself, not from the .XGF companion: records
// made from such files over the years agree on it.
Problem ReadAxis(Axis& axis, const AxisDesc& desc, Order order, std::istream& stored) {
  if (desc.type == AxisType::Linear) {
    axis.first = desc.minimum;
    axis.last = desc.minimum + desc.width;
    axis.step = desc.points > 1 ? desc.width / static_cast<float>(desc.points - 1) : 0;
  } else if (desc.type == AxisType::Stored) {
    const auto wire = WireOf(desc.format);
    if (!wire) return desc.format == 'A' ? "AX: Can't read ASCII Data Format!" : "AX: Can't read No Data Format!";
    axis.values = NewZeroArray(desc.points);
    SeekTo(stored, 0);
    ReadValues(stored, *wire, order, {axis.values.get(), static_cast<std::size_t>(desc.points)});
  }
  return nullptr;
}

// Whether the values can be read at all.
Problem CheckData(const Desc& desc) {
  constexpr Problem kIs3D = "DATA: 3D Data not supported yet!";
  const bool grid = desc.y.type == AxisType::Linear;
  // More than one column has a place in a square block only, where the columns stay interleaved.
  if (grid && desc.columns > 1 && desc.x.points != desc.y.points) return kIs3D;
  if (!grid && (desc.y.type != AxisType::NoData || desc.z.type != desc.y.type)) return kIs3D;
  if (!grid && desc.x.type == AxisType::NoData) return "DATA: No data present to read!";
  if (desc.format == 'A') return "DATA: Can't read ASCII Data Format!";
  if (desc.format == 0) return "DATA: Can't read No Data Format!";
  if (desc.x.points < 0 || (grid && (desc.y.points < 0 || desc.x.type != AxisType::Linear))) return kRefused;
  return nullptr;
}

// One column of a file whose columns follow each other within a point.
std::unique_ptr<float[]> ReadColumn(const Desc& desc, int column, std::istream& in) {
  auto values = NewZeroArray(desc.x.points);
  const auto points = static_cast<std::size_t>(desc.x.points);
  const auto columns = static_cast<std::size_t>(desc.columns);
  const Wire wire = *WireOf(desc.format);
  const std::size_t before = static_cast<std::size_t>(column - 1) * SizeOf(wire);
  const Block block(in, 0, points * columns * SizeOf(wire));
  const auto bytes = block.Bytes();
  Decode(wire, desc.order, bytes.subspan(std::min(before, bytes.size())), {values.get(), points}, columns);
  return values;
}

// The block is meant to be square; X varies fastest, so that one that is not has its place too. The file type
// of a grid stays what it was.
void FillGrid(PrnType& record, const Desc& desc, const Axis& y, std::istream& in) {
  Grid grid = NewZeroGrid(desc.x.points, desc.y.points);
  SeekTo(in, 0);
  ReadLines(in, *WireOf(desc.format), desc.order, grid.get(), desc.x.points, desc.y.points);
  Own(record.zArray, std::move(grid));
  record.allocType = AllocZ;
  record.nX = desc.x.points;
  record.nY = desc.y.points;
  record.yStart = y.first;
  record.yEnd = y.last;
  record.yStep = y.step;
}

void FillCurve(PrnType& record, const Desc& desc, Axis& x, int column, std::istream& in) {
  auto values = ReadColumn(desc, column, in);
  Own(record.yArray, std::move(values));
  record.fileType = FileBES3T;
  record.allocType = x.values ? AllocXY : AllocY;
  record.nX = record.nY = desc.x.points;
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
  Header parameters = {};
  Axis x;
  Axis y;
  if (!IsFine(ParseDesc(desc, descriptor))) return 0;
  if (!IsFine(ParseSpl(parameters, descriptor))) return 0;
  if (!IsFine(CheckData(desc))) return 0;
  if (desc.y.type == AxisType::Linear)
    CheckGrid(values, desc.x.points, desc.y.points);
  else
    CheckedCount(values, desc.x.points);
  if (!IsFine(ReadAxis(x, desc.x, desc.order, descriptor))) return 0;
  if (!IsFine(ReadAxis(y, desc.y, desc.order, descriptor))) return 0;

  if (desc.y.type == AxisType::Linear) {
    FillGrid(*this, desc, y, values);
  } else {
    columns = desc.columns;
    which = which == 0 ? 1 : which;
    if (which > columns) return 0;
    FillCurve(*this, desc, x, which, values);
  }
  xStart = x.first;
  xEnd = x.last;
  xStep = x.step;
  CopyText(xLabel, TitleOf(desc.xName, desc.xUnit));
  CopyText(yLabel, TitleOf(desc.valueName, desc.valueUnit));
  CopyText(zLabel, TextOf(desc.title));
  bes3t = parameters;
  *Found().readNext = which == columns ? 0 : which;
  return Finish(*this, descriptor, values);
}
