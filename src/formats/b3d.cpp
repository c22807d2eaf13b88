// B3D (grid) and B2D (curve): the exact bits of a record, little-endian.
//
// A header of 40 bytes; X values and Y values, each if the shape has them; for a grid its rows, one per X
// position; then text: axis titles and comment lines, each ended by a line feed. Counts have 16 bits, so an
// axis of more than 32767 points does not come back.
#include <algorithm>
#include <bit>
#include <cstdint>
#include <fstream>
#include <string_view>

#include "dataset/of_record.h"
#include "formats/labels.h"
#include "formats/output_file.h"
#include "kem.h"
#include "load/announced.h"
#include "load/block.h"
#include "record/findings.h"
#include "record/ranges.h"
#include "record/storage.h"
#include "text/fields.h"
#include "text/number_text.h"

using namespace kem::formats;
using namespace kem::load;
using namespace kem::text;
using namespace kem::record;
using kem::formats::WriteLabels;

namespace {

struct Header {
  char tag[6];
  std::int8_t hasX;  // the bits of the shape once more, which no reader looks at
  std::int8_t hasY;
  std::int8_t hasZ;
  std::int8_t shape;
  std::int16_t type;
  float xStart;
  float xEnd;
  float xStep;
  float yStart;
  float yEnd;
  float yStep;
  std::int16_t nX;
  std::int16_t nY;
};
static_assert(sizeof(Header) == 40 && std::endian::native == std::endian::little);

Header HeaderOf(const PrnType& record, std::string_view tag, float yStep) {
  const auto bits = [&record](int mask) { return static_cast<std::int8_t>(record.allocType & mask); };
  Header header{.tag = {},
                .hasX = bits(AllocX),
                .hasY = bits(AllocY),
                .hasZ = bits(AllocZ),
                .shape = bits(0xff),
                .type = static_cast<std::int16_t>(record.fileType),
                .xStart = record.xStart,
                .xEnd = record.xEnd,
                .xStep = record.xStep,
                .yStart = record.yStart,
                .yEnd = record.yEnd,
                .yStep = yStep,
                .nX = static_cast<std::int16_t>(record.nX),
                .nY = static_cast<std::int16_t>(record.nY)};
  std::copy_n(tag.begin(), sizeof header.tag, header.tag);
  return header;
}

// Reads the header into a fresh record. Returns the shape, or AllocNone when the file is too short or the shape
// is not one of the wanted.
int ReadHeader(PrnType& record, std::istream& in, std::initializer_list<AllocType> wanted) {
  Header header;
  in.seekg(0);
  if (!in.read(reinterpret_cast<char*>(&header), sizeof header)) return AllocNone;
  record.fileType = header.type;
  record.xStart = header.xStart;
  record.xEnd = header.xEnd;
  record.xStep = header.xStep;
  record.yStart = header.yStart;
  record.yEnd = header.yEnd;
  record.yStep = header.yStep;
  record.nX = header.nX;
  record.nY = header.nY;
  const bool suits = std::find(wanted.begin(), wanted.end(), header.shape) != wanted.end();
  return suits ? int{header.shape} : int{AllocNone};
}

void WriteRow(OutputFile& out, const float* row, int count) {
  out.Write(row, static_cast<std::size_t>(count) * sizeof(float));
}

// A value that the file holds in part only is 0 like those that it does not hold.
void ReadRow(std::istream& in, float* row, int count) {
  in.read(reinterpret_cast<char*>(row), static_cast<std::streamsize>(sizeof(float)) * count);
  const auto got = static_cast<std::size_t>(in.gcount());
  const auto held = static_cast<int>(got / sizeof(float));
  Miss(static_cast<std::size_t>(std::max(count, 0) - held));
  if (count > held) std::fill(row + held, row + count, 0.0f);
}

// Rows of which the file holds a value, at most as many as the grid has.
int RowsHeld(std::istream& in, int rows, int columns) {
  if (rows == 0) return 0;
  const std::size_t row = sizeof(float) * static_cast<std::size_t>(columns);
  return static_cast<int>(std::min(static_cast<std::size_t>(rows), (BytesLeft(in) + row - 1) / row));
}

// Reads rows some at a time: to ask the system for each would take longer than to copy it.
void ReadRows(std::istream& in, float* const* rows, int count, int columns, RunningRange& range) {
  constexpr int kBlock = 1 << 14;
  const int together = std::clamp(kBlock / std::max(columns, 1), 1, std::max(count, 1));
  const auto block = NewArray(together * columns);
  for (int row = 0; row < count;) {
    const int some = std::min(together, count - row);
    ReadRow(in, block.get(), some * columns);
    const float* from = block.get();
    for (int k = 0; k < some; ++k, from += columns) range.Copy(from, columns, rows[row++]);
  }
}

// A grid, of which rows that the file does not hold are 0.
Grid ReadGrid(std::istream& in, int rows, int columns, RunningRange& range) {
  const int held = RowsHeld(in, rows, columns);
  Grid grid = NewZeroGrid(rows, columns, held);
  ReadRows(in, grid.get(), held, columns, range);
  Miss(static_cast<std::size_t>(rows - held) * static_cast<std::size_t>(columns));
  for (int row = held; row < rows; ++row) range.Extend(grid[row], columns);
  return grid;
}

// Lines that cannot be read leave a title as it was and a comment empty.
void ReadLabels(PrnType& record, std::istream& in, std::initializer_list<Text*> titles) {
  Text line;
  for (Text* title : titles)
    if (in.good() && ReadLine(in, line)) CopyText(*title, TextOf(line));
  for (Text& comment : record.commentLines) {
    const bool got = in.good() && ReadLine(in, line);
    CopyText(comment, got ? TextOf(line) : "");
  }
}

}  // namespace

int PrnType::WriteB3D(char* const name) const {
  if (!OwnsArrays(allocType) || !Is3D()) return 0;
  OutputFile out(name, std::ios::binary);
  if (!out.IsOpen()) return 0;
  const Header header = HeaderOf(*this, "[B3D]\n", yStep);
  out.Write(&header, sizeof header);
  if (HasX()) WriteRow(out, xArray, nX);
  if (HasY()) WriteRow(out, yArray, nY);
  for (int i = 0; i < nX; ++i) WriteRow(out, zArray[i], nY);
  WriteLabels(out, *this);
  return 1;
}

// Steps along Y mean nothing to a curve and are stored as 0.
int PrnType::WriteB2D(char* const name) const {
  if (!OwnsArrays(allocType) || Is3D()) return 0;
  OutputFile out(name, std::ios::binary);
  if (!out.IsOpen()) return 0;
  const Header header = HeaderOf(*this, "[B2D]\n", 0);
  out.Write(&header, sizeof header);
  if (HasX()) WriteRow(out, xArray, nY);
  WriteRow(out, yArray, nY);
  WriteLabels(out, *this);
  return 1;
}

int PrnType::ReadB3D(std::ifstream& in) {
  if (in.fail()) return 0;
  Reset(*this);
  const int shape = ReadHeader(*this, in, {AllocZ, AllocXZ, AllocYZ, AllocXYZ});
  if (shape == AllocNone) return 0;
  int rows = nX;
  int columns = nY;
  CheckGrid(in, rows, columns);
  auto x = shape & AllocX ? NewZeroArray(nX) : nullptr;
  auto y = shape & AllocY ? NewZeroArray(nY) : nullptr;
  if (x) ReadRow(in, x.get(), nX);
  if (y) ReadRow(in, y.get(), nY);
  RunningRange range;
  Grid z = ReadGrid(in, rows, columns, range);
  Own(xArray, std::move(x));
  Own(yArray, std::move(y));
  Own(zArray, std::move(z));
  nX = rows;
  nY = columns;
  allocType = shape;
  fileType = FileP3D;
  ReadLabels(*this, in, {&xLabel, &yLabel, &zLabel});
  return Finish(*this, range, in);
}

// A curve has one count, the second; arrays have room for the first as well, should it be larger.
int PrnType::ReadB2D(std::ifstream& in) {
  if (in.fail()) return 0;
  Reset(*this);
  const int shape = ReadHeader(*this, in, {AllocY, AllocXY});
  if (shape == AllocNone) return 0;
  const int room = std::max(CheckedCount(in, nX), CheckedCount(in, nY));
  auto x = shape & AllocX ? NewZeroArray(room) : nullptr;
  auto y = NewZeroArray(room);
  if (x) ReadRow(in, x.get(), nY);
  ReadRow(in, y.get(), nY);
  Own(xArray, std::move(x));
  Own(yArray, std::move(y));
  allocType = shape;
  fileType = FileP2D;
  nX = nY;
  ReadLabels(*this, in, {&xLabel, &yLabel});
  return Finish(*this, in);
}

// ------------------------------------------------------------ as a dataset

namespace kem::dataset {
const Reader kB3DReader{"B3D binary grid", ".b3d", [](Source& source) { return Begins(source, "[B3D]"); }, OneItem,
                        OpenOne<&PrnType::ReadB3D, kNoUnits>};

const Reader kB2DReader{"B2D binary curve", ".b2d", [](Source& source) { return Begins(source, "[B2D]"); }, OneItem,
                        OpenOne<&PrnType::ReadB2D, kNoUnits>};

}  // namespace kem::dataset
