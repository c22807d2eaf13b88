// P3D (grid) and P2D (curve): text that a person can read and edit.
//
//   [P3D]                   [P2D]
//   X, Y and Z title        X and Y title
//   comment lines           comment lines        at most 12 are read
//   [X] ARRAY 3             [X] ARRAY 3          the count, then the values
//   400 410 425             400 410 425
//   [Y] DEFINITION          [Y]
//   0 2 1                   7 8 9
//   [Z]                                          or start, end and step of an axis that is not stored
//   1 2 3
//   4 5 6                                        a line runs across X, one line per Y position
#include <cmath>
#include <fstream>
#include <memory>

#include "dataset/of_record.h"
#include "formats/labels.h"
#include "formats/output_file.h"
#include "kem.h"
#include "load/announced.h"
#include "record/axis.h"
#include "record/findings.h"
#include "record/storage.h"
#include "text/fields.h"
#include "text/number_scanner.h"
#include "text/number_text.h"

using namespace kem::formats;
using namespace kem::load;
using namespace kem::text;
using namespace kem::record;
using kem::formats::WriteLabels;

namespace {

// The section of an axis.
struct Section {
  std::string_view tag;
  const AxisFields& axis;
};

constexpr Section kXSection{"[X]", kX};
constexpr Section kYSection{"[Y]", kY};

void WriteValues(OutputFile& out, const float* values, int count) {
  for (int i = 0; i < count; ++i) out << values[i] << ' ';
  out << '\n';
}

void WriteAxis(OutputFile& out, const PrnType& record, const Section& section) {
  const AxisFields& axis = section.axis;
  out << section.tag;
  if (axis.IsStoredIn(record)) {
    out << " ARRAY " << record.*axis.count << '\n';
    WriteValues(out, record.*axis.values, record.*axis.count);
  } else {
    out << " DEFINITION\n";
    out << record.*axis.start << ' ' << record.*axis.end << ' ' << record.*axis.step << '\n';
  }
}

// Reads lines until the one at hand has the tag. Returns whether there is one.
bool FindLine(std::istream& in, Text& line, std::string_view tag) {
  while (!Contains(line, tag) && in.good()) ReadTrimmedLine(in, line);
  return Contains(line, tag);
}

// The line with the X section's tag counts as one of the 12, too.
void ReadComments(PrnType& record, std::istream& in, Text& line) {
  for (Text& comment : record.commentLines) CopyText(comment, "");
  Text* next = record.commentLines;
  for (int read = 0; read < kCommentLines; ++read) {
    ReadTrimmedLine(in, line);
    if (Contains(line, kXSection.tag)) return;
    CopyText(*next++, TextOf(line));
    if (!in.good()) return;
  }
}

// Returns the values of a stored axis. Otherwise the axis is defined by what the file says, or as it was.
std::unique_ptr<float[]> ReadAxis(PrnType& record, const Section& section, std::istream& in, Text& line) {
  const AxisFields& axis = section.axis;
  if (!FindLine(in, line, section.tag)) return nullptr;
  if (Contains(line, "ARRAY")) {
    int& count = record.*axis.count;
    ScanLine(line, "%*s %*s %d", {&count});
    if (count == 0) return nullptr;
    auto values = NewZeroArray(CheckedCount(in, count));
    Miss(ScanNumbers(in, {values.get(), static_cast<std::size_t>(count)}));
    return values;
  }
  if (Contains(line, "DEFIN")) {
    ReadTrimmedLine(in, line);
    ScanLine(line, "%g %g %g", {&(record.*axis.start), &(record.*axis.end), &(record.*axis.step)});
  }
  return nullptr;
}

// Steps of a defined axis from its start to its end, in either direction.
int StepsOf(const PrnType& record, const AxisFields& axis, std::istream& in) {
  const float steps = (record.*axis.end - record.*axis.start) / record.*axis.step;
  return CheckedCount(in, std::floor(std::fabs(double{steps}) + 0.5));
}

void ScanGrid(std::istream& in, float* const* rows, int nX, int nY) {
  NumberScanner scan(in);
  auto left = static_cast<std::size_t>(nX) * static_cast<std::size_t>(nY);
  for (int j = 0; j < nY && scan.Good(); ++j)
    for (int i = 0; i < nX && scan.Good(); ++i, --left) scan.Next(rows[i][j]);
  Miss(left);
}

}  // namespace

int PrnType::WriteP3D(char* const name) const {
  if (!OwnsArrays(allocType) || !Is3D()) return 0;
  OutputFile out(name, {});
  if (!out.IsOpen()) return 0;
  out << "[P3D]\n";
  WriteLabels(out, *this);
  WriteAxis(out, *this, kXSection);
  WriteAxis(out, *this, kYSection);
  out << "[Z]\n";
  for (int j = 0; j < nY; ++j) {
    for (int i = 0; i < nX; ++i) out << zArray[i][j] << ' ';
    out << '\n';
  }
  return 1;
}

int PrnType::WriteP2D(char* const name) const {
  if (!OwnsArrays(allocType) || Is3D()) return 0;
  OutputFile out(name, {});
  if (!out.IsOpen()) return 0;
  out << "[P2D]\n";
  WriteLabels(out, *this);
  WriteAxis(out, *this, kXSection);
  out << "[Y]\n";
  WriteValues(out, yArray, nY);
  return 1;
}

// The points of a defined axis of a grid are its steps; of a curve they are one more. Existing files rely on
// both, see "p3d: the points of a defined axis".
int PrnType::ReadP3D(std::ifstream& in) {
  if (in.fail()) return 0;
  Reset(*this);
  Text line = {};
  FindLine(in, line, "[P3D]");
  if (in.fail()) return 0;
  fileType = FileP3D;
  for (Text* label : {&xLabel, &yLabel, &zLabel}) ReadTrimmedLine(in, *label);
  ReadComments(*this, in, line);
  auto x = ReadAxis(*this, kXSection, in, line);
  auto y = ReadAxis(*this, kYSection, in, line);
  if (!x) nX = StepsOf(*this, kX, in);
  if (!y) nY = StepsOf(*this, kY, in);
  CheckGrid(in, nX, nY);
  Grid z = NewZeroGrid(nX, nY);
  line[0] = '\0';
  FindLine(in, line, "[Z]");
  ScanGrid(in, z.get(), nX, nY);
  allocType = AllocZ | (x ? AllocX : 0) | (y ? AllocY : 0);
  Own(xArray, std::move(x));
  Own(yArray, std::move(y));
  Own(zArray, std::move(z));
  return Finish(*this, in);
}

int PrnType::ReadP2D(std::ifstream& in) {
  if (in.fail()) return 0;
  Reset(*this);
  Text line = {};
  FindLine(in, line, "[P2D]");
  if (in.fail()) return 0;
  fileType = FileP2D;
  for (Text* label : {&xLabel, &yLabel}) ReadTrimmedLine(in, *label);
  ReadComments(*this, in, line);
  auto x = ReadAxis(*this, kXSection, in, line);
  if (!x) nX = StepsOf(*this, kX, in) + 1;
  nY = nX;
  auto y = NewZeroArray(nY);
  line[0] = '\0';
  FindLine(in, line, kYSection.tag);
  Miss(ScanNumbers(in, {y.get(), static_cast<std::size_t>(nY)}));
  allocType = x ? AllocXY : AllocY;
  Own(xArray, std::move(x));
  Own(yArray, std::move(y));
  return Finish(*this, in);
}

// ------------------------------------------------------------ as a dataset

namespace kem::dataset {
const Reader kP3DReader{"P3D text grid", ".p3d", [](Source& source) { return Begins(source, "[P3D]"); }, OneItem,
                        OpenOne<&PrnType::ReadP3D, kNoUnits>};

const Reader kP2DReader{"P2D text curve", ".p2d", [](Source& source) { return Begins(source, "[P2D]"); }, OneItem,
                        OpenOne<&PrnType::ReadP2D, kNoUnits>};

}  // namespace kem::dataset
