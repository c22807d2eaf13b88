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
#include <type_traits>
#include <variant>

#include "dataset/of_record.h"
#include "kem.h"
#include "load/announced.h"
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

// Parameters on their way into the record.
struct Scan {
  PrnType& record;
  int points = 0;
  int columns = 1;
};

void StoreStep(Scan& scan, std::string_view line) {
  PrnType& r = scan.record;
  ScanLine(line, "%*s%g", {&r.xStep});
  if (r.xEnd < r.xStart && r.xStep > 0) r.xStep = -r.xStep;
}

// The integration time follows from the step, so this line stands behind it.
void StoreScanSpeed(Scan& scan, std::string_view line) {
  float speed = 0;
  if (ScanLine(line, "%*s%g", {&speed}) == 1) scan.record.npico.npicoIntTime = scan.record.xStep / speed;
}

constexpr std::string_view kLastParameter = "NrPoints=";

void StorePoints(Scan& scan, std::string_view line) {
  if (Contains(line.substr(line.find(kLastParameter)), ":"))
    ScanLine(line, "%*s%d:%d", {&scan.points, &scan.columns});
  else
    ScanLine(line, "%*s%d", {&scan.points});
}

struct Keyword {
  std::string_view word;
  std::variant<float PrnType::*, float NPicoHeaderType::*, int NPicoHeaderType::*, Text NPicoHeaderType::*,
               void (*)(Scan&, std::string_view)>
      to;
};

// The first word that is found in a line wins.
constexpr Keyword kKeywords[] = {
    {"Start=", &PrnType::xStart},
    {"End=", &PrnType::xEnd},
    {"Step=", StoreStep},
    {"Repeat=", &NPicoHeaderType::npicoRepeat},
    {"IntTime=", &NPicoHeaderType::npicoIntTime},
    {"Input=", &NPicoHeaderType::npicoInput},
    {"Offset=", &NPicoHeaderType::npicoOffset},
    {kLastParameter, StorePoints},
    {"Laserline=", &NPicoHeaderType::npicoLaserLine},
    {"ScanSpeed=", StoreScanSpeed},
    {"BackScans=", &NPicoHeaderType::npicoBackScans},
};

void Store(float& value, std::string_view line) { ScanLine(line, "%*s%g", {&value}); }
void Store(int& value, std::string_view line) { ScanLine(line, "%*s%d", {&value}); }
void Store(Text& value, std::string_view line) { ScanLine(line, "%*s%s", {value}); }

template <class T>
T& In(Scan& scan, T PrnType::*member) {
  return scan.record.*member;
}
template <class T>
T& In(Scan& scan, T NPicoHeaderType::*member) {
  return scan.record.npico.*member;
}

void StoreParameter(Scan& scan, std::string_view line) {
  for (const Keyword& keyword : kKeywords) {
    if (!Contains(line, keyword.word)) continue;
    std::visit(
        [&](auto to) {
          if constexpr (std::is_member_pointer_v<decltype(to)>)
            Store(In(scan, to), line);
          else
            to(scan, line);
        },
        keyword.to);
    return;
  }
}

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

bool ReadParameters(std::istream& in, Scan& scan) {
  Text line;
  while (ReadStartOfLine(in, line)) {
    StoreParameter(scan, TextOf(line));
    if (Contains(TextOf(line), kLastParameter)) return scan.points >= 0;
  }
  return false;
}

// Signal over reference in thousandths; without a reference the raw signal.
float Ratio(float signal, float reference) { return reference != 0 ? signal / reference * 1000 : signal; }

bool IsReadable(const Scan& scan) {
  const bool ratio = scan.record.npico.npicoScanType == kDcDelay && (scan.columns == 2 || scan.columns == 4);
  return scan.columns == 1 || ratio;
}

float ReadPoint(NumberScanner& numbers, const Scan& scan, bool second) {
  float v[4] = {};
  for (int k = 0; k < scan.columns; ++k) numbers.Next(v[k]);
  if (scan.columns == 1) return v[0] / scan.record.npico.npicoIntTime;
  return second ? Ratio(v[2], v[3]) : Ratio(v[0], v[1]);
}

// Points that no rule covers are not read.
void ReadPoints(std::istream& in, const Scan& scan, bool second, float* values) {
  if (!IsReadable(scan)) return;
  NumberScanner numbers(in);
  for (int i = 0; i < scan.points; ++i) {
    const float value = ReadPoint(numbers, scan, second);
    if (numbers.Failed()) return Miss(static_cast<std::size_t>(scan.points - i));
    values[i] = value;
  }
}

void ReadComments(std::istream& in, NPicoHeaderType& block) {
  Text skipped;
  ReadStartOfLine(in, skipped);
  ReadStartOfLine(in, skipped);
  for (Text& comment : block.npicoComments) {
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
  Scan scan{*this};
  if (!ReadParameters(in, scan)) return 0;
  auto values = NewZeroArray(CheckedCount(in, scan.points));
  // Four numbers per point are two signals, loaded by alternate calls.
  const bool twoSignals = kind == kDcDelay && scan.columns == 4;
  ReadPoints(in, scan, twoSignals && *Found().readNext != 0, values.get());
  if (twoSignals) *Found().readNext = *Found().readNext == 0 ? 1 : 0;
  ReadComments(in, npico);
  Own(yArray, std::move(values));
  allocType = AllocY;
  nX = nY = scan.points;
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
