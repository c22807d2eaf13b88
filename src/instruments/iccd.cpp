// ICCD camera: images, and files of curves. All numbers are little-endian.
//
//   image    0  FD or FE (32-bit or 16-bit values), FF 04 81     curves   0  FC FF 04 81
//            4  ten fixed bytes                                           4  number of curves
//           14  X title, 202 Y title, blank-padded                        6  points of the result
//          214  six words, of which the third is nY, the fourth nX        8  the curves: a header of 217 bytes,
//          258  the values, X running fastest                                m values, two trailing values
#include <algorithm>
#include <fstream>

#include "dataset/of_record.h"
#include "kem.h"
#include "load/announced.h"
#include "load/block.h"
#include "load/items.h"
#include "record/findings.h"
#include "record/storage.h"
#include "text/fields.h"

using namespace kem::load;
using namespace kem::text;
using namespace kem::record;

namespace {

using Bytes = std::span<const unsigned char>;

bool StartsWith(Bytes bytes, Bytes signature) {
  return bytes.size() >= signature.size() && std::equal(signature.begin(), signature.end(), bytes.begin());
}

// ------------------------------------------------------------ image

constexpr unsigned char kImageOf32Bits = 0xFD;
constexpr unsigned char kImageOf16Bits = 0xFE;
constexpr unsigned char kMagic[] = {0xFF, 0x04, 0x81};
constexpr unsigned char kImageSignature[] = {0xFF, 0xFF, 0, 0, 0, 0x0A, 0, 0, 0, 0x0E};
constexpr std::size_t kImageHeader = 258;

constexpr BinaryField<PrnType> kTitles[] = {
    {14, Chars{184, true}, &PrnType::xLabel},
    {202, Chars{8, true}, &PrnType::yLabel},
};
constexpr std::size_t kWords = 214;
enum : int { kRows = 2, kColumns = 3, kWordCount = 6 };

// ------------------------------------------------------------ curves

constexpr unsigned char kCurveMagic[] = {0xFC, 0xFF, 0x04, 0x81};
constexpr std::size_t kFileHeader = 8;
constexpr std::size_t kCurveHeader = 217;
constexpr std::size_t kValueSize = 4;

constexpr std::size_t kCurveYTitle = 29;
constexpr std::size_t kFlag = 213;
constexpr std::size_t kValueType = 214;
constexpr std::size_t kStoredPoints = 215;
constexpr int kFloats = 2;

// A long title is cut at byte 131 of the header, wherever it begins: the Y title keeps 102 characters.
void StoreCurveTitle(Text& title, std::string_view padded, std::size_t first) {
  std::string_view text = padded.substr(0, padded.find_last_not_of(' ') + 1);
  if (text.size() >= kTextSize) text = text.substr(0, kTextSize - 1 - first);
  CopyText(title, text.substr(0, text.find('\0')));
}

constexpr std::size_t kExtra = sizeof IccdCurveHeaderType::iccdCurveExtra;

struct Curve {
  Block header;
  int type = 0;
  int stored = 0;

  Curve(std::istream& in, std::streamoff at) : header(in, at, kCurveHeader) {
    header.Get(kValueType, Wire::U8, type);
    header.Get(kStoredPoints, Wire::U16, stored);
  }
  bool IsThere() const { return header.Size() == kCurveHeader && header.Bytes()[kFlag] == 0; }
  std::streamoff ToExtra() const {
    return static_cast<std::streamoff>(kCurveHeader + static_cast<std::size_t>(stored) * kValueSize);
  }
  std::streamoff Size() const { return ToExtra() + static_cast<std::streamoff>(kExtra); }
  void StoreTitles(Text& x, Text& y) const {
    StoreCurveTitle(x, header.Text(0, kCurveYTitle), 0);
    StoreCurveTitle(y, header.Text(kCurveYTitle, kFlag - kCurveYTitle), kCurveYTitle);
  }
};

}  // namespace

int PrnType::ReadIccdImg(std::ifstream& in) {
  if (in.fail()) return 0;
  Reset(*this);
  const Block header(in, kImageHeader);
  const Bytes bytes = header.Bytes();
  if (bytes.empty() || (bytes[0] != kImageOf32Bits && bytes[0] != kImageOf16Bits)) return 0;
  if (!StartsWith(bytes.subspan(1), kMagic)) return 0;
  Fill<PrnType>(*this, header, kTitles);
  for (int k = 0; k < kWordCount; ++k) {
    iccdImage.iccdImageHeader[k] = 0;
    header.Get(kWords + 2 * static_cast<std::size_t>(k), Wire::S16, iccdImage.iccdImageHeader[k]);
  }
  if (!StartsWith(bytes.subspan(4), kImageSignature)) return 0;
  int columns = iccdImage.iccdImageHeader[kColumns];
  int rows = iccdImage.iccdImageHeader[kRows];
  if (columns < 0 || rows < 0) return 0;
  fileType = FileIccdImage;
  CheckGrid(in, columns, rows);
  Grid grid = NewZeroGrid(columns, rows);
  ReadLines(in, bytes[0] == kImageOf32Bits ? Wire::S32 : Wire::S16, Order::Little, grid.get(), columns, rows);
  Own(zArray, std::move(grid));
  allocType = AllocZ;
  nX = columns;
  nY = rows;
  xStep = yStep = 1;
  xStart = yStart = 0;
  // The far ends are the counts: one pixel beyond the last.
  xEnd = static_cast<float>(nX);
  yEnd = static_cast<float>(nY);
  *Found().messages << nX << std::endl << nY << std::endl;
  const int loaded = Finish(*this, in);
  active = 0;
  return loaded;
}

void kem::load::ListIccdCurves(std::istream& in, ItemList& items) {
  std::streamoff at = kFileHeader;
  for (std::size_t k = 0; k < items.size(); ++k) {
    const Curve curve(in, at);
    if (!curve.IsThere()) return items.resize(k);
    Text xTitle;
    curve.StoreTitles(xTitle, items[k].title);
    at += curve.Size();
  }
}

int PrnType::ReadIccdCrv(std::ifstream& in, int& count, int which) {
  if (in.fail()) return 0;
  Reset(*this);
  const Block header(in, 0, kFileHeader);
  if (header.Size() < kFileHeader || !StartsWith(header.Bytes(), kCurveMagic)) return 0;
  int points = 0;
  header.Get(4, Wire::U16, count);
  header.Get(6, Wire::U16, points);
  if (which < 0 || which >= count) return 0;

  const std::streamoff at = PlaceOf<Curve>(in, which, kFileHeader);
  const Curve curve(in, at);
  if (!curve.IsThere()) return 0;
  auto values = NewZeroArray(points);
  ReadValues(in, curve.type == kFloats ? Wire::F32 : Wire::S32, Order::Little,
             {values.get(), static_cast<std::size_t>(std::min(points, curve.stored))});
  const Block extra(in, at + curve.ToExtra(), kExtra);

  curve.StoreTitles(xLabel, yLabel);
  iccdCurve = {};
  const std::string_view trailing = extra.Text(0, kExtra);
  trailing.copy(reinterpret_cast<char*>(&iccdCurve.iccdCurveExtra), trailing.size());
  Own(yArray, std::move(values));
  allocType = AllocY;
  nX = nY = points;
  xStep = 1;
  xStart = 0;
  xEnd = static_cast<float>(points - 1);
  fileType = FileIccdCurve;
  *Found().readNext = which != count - 1;
  return Finish(*this, in);
}

// ------------------------------------------------------------ as a dataset

namespace kem::dataset {
const Reader kIccdImageReader{"ICCD image", ".img",
                              [](Source& source) -> std::string {
                                const std::string fe(1, static_cast<char>(kImageOf16Bits));
                                const std::string fd(1, static_cast<char>(kImageOf32Bits));
                                const std::string_view magic("\xFF\x04\x81", 3);
                                for (const auto& first : {fe, fd})
                                  if (auto found = Begins(source, first + std::string(magic)); !found.empty())
                                    return found;
                                return {};
                              },
                              OneItem, OpenOne<&PrnType::ReadIccdImg, kNoUnits>};

const Reader kIccdCurveReader{"ICCD curve", ".crv",
                              [](Source& source) { return Begins(source, "\xFC\xFF\x04\x81"); },
                              Series<&PrnType::ReadIccdCrv, load::ListIccdCurves, 0>::Items,
                              Series<&PrnType::ReadIccdCrv, load::ListIccdCurves, 0>::Open};

}  // namespace kem::dataset
