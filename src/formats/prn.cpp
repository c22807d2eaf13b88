// Plain columns of numbers in text.
//
// XY prn: seven header lines (tag, X title, Y title, start, stop, name, empty), then X/Y pairs.
// NXY: "NXY <count> <X title>", a title per Y column, four more lines of which the third is a name, then rows
// of X and all Y values; one column is loaded.
#include <algorithm>
#include <fstream>
#include <memory>
#include <new>
#include <string>

#include "formats/output_file.h"
#include "kem.h"
#include "load/block.h"
#include "load/items.h"
#include "record/findings.h"
#include "record/storage.h"
#include "text/fields.h"
#include "text/number_scanner.h"
#include "text/number_text.h"

using namespace kem::formats;
using namespace kem::load;
using namespace kem::text;
using namespace kem::record;

namespace {

// A working buffer of floats that doubles in size. Push tells whether there was memory.
class FloatBuffer {
 public:
  explicit FloatBuffer(std::size_t capacity) : capacity_(capacity), values_(new (std::nothrow) float[capacity]) {}

  bool Push(float value) {
    if (!values_ || (size_ == capacity_ && !Grow())) return false;
    values_[size_++] = value;
    return true;
  }

  int Size() const { return static_cast<int>(size_); }

  std::unique_ptr<float[]> Exact() const {
    auto array = NewArray(Size());
    std::copy_n(values_.get(), size_, array.get());
    return array;
  }

 private:
  bool Grow() {
    std::unique_ptr<float[]> larger(new (std::nothrow) float[capacity_ * 2]);
    if (!larger) return false;
    std::copy_n(values_.get(), size_, larger.get());
    values_ = std::move(larger);
    capacity_ *= 2;
    return true;
  }

  std::size_t capacity_;
  std::size_t size_ = 0;
  std::unique_ptr<float[]> values_;
};

constexpr std::size_t kColumnCapacity = 128;

// Zeroes axes and counts of a record that is about to receive columns; labels and file name stay.
void ClearForColumns(PrnType& record) {
  record.xStep = record.xStart = record.xEnd = 0;
  record.yStep = record.yStart = record.yEnd = 0;
  record.zMin = record.zMax = 0;
  record.nX = record.nY = 0;
  record.allocType = AllocNone;
}

// Makes the columns read the arrays of the record.
void TakeColumns(PrnType& record, const FloatBuffer* xs, const FloatBuffer& ys) {
  auto x = xs ? xs->Exact() : nullptr;
  auto y = ys.Exact();
  if (xs) Own(record.xArray, std::move(x));
  Own(record.yArray, std::move(y));
  record.allocType = xs ? AllocXY : AllocY;
  record.nX = record.nY = ys.Size();
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

// A row of an NXY file: X, then every column, of which the k-th is kept.
void ScanRow(NumberScanner& scan, int columns, int k, float& x, float& y) {
  float other = 0;
  scan.Next(x);
  for (int column = 1; column <= columns && scan.Good(); ++column) scan.Next(column == k ? y : other);
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
  ReadDumbTwo(in);
  fileType = FileXY;
  CopyText(xLabel, TextOf(header[kXTitleLine]));
  CopyText(yLabel, TextOf(header[kYTitleLine]));
  CopyText(zLabel, TextOf(header[kNameLine]));
  return Finish(*this, in);
}

int PrnType::ReadDumbTwo(std::ifstream& in) {
  if (in.fail()) return 0;
  FloatBuffer xs(kColumnCapacity);
  FloatBuffer ys(kColumnCapacity);
  ClearForColumns(*this);
  NumberScanner scan(in);
  for (float x = 0, y = 0;;) {
    scan.Next(x);
    scan.Next(y);
    if (!scan.Good()) break;
    if (!xs.Push(x) || !ys.Push(y)) return 0;
  }
  TakeColumns(*this, &xs, ys);
  fileType = FileXY;
  return Finish(*this, in);
}

int PrnType::ReadDumbOne(std::ifstream& in) {
  if (in.fail()) return 0;
  FloatBuffer ys(kColumnCapacity);
  ClearForColumns(*this);
  NumberScanner scan(in);
  for (float y = 0;;) {
    scan.Next(y);
    if (!scan.Good()) break;
    if (!ys.Push(y)) return 0;
  }
  TakeColumns(*this, nullptr, ys);
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
  FloatBuffer xs(kColumnCapacity / 2);
  FloatBuffer ys(kColumnCapacity / 2);
  NumberScanner scan(in);
  for (float x = 0, y = 0;;) {
    ScanRow(scan, count, k, x, y);
    if (!scan.Good()) break;
    if (!xs.Push(x) || !ys.Push(y)) return 0;
  }
  TakeColumns(*this, &xs, ys);
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
  Text xTitle;
  Text yTitle;
  Text zTitle;
  LabelAxes(xTitle, yTitle, zTitle);
  const bool stored = HasX() && nX > 0 && xArray;
  out << "XY\n" << xTitle << '\n' << yTitle << '\n';
  out << "\"Start : \"" << (stored ? xArray[0] : xStart) << '\n';
  out << "\"Stop  : \"" << (stored ? xArray[nX - 1] : xEnd) << '\n';
  out << TextOf(fileName) << "\n\n";
  float x = xStart;
  for (int i = 0; i < nY; ++i, x += xStep) out << (stored ? xArray[i] : x) << "   " << yArray[i] << '\n';
  return 1;
}
