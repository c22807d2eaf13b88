// Dilor Raman spectrometers: one spectrum as text, or a binary "Multi-3D" series.
//
// Text: 16 header lines, the numbers (from the last point to the first), 17 trailer lines; texts may stand in
// double quotes. A header that says "Multi" announces an X value before each Y value.
//
// Series: a header of fixed fields, then from byte 536 groups of 256-byte blocks, 64 numbers each; group 0 holds
// the abscissae, group k spectrum k. Numbers are in Microsoft Binary Format.
#include <algorithm>
#include <cmath>
#include <fstream>
#include <limits>
#include <span>
#include <vector>

#include "dataset/of_record.h"
#include "kem.h"
#include "load/announced.h"
#include "load/block.h"
#include "load/items.h"
#include "load/keywords.h"
#include "record/findings.h"
#include "record/storage.h"
#include "text/fields.h"
#include "text/number_scanner.h"

using namespace kem::load;
using namespace kem::text;
using namespace kem::record;

namespace {

using Dilor = DilorHeaderType;

// ------------------------------------------------------------ text

// The text inside double quotes, or the line itself.
void Unquote(Text& line) {
  if (line[0] != '"') return;
  const std::string_view inside = TextOf(line).substr(1);
  CopyText(line, inside.substr(0, inside.find('"')));
}

void ReadTextLines(std::istream& in, std::span<Text> lines) {
  for (Text& line : lines) {
    if (in.fail()) return;
    ReadStartOfLine(in, line);
    TrimTrailing(line);
    Unquote(line);
  }
}

enum : std::size_t {
  kKindLine = 1,
  kCountLine = 3,
  kXLabelLine = 7,
  kYLabelLine = 8,
  kEndLine = 10,
  kStartLine = 11
};
constexpr std::size_t kHeaderLines = 16;
constexpr std::size_t kTrailerLines = 17;
constexpr std::size_t kStepLine = 15;

struct TrailerField {
  std::size_t line;
  Destination<Dilor> to;
};
constexpr TrailerField kTrailer[] = {
    {0, &Dilor::dilorOperator}, {1, &Dilor::dilorDate},       {2, &Dilor::dilorSample},
    {3, &Dilor::dilorDetector}, {4, &Dilor::dilorGrating},    {5, &Dilor::dilorFilter},
    {6, &Dilor::dilorExcLine},  {7, &Dilor::dilorPower},      {8, &Dilor::dilorForemono},
    {9, &Dilor::dilorSpectro},  {10, &Dilor::dilorSlitWidth}, {11, &Dilor::dilorSpecWidth},
    {12, &Dilor::dilorIntTime}, {13, &Dilor::dilorRepeat},    {14, &Dilor::dilorComment},
};

// The points run from high to low abscissa, so the first number belongs at the end. Returns the values that were
// there.
std::span<float> ReadPoints(std::istream& in, float* x, std::span<float> y) {
  NumberScanner numbers(in);
  std::size_t k = y.size();
  while (k > 0 && !numbers.Failed()) {
    --k;
    if (x) numbers.Next(x[k]);
    numbers.Next(y[k]);
  }
  Miss(k);
  return y.subspan(k);
}

// ------------------------------------------------------------ series

constexpr std::streamoff kSeriesStart = 536;
constexpr std::size_t kNumberSize = 4;
constexpr std::size_t kNumbersPerBlock = 64;
constexpr std::size_t kSeriesHeader = 406;

constexpr BinaryField<Dilor> kSeriesLayout[] = {
    {36, Chars{15}, &Dilor::dilorXLabel},     {51, Chars{15}, &Dilor::dilorYLabel},
    {135, Chars{35}, &Dilor::dilorOperator},  {170, Chars{8}, &Dilor::dilorDate},
    {178, Chars{35}, &Dilor::dilorSample},    {213, Chars{10}, &Dilor::dilorDetector},
    {223, Chars{10}, &Dilor::dilorGrating},   {256, Chars{35}, &Dilor::dilorFilter},
    {291, Chars{10}, &Dilor::dilorExcLine},   {301, Chars{10}, &Dilor::dilorPower},
    {311, Chars{10}, &Dilor::dilorForemono},  {321, Chars{10}, &Dilor::dilorSpectro},
    {331, Chars{10}, &Dilor::dilorSlitWidth}, {341, Chars{10}, &Dilor::dilorSpecWidth},
    {351, Chars{10}, &Dilor::dilorIntTime},   {361, Chars{10}, &Dilor::dilorRepeat},
    {371, Chars{35}, &Dilor::dilorComment},
};
constexpr std::size_t kCountOffset = 32;
constexpr std::size_t kPointsOffset = 34;
constexpr std::size_t kStartOffset = 111;
constexpr std::size_t kEndOffset = 115;

// Microsoft Binary Format: mantissa bytes, sign in the top bit of the third, exponent with bias 129. An exponent
// byte of 0 gives a tiny number, not 0: the instrument's files use it so.
float DecodeDilorFloat(std::span<const unsigned char, kNumberSize> b) {
  auto value = static_cast<float>(1 + (b[2] & 0x7F) / 128.0 + b[1] / 32768.0 + b[0] / 8388608.0);
  if (b[2] & 0x80) value = -value;
  for (int e = b[3] - 129; e > 0; --e) value *= 2;
  for (int e = b[3] - 129; e < 0; ++e) value /= 2;
  return value;
}

// Reads as many numbers as the file holds from a position on, and returns them.
std::span<float> ReadNumbers(std::istream& in, std::streamoff at, std::span<float> values) {
  const Block block(in, at, values.size() * kNumberSize);
  const auto held = values.first(std::min(values.size(), block.Size() / kNumberSize));
  Miss(values.size() - held.size());
  for (std::size_t k = 0; k < held.size(); ++k)
    held[k] = DecodeDilorFloat(block.Bytes().subspan(k * kNumberSize).first<kNumberSize>());
  return held;
}

// Where a spectrum of a series begins; number 0 is the abscissa.
std::streamoff GroupAt(int points, int number) {
  const std::size_t numbers = static_cast<std::size_t>(points) + 6;
  const std::size_t blocks = (numbers + kNumbersPerBlock - 1) / kNumbersPerBlock;
  return kSeriesStart + static_cast<std::streamoff>(blocks * kNumbersPerBlock * kNumberSize) * number;
}

void DecodeField(const Block& header, std::size_t offset, float& value) {
  const auto bytes = header.Bytes();
  if (bytes.size() >= offset + kNumberSize) value = DecodeDilorFloat(bytes.subspan(offset).first<kNumberSize>());
}

// ------------------------------------------------------------ both

// Ordinates are counts per unit of integration time; a time of 0 divides as it stands.
void DivideByTime(std::span<float> values, float time) {
  for (float& v : values) v /= time;
}

void TakeCurve(PrnType& record, int points, std::unique_ptr<float[]> x, std::unique_ptr<float[]> y) {
  record.allocType = x ? AllocXY : AllocY;
  record.nX = record.nY = points;
  if (x) Own(record.xArray, std::move(x));
  Own(record.yArray, std::move(y));
}

}  // namespace

int PrnType::ReadDilorSingle(std::ifstream& in) {
  if (in.fail()) return 0;
  Reset(*this);
  fileType = FileDilor;
  dilor = {};
  Text header[kHeaderLines] = {};
  ReadTextLines(in, header);
  int points = 0;
  ScanLine(TextOf(header[kCountLine]), "%d", {&points});
  if (points < 0) return 0;
  CheckedCount(in, points);
  const bool storedX = Contains(TextOf(header[kKindLine]), "Multi");
  auto x = storedX ? NewZeroArray(points) : nullptr;
  auto y = NewZeroArray(points);
  const auto values = ReadPoints(in, x.get(), {y.get(), static_cast<std::size_t>(points)});

  CopyText(dilor.dilorXLabel, TextOf(header[kXLabelLine]));
  CopyText(dilor.dilorYLabel, TextOf(header[kYLabelLine]));
  StoreValue(xEnd, TextOf(header[kEndLine]));
  StoreValue(xStart, TextOf(header[kStartLine]));
  Text rest;
  ReadStartOfLine(in, rest);
  Text trailer[kTrailerLines] = {};
  ReadTextLines(in, trailer);
  for (const auto& [line, to] : kTrailer) Store(to, TextOf(trailer[line]), Whole, dilor);
  if (!storedX) StoreValue(xStep, TextOf(trailer[kStepLine]));

  DivideByTime(values, dilor.dilorIntTime);
  TakeCurve(*this, points, std::move(x), std::move(y));
  return Finish(*this, in);
}

void kem::load::ListDilorSeries(std::istream& in, ItemList& items) {
  const auto size = FileSize(in);
  std::erase_if(items, [size](const KemItem& item) { return GroupAt(item.nY, item.index) >= size; });
}

int PrnType::ReadDilorM3D(std::ifstream& in, int& count, int which) {
  if (in.fail()) return 0;
  Reset(*this);
  fileType = FileDilor;
  dilor = {};
  const Block header(in, kSeriesHeader);
  int points = 0;
  count = 0;
  header.Get(kCountOffset, Wire::S16, count);
  header.Get(kPointsOffset, Wire::S16, points);
  Fill<Dilor>(dilor, header, kSeriesLayout);
  DecodeField(header, kStartOffset, xStart);
  DecodeField(header, kEndOffset, xEnd);

  if (which == 0) which = 1;
  if (which >= 1 && which <= count) {
    if (points < 0) return 0;
    auto x = NewZeroArray(points);
    auto y = NewZeroArray(points);
    const auto size = static_cast<std::size_t>(points);
    ReadNumbers(in, GroupAt(points, 0), {x.get(), size});
    DivideByTime(ReadNumbers(in, GroupAt(points, which), {y.get(), size}), dilor.dilorIntTime);
    TakeCurve(*this, points, std::move(x), std::move(y));
  }
  *Found().readNext = which == count ? 0 : which;
  return Finish(*this, in);
}

// ------------------------------------------------------------ as a dataset

namespace kem::dataset {
namespace {

constexpr std::array kDilorUnits = {TextRow{"IntTime", "s"}};

// The count of a text stands alone in its line; without it the format has no mark of its own.
bool HasCount(Source& source) {
  Lines lines(source.Head());
  std::string_view line;
  for (std::size_t k = 0; k <= kCountLine; ++k)
    if (!lines.Next(line)) return false;
  const auto count = NumberIn(Trimmed(line));
  return count && *count > 0 && *count <= std::numeric_limits<int>::max() && *count == std::floor(*count);
}

std::string RecogniseDilor(Source& source) {
  for (const char* extension : {".ms0", ".ss0", ".msu"})
    if (source.HasExtension(extension) && HasCount(source)) return std::string("name ends in ") + extension;
  const bool marked = Contains(source.Head().substr(0, kTextSize - 1), "Version");
  return marked && HasCount(source) && Contains(source.Head(), "\"")
             ? "Version in the first bytes, a count in line 4"
             : "";
}

}  // namespace

const Reader kDilorReader{"Dilor Raman", ".ms0 .ss0 .msu", RecogniseDilor, OneItem,
                          OpenOne<&PrnType::ReadDilorSingle, kDilorUnits>};

const Reader kDilorSeriesReader{"Dilor Raman series", ".m3d",
                                [](Source& source) -> std::string {
                                  const bool marked = Contains(source.Head().substr(0, kTextSize - 1), "Multi-3D");
                                  if (source.Size() <= static_cast<std::uint64_t>(kSeriesStart)) return {};
                                  if (marked) return "Multi-3D in the first bytes";
                                  return source.HasExtension(".m3d") ? "name ends in .m3d" : "";
                                },
                                Series<&PrnType::ReadDilorM3D, load::ListDilorSeries, 1>::Items,
                                Series<&PrnType::ReadDilorM3D, load::ListDilorSeries, 1>::Open};

}  // namespace kem::dataset
