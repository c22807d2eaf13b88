// AT1 camera images: text cards of 80 bytes, then from byte 2880 the pixels, row by row, as little-endian
// unsigned 16-bit integers. Cards are read by position:
//
//   card  4 nY      5 nX      6 yStart   7 xStart   8 yStep   9 xStep     "KEYWORD = 512"
//   card 10 X title 11 Y title 13 Z title
#include <algorithm>
#include <fstream>

#include "dataset/of_record.h"
#include "kem.h"
#include "load/announced.h"
#include "load/block.h"
#include "record/findings.h"
#include "record/storage.h"
#include "text/fields.h"

using namespace kem::load;
using namespace kem::text;
using namespace kem::record;

namespace {

constexpr std::size_t kCardSize = 80;
constexpr std::size_t kCards = 14;
constexpr std::streamoff kPixels = 2880;

void ScanCard(const Block& cards, std::size_t card, int& value) {
  ScanLine(cards.Text(card * kCardSize, kCardSize), "%*s %*s %d", {&value});
}

void ScanCard(const Block& cards, std::size_t card, float& value) {
  int integer = 0;
  if (ScanLine(cards.Text(card * kCardSize, kCardSize), "%*s %*s %d", {&integer}) == 1)
    value = static_cast<float>(integer);
}

}  // namespace

int PrnType::ReadAT1(std::ifstream& in) {
  if (in.fail()) return 0;
  Reset(*this);
  fileType = FileAT1;
  const Block cards(in, kCards * kCardSize);
  ScanCard(cards, 4, nY);
  ScanCard(cards, 5, nX);
  ScanCard(cards, 6, yStart);
  ScanCard(cards, 7, xStart);
  ScanCard(cards, 8, yStep);
  ScanCard(cards, 9, xStep);
  CopyText(xLabel, cards.Text(10 * kCardSize, kCardSize));
  CopyText(yLabel, cards.Text(11 * kCardSize, kCardSize));
  CopyText(zLabel, cards.Text(13 * kCardSize, kCardSize));
  if (nX < 0 || nY < 0) return 0;
  CheckGrid(in, nX, nY);
  xEnd = static_cast<float>(nX - 1) * xStep + xStart;
  yEnd = static_cast<float>(nY - 1) * yStep + yStart;
  Grid grid = NewZeroGrid(nX, nY);
  SeekTo(in, kPixels);
  const auto columns = static_cast<std::size_t>(nY);
  int row = 0;
  while (row < nX && ReadValues(in, Wire::U16, Order::Little, {grid[row], columns})) ++row;
  Miss(static_cast<std::size_t>(std::max(nX - row - 1, 0)) * columns);
  Own(zArray, std::move(grid));
  allocType = AllocZ;
  return Finish(*this, in);
}

// ------------------------------------------------------------ as a dataset

namespace kem::dataset {
const Reader kAT1Reader{"AT1 image", "", [](Source& source) { return Begins(source, "SIMPLE"); }, OneItem,
                        OpenOne<&PrnType::ReadAT1, kNoUnits>};

}  // namespace kem::dataset
