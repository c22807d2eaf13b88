// Plain columns of numbers in text.
//
// XY prn: seven header lines (tag, X title, Y title, start, stop, name, empty), then X/Y pairs.
// NXY: "NXY <count> <X title>", a title per Y column, four more lines of which the third is a name, then rows
// of X and all Y values; one column is loaded.
#include <fstream>
#include <new>
#include <string>
#include <vector>

#include "formats/output_file.h"
#include "kem.h"
#include "load/block.h"
#include "load/items.h"
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

// Zeroes axes and counts of a record that is about to receive columns; labels and file name stay.
void ClearForColumns(PrnType& record) {
  record.xStep = record.xStart = record.xEnd = 0;
  record.yStep = record.yStart = record.yEnd = 0;
  record.zMin = record.zMax = 0;
  record.nX = record.nY = 0;
  record.allocType = AllocNone;
}

// Whether there is memory for one more value.
bool Push(std::vector<float>& values, float value) try {
  values.push_back(value);
  return true;
} catch (const std::bad_alloc&) {
  return false;
}

// Takes rows up to the first that the stream does not hold as a whole, and makes their columns the arrays of the
// record. Returns false when there is no memory for a working buffer.
template <class ScanRow>
bool ReadColumns(PrnType& record, AllocType shape, std::istream& in, ScanRow scanRow) {
  std::vector<float> xs;
  std::vector<float> ys;
  NumberScanner scan(in);
  for (float x = 0, y = 0;;) {
    scanRow(scan, x, y);
    if (!scan.Good()) break;
    if ((shape == AllocXY && !Push(xs, x)) || !Push(ys, y)) return false;
  }
  const int count = static_cast<int>(ys.size());
  auto array = ArrayOf(ys, count);
  if (shape == AllocXY) Own(record.xArray, ArrayOf(xs, count));
  Own(record.yArray, std::move(array));
  record.allocType = shape;
  record.nX = record.nY = count;
  return true;
}

// Places of the header lines of an XY prn file.
enum : std::size_t { kXTitleLine = 1, kYTitleLine = 2, kNameLine = 5, kHeaderLines = 7 };

// Fails the stream when there is no line left to skip.
void SkipLines(std::istream& in, int count) {
  Text line;
  for (; count > 0 && !in.fail(); --count) ReadLine(in, line);
}

template <class Test>
std::string TakeWhile(std::istream& in, Test test) {
  std::string taken;
  while (in.good() && test(in.peek())) taken += static_cast<char>(in.get());
  return taken;
}

// Takes a word and the number of columns, 0 when there is none. In `in >> count` the host's locale, which may
// group digits, would have a say.
int TakeColumnCount(std::istream& in) {
  const auto isSpace = [](int c) { return c == ' ' || (c >= '\t' && c <= '\r'); };
  TakeWhile(in, isSpace);
  TakeWhile(in, [&](int c) { return c >= 0 && !isSpace(c); });
  TakeWhile(in, isSpace);
  int count = 0;
  ParseLenient(TakeWhile(in, [](int c) { return c >= '0' && c <= '9'; }), count);
  return count;
}

}  // namespace

int PrnType::ReadXYPrn(std::ifstream& in) {
  if (in.fail()) return 0;
  Reset(*this);
  Text header[kHeaderLines] = {};
  for (Text& line : header) {
    ReadTrimmedLine(in, line);
    if (!in.good()) break;
  }
  if (in.fail()) return 0;
  ReadDumbTwo(in);  // whatever comes of it
  fileType = FileXY;
  CopyText(xLabel, TextOf(header[kXTitleLine]));
  CopyText(yLabel, TextOf(header[kYTitleLine]));
  CopyText(zLabel, TextOf(header[kNameLine]));
  if (in.bad()) return 0;
  active = 1;
  return 1;
}

int PrnType::ReadDumbTwo(std::ifstream& in) {
  if (in.fail()) return 0;
  ClearForColumns(*this);
  const auto scanPair = [](NumberScanner& scan, float& x, float& y) {
    scan.Next(x);
    scan.Next(y);
  };
  if (!ReadColumns(*this, AllocXY, in, scanPair)) return 0;
  fileType = FileXY;
  return Finish(*this, in);
}

int PrnType::ReadDumbOne(std::ifstream& in) {
  if (in.fail()) return 0;
  ClearForColumns(*this);
  if (!ReadColumns(*this, AllocY, in, [](NumberScanner& scan, float&, float& y) { scan.Next(y); })) return 0;
  fileType = FileCvt;
  xEnd = static_cast<float>(nY - 1);
  return Finish(*this, in);
}

int PrnType::ReadNXYPrn(std::ifstream& in, int& count, int index) {
  if (in.fail()) return 0;
  Reset(*this);
  const int k = index == 0 ? 1 : index;
  count = TakeColumnCount(in);
  if (count < 1 || k < 1 || k > count) return 0;
  ReadLine(in, xLabel);
  SkipLines(in, k - 1);
  ReadLine(in, yLabel);
  SkipLines(in, count - k);
  SkipLines(in, 2);
  ReadLine(in, zLabel);
  SkipLines(in, 1);
  if (in.fail()) return 0;
  // X, then every column, of which the k-th is kept.
  const auto scanRow = [columns = count, k](NumberScanner& scan, float& x, float& y) {
    float other = 0;
    scan.Next(x);
    for (int column = 1; column <= columns && scan.Good(); ++column) scan.Next(column == k ? y : other);
  };
  if (!ReadColumns(*this, AllocXY, in, scanRow)) return 0;
  *Found().readNext = k == count ? 0 : k;
  return Finish(*this, in);
}

void kem::load::ListNXY(std::istream& in, ItemList& items) {
  SeekTo(in, 0);
  TakeColumnCount(in);
  SkipLines(in, 1);
  for (KemItem& item : items) ReadTrimmedLine(in, item.title);
}

int PrnType::WriteXYPrn(char* const name) const {
  if (!OwnsArrays(allocType) || Is3D()) return 0;
  OutputFile out(name, {});
  if (!out.IsOpen()) return 0;
  const Titles titles = RowOf(fileType).titles(*this);
  const bool stored = HasX() && nX > 0 && xArray;
  out << "XY\n" << titles.x << '\n' << titles.y << '\n';
  out << "\"Start : \"" << (stored ? xArray[0] : xStart) << '\n';
  out << "\"Stop  : \"" << (stored ? xArray[nX - 1] : xEnd) << '\n';
  out << TextOf(fileName) << "\n\n";
  float x = xStart;
  for (int i = 0; i < nY; ++i, x += xStep) out.WritePair(stored ? xArray[i] : x, "   ", yArray[i]);
  return 1;
}
