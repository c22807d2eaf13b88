// NPico pump-probe scans in text:
//
//   [Delay]                   kind of scan
//   Start= 0                  parameters; white space behind the "=" is needed
//   Step= 0.5
//   IntTime= 2
//   NrPoints= 100:4           points, and numbers per point when there is more than one
//   ...                       the numbers
//   (two lines, then up to four comment lines)
#include <fstream>

#include "dataset/of_record.h"
#include "kem.h"
#include "load/announced.h"
#include "load/keywords.h"
#include "record/findings.h"
#include "record/storage.h"
#include "text/fields.h"
#include "text/number_scanner.h"

using namespace kem::load;
using namespace kem::text;
using namespace kem::record;

namespace {

enum : int { kDelay = 0, kTime = 1, kMonochromator = 3, kDcDelay = 4 };

struct ScanKind {
  std::string_view section;
  int kind;
};

constexpr ScanKind kSections[] = {
    {"[Delay]", kDelay}, {"[TimeScan]", kTime}, {"[Monochromator]", kMonochromator}, {"[DcDelay]", kDcDelay}};

using Header = NPicoHeaderType;

struct Layout {
  int points = 0;
  int columns = 1;
};

void StoreStep(PrnType& r, Header&, Layout&, std::string_view line) {
  ScanLine(line, "%*s %g", {&r.xStep});
  if (r.xEnd < r.xStart && r.xStep > 0) r.xStep = -r.xStep;
}

// The integration time follows from the step, so this line stands behind it.
void StoreScanSpeed(PrnType& r, Header& header, Layout&, std::string_view line) {
  float speed = 0;
  if (ScanLine(line, "%*s %g", {&speed}) == 1) header.npicoIntTime = r.xStep / speed;
}

constexpr std::string_view kLastParameter = "NrPoints=";

void StorePoints(PrnType&, Header&, Layout& layout, std::string_view line) {
  const bool several = Contains(line.substr(line.find(kLastParameter)), ":");
  ScanLine(line, several ? "%*s%d:%d" : "%*s%d", {&layout.points, &layout.columns});
}

constexpr Keyword<PrnType, Header, Layout> kKeywords[] = {
    {"Start=", &PrnType::xStart},
    {"End=", &PrnType::xEnd},
    {"Step=", StoreStep},
    {"Repeat=", &Header::npicoRepeat},
    {"IntTime=", &Header::npicoIntTime},
    {"Input=", &Header::npicoInput},
    {"Offset=", &Header::npicoOffset},
    {kLastParameter, StorePoints},
    {"Laserline=", &Header::npicoLaserLine},
    {"ScanSpeed=", StoreScanSpeed},
    {"BackScans=", &Header::npicoBackScans},
};

bool FindSection(std::istream& in, int& kind) {
  Text line = {};
  while (ReadStartOfLine(in, line))
    if (TextOf(line).size() >= 2) break;
  for (const ScanKind& s : kSections) {
    if (!Contains(TextOf(line), s.section)) continue;
    kind = s.kind;
    return true;
  }
  return false;
}

bool ReadParameters(std::istream& in, PrnType& record, Layout& layout) {
  Text line;
  while (ReadStartOfLine(in, line)) {
    const std::string_view text = TextOf(line);
    if (const auto* keyword = FirstIn(text, kKeywords))
      Store(keyword->to, text, SecondWord, record, record.npico, layout);
    if (Contains(text, kLastParameter)) return layout.points >= 0;
  }
  return false;
}

// Signal over reference in thousandths; without a reference the raw signal.
float Ratio(float signal, float reference) { return reference != 0 ? signal / reference * 1000 : signal; }

float ReadPoint(NumberScanner& numbers, int columns, bool second, float time) {
  float v[4] = {};
  for (int k = 0; k < columns; ++k) numbers.Next(v[k]);
  if (columns == 1) return v[0] / time;
  return second ? Ratio(v[2], v[3]) : Ratio(v[0], v[1]);
}

// Points that no rule covers are not read.
void ReadPoints(std::istream& in, const Header& header, Layout layout, bool second, float* values) {
  const bool ratio = header.npicoScanType == kDcDelay && (layout.columns == 2 || layout.columns == 4);
  if (layout.columns != 1 && !ratio) return Miss(static_cast<std::size_t>(layout.points));
  NumberScanner numbers(in);
  for (int i = 0; i < layout.points; ++i) {
    const float value = ReadPoint(numbers, layout.columns, second, header.npicoIntTime);
    if (numbers.Failed()) return Miss(static_cast<std::size_t>(layout.points - i));
    values[i] = value;
  }
}

void ReadComments(std::istream& in, Header& header) {
  Text skipped;
  ReadStartOfLine(in, skipped);
  ReadStartOfLine(in, skipped);
  for (Text& comment : header.npicoComments) {
    if (!ReadStartOfLine(in, comment)) return;
    TrimTrailing(comment);
    if (TextOf(comment).size() < 2) return;
  }
}

}  // namespace

int PrnType::ReadNPico(std::ifstream& in) {
  if (in.fail()) return 0;
  Reset(*this);
  int kind = 0;
  if (!FindSection(in, kind)) return 0;
  npico = {};
  npico.npicoScanType = kind;
  fileType = FileNPico;
  Layout layout;
  if (!ReadParameters(in, *this, layout)) return 0;
  auto values = NewZeroArray(CheckedCount(in, layout.points));
  // Four numbers per point are two signals, loaded by alternate calls.
  const bool twoSignals = kind == kDcDelay && layout.columns == 4;
  ReadPoints(in, npico, layout, twoSignals && *Found().readNext != 0, values.get());
  if (twoSignals) *Found().readNext = *Found().readNext == 0 ? 1 : 0;
  ReadComments(in, npico);
  Own(yArray, std::move(values));
  allocType = AllocY;
  nX = nY = layout.points;
  return Finish(*this, in);
}

// ------------------------------------------------------------ as a dataset

namespace kem::dataset {
namespace {

constexpr std::array kNPicoUnits = {TextRow{"LaserLine", "nm"}};

Dataset OpenNPico(Source& source, int item) {
  return OpenRecord(
      source, [](PrnType& record, std::ifstream& in) { return record.ReadNPico(in); }, kNPicoUnits, item - 1);
}

// A reader that is asked for the first of two signals says that there is another one.
std::vector<std::string> NPicoItems(Source& source) {
  int next = 0;
  OpenRecord(source, [&next](PrnType& record, std::ifstream& in) {
    const int loaded = record.ReadNPico(in);
    next = *Found().readNext;
    return loaded;
  });
  return next != 0 ? std::vector<std::string>{"first signal", "second signal"} : OneItem(source);
}

}  // namespace

const Reader kNPicoReader{"NPico scan", "",
                          [](Source& source) -> std::string {
                            const std::string_view head = source.Head().substr(0, kTextSize - 1);
                            for (const ScanKind& kind : kSections)
                              if (Contains(head, kind.section))
                                return std::string(kind.section) + " in the first bytes";
                            return {};
                          },
                          NPicoItems, OpenNPico};

}  // namespace kem::dataset
