// JCAMP-DX: curves as labelled lines, written as one block, read as one or more whose points are joined.
//
//   ##TITLE=...                 the preamble, up to the number of blocks or of points
//   ##BLOCKS=2
//   ##TITLE=...                 each block: labels, then pairs of numbers
//   ##XUNITS=nm
//   ##NPOINTS=3
//   ##XYDATA=(XY..XY)
//   400  0.25                   or 400, 0.25; 401, 0.5;
//
// Numbers are taken as they stand: factors are not applied, compressed tables are not decoded.
#include <algorithm>
#include <fstream>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "formats/output_file.h"
#include "kem.h"
#include "load/announced.h"
#include "load/keywords.h"
#include "record/findings.h"
#include "record/headers.h"
#include "record/storage.h"
#include "text/fields.h"
#include "text/number_scanner.h"
#include "text/number_text.h"

using namespace kem::formats;
using namespace kem::load;
using namespace kem::text;
using namespace kem::record;

namespace {

struct Counts {
  int blocks = 1;
  int points = 0;      // of the block at hand
  bool ended = false;  // the lines before the next part of the file
};

std::optional<std::string_view> BehindEquals(std::string_view line) {
  const auto equals = line.find('=');
  if (equals == line.npos) return std::nullopt;
  return line.substr(equals + 1);
}

template <int Counts::*count>
void EndWith(PrnType&, Counts& counts, std::string_view line) {
  if (const auto value = BehindEquals(line)) StoreValue(counts.*count, *value);
  counts.ended = true;
}

// Units have at most seven characters here; a longer text, such as a title, is left out.
template <Text PrnType::*field>
void StoreUnit(PrnType& record, Counts&, std::string_view line) {
  if (const auto value = BehindEquals(line)) CopyText(record.*field, value->size() < 8 ? *value : "");
}

// Blocks may differ; what remains is a factor other than 1.
template <float* Findings::*factor>
void StoreFactor(PrnType&, Counts&, std::string_view line) {
  float scanned = 1;
  if (const auto value = BehindEquals(line)) StoreValue(scanned, *value);
  if (scanned != 1) *(Found().*factor) = scanned;
}

using Label = Keyword<PrnType, Counts>;

constexpr Label kPreamble[] = {
    {"##TITLE", StoreUnit<&PrnType::fileName>},     {"##BLOCKS", EndWith<&Counts::blocks>},
    {"##NBLOCKS", EndWith<&Counts::blocks>},        {"##NPOINTS", EndWith<&Counts::points>},
    {"##XFACTOR", StoreFactor<&Findings::xFactor>}, {"##YFACTOR", StoreFactor<&Findings::yFactor>},
};

constexpr Label kBlock[] = {
    {"##XUNITS", StoreUnit<&PrnType::xLabel>},
    {"##YUNITS", StoreUnit<&PrnType::yLabel>},
    {"##TITLE", StoreUnit<&PrnType::zLabel>},
    {"##NPOINTS", &Counts::points},
    {"##XYDATA", &Counts::ended},
    {"##XFACTOR", StoreFactor<&Findings::xFactor>},
    {"##YFACTOR", StoreFactor<&Findings::yFactor>},
};

// Takes what a line says. Returns whether there are more before the next part of the file.
bool TakeLabel(std::string_view line, std::span<const Label> labels, PrnType& record, Counts& counts) {
  counts.ended = false;
  if (const Label* label = FirstIn(line, labels)) Store(label->to, line, BehindEquals, record, counts);
  return !counts.ended;
}

void ReadPreamble(std::istream& in, PrnType& record, Counts& counts) {
  Text line = {};
  do {
    ReadStartOfLine(in, line);
    TrimTrailing(line);
  } while (TakeLabel(line, kPreamble, record, counts) && in.good());
}

void ReadBlockHeader(std::istream& in, PrnType& record, Counts& counts) {
  Text line = {};
  do ReadStartOfLine(in, line);
  while (TakeLabel(line, kBlock, record, counts) && in.good() && in.peek() == '#');
}

// Points of all blocks: those that the file announces, and those that were there. Memory follows the latter.
struct Points {
  double announced = 0;
  std::vector<float> xs;
  std::vector<float> ys;
};

void ReadPoints(std::istream& in, int count, Points& points) {
  NumberScanner scan(in, ",;");
  for (int k = 0; k < count && scan.Good(); ++k) {
    float x = 0;
    float y = 0;
    scan.Next(x);
    scan.Next(y);
    points.xs.push_back(x);
    points.ys.push_back(y);
  }
}

Points ReadBlocks(std::istream& in, PrnType& record, Counts& counts) {
  Points points;
  int left = counts.blocks;
  for (; left > 0 && in.good(); --left) {
    ReadBlockHeader(in, record, counts);
    ReadPoints(in, CheckedCount(in, counts.points), points);
    points.announced += counts.points;
  }
  points.announced += static_cast<double>(left) * counts.points;  // blocks that never come
  return points;
}

// Moves the last of the values held to the end of an array of `count`, so that there are zeros from `at` on.
void OpenGap(float* values, int at, int held, int count) {
  std::copy_backward(values + at, values + held, values + count);
  std::fill(values + at, values + std::min(held, at + count - held), 0.0f);
}

// Sorts the points. Those that are announced and not there are 0, and have their place among the others.
void SortPoints(PrnType& record, int held, int count) {
  record.nX = record.nY = held;
  record.SortAxes();
  const float* x = record.xArray;
  const auto at = static_cast<int>(std::partition_point(x, x + held, [](float v) { return v <= 0; }) - x);
  for (float* values : {record.xArray, record.yArray}) OpenGap(values, at, held, count);
  record.nX = record.nY = count;
}

}  // namespace

int PrnType::WriteDX(char* const name) const {
  if (!OwnsArrays(allocType) || Is3D()) return 0;
  OutputFile out(name, {});
  if (!out.IsOpen()) return 0;
  const Titles titles = RowOf(fileType).titles(*this);
  out << "##TITLE=" << TextOf(fileName) << "\n##JCAMP-DX=4.24\n##DATA TYPE=" << RowOf(fileType).dataType << '\n';
  out << "##ORIGIN=kem_file\n##OWNER=\n##DATE=\n##BLOCKS=1\n##$SLIT=0.0\n";
  out << "##XUNITS=" << titles.x << "\n##YUNITS=" << titles.y << "\n##XFACTOR=1.0\n##YFACTOR=1.0\n";
  // The fields as they are, also for a stored axis; FIRSTY is the smallest value, not the first.
  out << "##DELTAX=" << xStep << "\n##FIRSTX=" << xStart << "\n##LASTX=" << xEnd << '\n';
  out << "##NPOINTS=" << nY << "\n##FIRSTY=" << yStart << "\n##XYDATA=(XY..XY)\n";
  float x = xStart;
  for (int i = 0; i < nY; ++i, x += xStep) out.WritePair(HasX() ? xArray[i] : x, "  ", yArray[i]);
  out << "##END=" << TextOf(fileName) << '\n';
  return 1;
}

int PrnType::ReadDX(std::ifstream& in) {
  if (in.fail()) return 0;
  const EmptyOnThrow guard(*this);
  Reset(*this);
  *Found().xFactor = 1;
  *Found().yFactor = 1;
  Counts counts;
  ReadPreamble(in, *this, counts);
  if (counts.blocks > 0) {
    const Points points = ReadBlocks(in, *this, counts);
    const int count = CheckedCount(in, points.announced);
    auto x = ArrayOf(points.xs, count);
    auto y = ArrayOf(points.ys, count);
    Own(xArray, std::move(x));
    Own(yArray, std::move(y));
    allocType = AllocXY;
    SortPoints(*this, static_cast<int>(points.xs.size()), count);
  }
  return Finish(*this, in);
}
