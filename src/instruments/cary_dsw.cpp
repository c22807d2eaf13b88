// Cary DSW: a UV-VIS-NIR spectrum as pairs of little-endian floats, with texts behind it.
//
//   "\x11Varian UV-VIS-NIR" ...
//   93     X of the pair that ends the spectrum, then a float that is not kept
//   1113   X, Y, X, Y ...
//   then   26 texts: length in one byte, three bytes, characters
#include <algorithm>
#include <array>
#include <fstream>
#include <iterator>
#include <memory>
#include <new>
#include <string>
#include <vector>

#include "kem.h"
#include "load/block.h"
#include "record/storage.h"
#include "text/fields.h"

using namespace kem::load;
using namespace kem::text;
using namespace kem::record;

namespace {

constexpr std::streamoff kStopValueAt = 93;
constexpr std::streamoff kPairsAt = 1113;

// Of the text records behind the spectrum, those that are kept, by their number.
struct KeptText {
  int number;
  Text CaryDSWHeaderType::*to;
};
constexpr KeptText kTexts[] = {
    {1, &CaryDSWHeaderType::dswXTitle},  {2, &CaryDSWHeaderType::dswYTitle},  {10, &CaryDSWHeaderType::dswText10},
    {11, &CaryDSWHeaderType::dswText11}, {13, &CaryDSWHeaderType::dswText13}, {14, &CaryDSWHeaderType::dswText14},
    {15, &CaryDSWHeaderType::dswText15}, {26, &CaryDSWHeaderType::dswText26},
};

struct Pairs {
  std::vector<float> x;
  std::vector<float> y;
};

// The pairs in front of the one whose X is the stop value, or all that there are. The stream stands behind it.
Pairs ReadPairs(std::istream& in, float stop) {
  constexpr std::size_t kPairSize = 2 * sizeof(float);
  constexpr std::size_t kChunk = 1024;
  std::array<float, 2 * kChunk> values;
  Pairs pairs;
  std::size_t held = kChunk;
  for (std::streamoff at = kPairsAt; held == kChunk; at += kChunk * kPairSize) {
    const Block block(in, at, kChunk * kPairSize);
    Decode(Wire::F32, Order::Little, block.Bytes(), values);
    held = block.Size() / kPairSize;
    for (std::size_t k = 0; k < held; ++k) {
      if (values[2 * k] == stop) {
        in.seekg(at + static_cast<std::streamoff>((k + 1) * kPairSize));
        return pairs;
      }
      pairs.x.push_back(values[2 * k]);
      pairs.y.push_back(values[2 * k + 1]);
    }
  }
  return pairs;
}

}  // namespace

int PrnType::ReadCaryDSWFile(std::ifstream& in) try {
  if (!in) return 0;
  float stop = 0;
  Block(in, kStopValueAt, sizeof stop).Get(0, Wire::F32, stop);
  const Pairs pairs = ReadPairs(in, stop);
  const int count = static_cast<int>(pairs.x.size());
  auto x = ArrayOf(pairs.x, count);
  auto y = ArrayOf(pairs.y, count);
  CaryDSWHeaderType texts = {};
  int number = 1;
  for (const KeptText& kept : kTexts)
    for (; number <= kept.number; ++number) ReadCaryDSWParameter(in, texts.*kept.to);  // the last one stays

  Reset(*this);
  Own(xArray, std::move(x));
  Own(yArray, std::move(y));
  fileType = FileCaryDSW;
  allocType = AllocXY;
  nX = nY = count;
  dsw = texts;
  return Finish(*this, in);
} catch (const std::bad_alloc&) {
  return 0;
}

void PrnType::ReadCaryDSWParameter(std::ifstream& in, char* const text) const {
  constexpr std::size_t kLengthSize = 4;
  int length = 0;
  Block(in, kLengthSize).Get(0, Wire::U8, length);
  const Block block(in, static_cast<std::size_t>(length));
  const auto held = block.Text(0, kTextSize - 1);
  std::string kept(held.substr(0, held.find('\0')));
  // Fields are padded with blanks; of a run one stays.
  kept.erase(std::unique(kept.begin(), kept.end(), [](char a, char b) { return a == ' ' && b == ' '; }),
             kept.end());
  CopyText(text, kept);
}
