// CVT: a curve as six header lines and one number per line.
//
//   ca          5                the number of points                 "XY: #points:"   5
//   X title                                                           X title
//   Y title                                                           Y title
//   "start      :" 10            the axis                             "start      :" 10
//   "increment  :" 2                                                  "end        :" 18
//   (empty)                                                           (empty)
//   Y values                     all Y, then all X values             Y values, X values
#include <fstream>
#include <string_view>

#include "dataset/of_record.h"
#include "formats/output_file.h"
#include "kem.h"
#include "load/announced.h"
#include "record/findings.h"
#include "record/headers.h"
#include "record/storage.h"
#include "text/fields.h"
#include "text/number_scanner.h"
#include "text/number_text.h"
#include "text/words.h"

using namespace kem::formats;
using namespace kem::load;
using namespace kem::text;
using namespace kem::record;

namespace {

enum : std::size_t { kCount, kXTitle, kYTitle, kStart, kStep, kCvtLines = 6 };

constexpr std::string_view kXYTag = "XY:";

void WriteColumn(OutputFile& out, const float* values, int count) {
  for (int i = 0; i < count; ++i) out << values[i] << '\n';
}

// The number of values read decides, not the count in the header.
int ReadDefined(PrnType& record, std::ifstream& in, const Text& start, const Text& step) {
  if (!record.ReadDumbOne(in)) return 0;
  record.fileType = FileCvt;
  record.xStart = 0;
  record.xStep = 1;
  ScanLine(start, "%*[\"start :] %g", {&record.xStart});
  ScanLine(step, "%*[\"increment :] %g", {&record.xStep});
  record.xEnd = static_cast<float>(record.nY - 1) * record.xStep + record.xStart;
  return 1;
}

// A file may end within its X values, but not within its Y values.
int ReadStored(PrnType& record, std::ifstream& in, const Text& points) {
  int n = -1;
  ScanLine(points, "%*[\"XY: #points:\"] %d", {&n});
  if (n < 0) return 0;
  const auto count = static_cast<std::size_t>(CheckedCount(in, n));
  auto y = NewZeroArray(n);
  auto x = NewZeroArray(n);
  Miss(ScanNumbers(in, {y.get(), count}));
  if (in.fail()) return 0;
  Miss(ScanNumbers(in, {x.get(), count}));
  Own(record.yArray, std::move(y));
  Own(record.xArray, std::move(x));
  record.allocType = AllocXY;
  record.nX = record.nY = n;
  return Finish(record, in);
}

}  // namespace

int PrnType::WriteCvt(char* const name) const {
  if (!OwnsArrays(allocType) || Is3D()) return 0;
  OutputFile out(name, {});
  if (!out.IsOpen()) return 0;
  const bool stored = allocType == AllocXY;
  const Titles titles = RowOf(fileType).titles(*this);
  out << (stored ? " \"XY: #points:\"   " : "ca          ") << nY << '\n' << titles.x << '\n' << titles.y << '\n';
  out << "\"start      :\" " << xStart << '\n';
  out << (stored ? "\"end        :\" " : "\"increment  :\" ") << (stored ? xEnd : xStep) << "\n\n";
  WriteColumn(out, yArray, nY);
  if (stored) WriteColumn(out, xArray, nY);
  return 1;
}

int PrnType::ReadCvt(std::ifstream& in) {
  Reset(*this);
  Text header[kCvtLines] = {};
  for (Text& line : header) ReadTrimmedLine(in, line);
  if (in.fail()) return 0;
  CopyText(xLabel, TextOf(header[kXTitle]));
  CopyText(yLabel, TextOf(header[kYTitle]));
  if (Contains(header[kCount], kXYTag)) return ReadStored(*this, in, header[kCount]);
  return ReadDefined(*this, in, header[kStart], header[kStep]);
}

// ------------------------------------------------------------ as a dataset

namespace kem::dataset {
namespace {

constexpr std::string_view kCountTag = "ca ";

Dataset OpenCvt(Source& source, int item) {
  Dataset d = OpenOne<&PrnType::ReadCvt, kNoUnits>(source, item);
  const std::string_view head = source.Head();
  const std::string_view first = head.substr(0, head.find_first_of("\r\n"));
  const auto announced = first.starts_with(kCountTag) ? NumberIn(first.substr(kCountTag.size())) : std::nullopt;
  if (const auto count = static_cast<double>(d.values.Count()); announced && *announced != count)
    d.notes.push_back({count < *announced ? Severity::Damaged : Severity::Doubtful,
                       "holds " + std::to_string(d.values.Count()) + " points; its first line announces " +
                           std::string(Trimmed(first.substr(kCountTag.size())))});
  return d;
}

}  // namespace

const Reader kCvtReader{"CVT curve", ".cvt",
                        [](Source& source) -> std::string {
                          Lines lines(source.Head());
                          std::string_view line;
                          for (std::size_t k = 0; k < kCvtLines && lines.Next(line); ++k)
                            if (k == kStart && Contains(line, "start")) return "line 4 begins with \"start\"";
                          return {};
                        },
                        OneItem, OpenCvt};

}  // namespace kem::dataset
