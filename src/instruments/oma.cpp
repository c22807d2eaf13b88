// EG&G OMA detector: a header at fixed offsets, a directory, then curves. All numbers are little-endian.
//
//   2135  directory entries; 2136 the entries, each beginning with its own length
//   then  curves: a header of 48 bytes (point count at 0, value type at 8), the Y values, the X values
#include <algorithm>
#include <fstream>
#include <iterator>
#include <string>

#include "dataset/of_record.h"
#include "kem.h"
#include "load/block.h"
#include "load/items.h"
#include "record/findings.h"
#include "record/storage.h"
#include "text/fields.h"

using namespace kem::load;
using namespace kem::text;
using namespace kem::record;

namespace {

struct Setup {
  Text title = {}, background = {};
  int curves = 0, xFirst = 0, xCount = 0, yFirst = 0, yCount = 0;
  int scanMode = 0, sliceMode = 0, active = 0, tracks = 0, slices = 0;
};

constexpr BinaryField<Setup> kSetup[] = {
    {44, Chars{81}, &Setup::title},    {125, Wire::U16, &Setup::curves},    {359, Chars{77}, &Setup::background},
    {2230, Wire::U16, &Setup::xFirst}, {2232, Wire::U16, &Setup::xCount},   {2234, Wire::U16, &Setup::yFirst},
    {2236, Wire::U16, &Setup::yCount}, {2252, Wire::U16, &Setup::scanMode}, {2254, Wire::U16, &Setup::sliceMode},
    {2260, Wire::U16, &Setup::active}, {2262, Wire::U16, &Setup::tracks},   {2264, Wire::U16, &Setup::slices},
};
// What the record keeps as bytes, and tables.
constexpr std::size_t kCalibration = 308;
constexpr std::size_t kRawWord = 2188;
constexpr std::size_t kSegments = 2270;
constexpr std::streamoff kDirectoryEntries = 2135;
constexpr std::streamoff kDirectory = 2136;
constexpr std::size_t kCurveHeader = 48;

int Word(const Block& header, std::size_t at) {
  int word = 0;
  header.Get(at, Wire::U16, word);
  return word;
}

template <std::size_t Size>
void CopyBytes(unsigned char (&to)[Size], const Block& header, std::size_t at) {
  header.Text(at, Size).copy(reinterpret_cast<char*>(to), Size);
}

constexpr int kMostSegments = 5;
constexpr std::size_t kSegmentSize = 4;

// The segment table is shared: random tracks first, then non-uniform slices as far as there is room. Returns
// the number of entries filled.
int ReadSegments(OMAHeaderType& block, std::istream& in, std::size_t at, int filled, int count, int isSlice) {
  const Block segments(in, static_cast<std::streamoff>(at), kMostSegments * kSegmentSize);
  for (std::size_t entry = 0; count > 0 && filled < kMostSegments; --count, ++filled, entry += kSegmentSize) {
    block.omaSegmentIsSlice[filled] = isSlice;
    block.omaSegmentFirst[filled] = Word(segments, entry);
    block.omaSegmentWidth[filled] = Word(segments, entry + 2);
  }
  return filled;
}

void StoreSetup(PrnType& record, const Setup& setup, const Block& header, std::istream& in) {
  const bool random = setup.scanMode == 1;
  const bool sliced = setup.sliceMode == 1;
  CopyText(record.xLabel, TextOf(setup.title));
  CopyText(record.yLabel, std::string(TextOf(setup.background)) + (setup.active == 0 ? " INACTIVE" : ""));
  CopyText(record.zLabel, sliced ? "Non-Uniform" : "Uniform");
  OMAHeaderType& oma = record.oma;
  oma = {};
  const int ranges[] = {setup.xFirst, setup.xFirst + setup.xCount - 1, setup.yFirst,
                        setup.yFirst + setup.yCount - 1};
  std::copy(std::begin(ranges), std::end(ranges), oma.omaRange);
  oma.omaTrackCount = random ? setup.tracks : 0;
  oma.omaSliceCount = sliced ? setup.slices : 0;
  CopyText(oma.omaScanMode, random ? "Random" : "Contiguous");
  CopyBytes(oma.omaCalibration, header, kCalibration);
  CopyBytes(oma.omaRawWord, header, kRawWord);
  const int tracks = ReadSegments(oma, in, kSegments, 0, oma.omaTrackCount, 0);
  // Slices start behind as many entries as there are slices, whatever the number of tracks.
  const std::size_t slices = kSegments + kSegmentSize * static_cast<std::size_t>(oma.omaSliceCount);
  ReadSegments(oma, in, slices, tracks, oma.omaSliceCount, 1);
}

struct CurveHeader {
  int points = 0;
  int type = 0;

  CurveHeader(std::istream& in, std::streamoff at) {
    const Block block(in, at, kCurveHeader);
    held_ = block.Size() == kCurveHeader;
    points = Word(block, 0);
    block.Get(8, Wire::S16, type);
  }
  bool IsThere() const { return held_; }
  // A Y value takes as many bytes as the low digit of its type says, an X value four.
  std::streamoff Size() const {
    return static_cast<std::streamoff>(kCurveHeader) + static_cast<std::streamoff>(points) * (type % 16 + 4);
  }

 private:
  bool held_ = false;  // the file does not end in it
};

struct ValueType {
  int type;
  Wire wire;
};
constexpr ValueType kValueTypes[] = {
    {1, Wire::U8},   {2, Wire::U16},  {4, Wire::U32},  {18, Wire::U16},
    {20, Wire::S32}, {52, Wire::F32}, {56, Wire::F64},
};

// Values of an unknown type take no room and stay 0.
bool ReadY(std::istream& in, int type, std::span<float> y) {
  for (const ValueType& v : kValueTypes)
    if (v.type == type) return ReadValues(in, v.wire, Order::Little, y);
  return true;
}

// Where the curves begin, behind the directory. One that leaves the file ends the search.
std::streamoff FirstCurve(std::istream& in) {
  int entries = 0;
  Block(in, kDirectoryEntries, 1).Get(0, Wire::U8, entries);
  std::streamoff at = kDirectory;
  for (int k = 0; k < entries; ++k) {
    int length = 0;
    if (!Block(in, at, 2).Get(0, Wire::U16, length)) break;
    at += length;
  }
  return at;
}

}  // namespace

void kem::load::ListOMA(std::istream& in, ItemList& items) {
  std::streamoff at = FirstCurve(in);
  for (std::size_t k = 0; k < items.size(); ++k) {
    const CurveHeader curve(in, at);
    if (!curve.IsThere()) return items.resize(k);
    items[k].nX = items[k].nY = curve.points;
    at += curve.Size();
  }
}

int PrnType::ReadOMA(std::ifstream& in, int& count, int which) {
  if (in.fail()) return 0;
  const EmptyOnThrow guard(*this);
  Reset(*this);
  if (which == 0) which = 1;
  const Block header(in, 0, kSegments);
  Setup setup;
  Fill<Setup>(setup, header, kSetup);
  count = setup.curves;
  if (which < 1 || which > count) return 0;
  StoreSetup(*this, setup, header, in);

  const CurveHeader curve(in, PlaceOf<CurveHeader>(in, which - 1, FirstCurve(in)));
  auto y = NewZeroArray(curve.points);
  auto x = NewZeroArray(curve.points);
  const auto points = static_cast<std::size_t>(curve.points);
  if (ReadY(in, curve.type, {y.get(), points})) ReadValues(in, Wire::F32, Order::Little, {x.get(), points});

  // Without a calibration the axis counts pixels.
  constexpr double kLeastCalibration = 0.1;
  float calibration = 0;
  header.Get(kCalibration, Wire::F32, calibration);
  if (calibration <= kLeastCalibration)
    for (std::size_t k = 0; k < points; ++k) x[k] = static_cast<float>(k);

  fileType = FileOMA;
  Own(xArray, std::move(x));
  Own(yArray, std::move(y));
  allocType = AllocXY;
  nX = nY = curve.points;
  *Found().readNext = which == count ? 0 : which;
  SortAxes();
  return Finish(*this, in);
}

// ------------------------------------------------------------ as a dataset

namespace kem::dataset {
const Reader kOMAReader{"EG&G OMA", "",
                        [](Source& source) -> std::string {
                          const bool marked = Contains(source.Head().substr(0, kTextSize - 1), "EG&G");
                          return marked && source.Size() > kDirectory ? "EG&G in the first bytes" : "";
                        },
                        Series<&PrnType::ReadOMA, load::ListOMA, 1>::Items,
                        Series<&PrnType::ReadOMA, load::ListOMA, 1>::Open};

}  // namespace kem::dataset
