// Hamamatsu streak camera, raw image: 640 wavelengths by 480 times behind a header of 256 bytes.
#include <cstdint>
#include <fstream>
#include <string>

#include "dataset/of_record.h"
#include "kem.h"
#include "load/block.h"
#include "record/headers.h"
#include "record/storage.h"

using namespace kem::load;
using namespace kem::record;

namespace {

constexpr int kWavelengths = 640;
constexpr int kTimes = 480;
constexpr std::size_t kHeaderSize = 32;  // the rest is not known
constexpr std::streamoff kValuesAt = 256;

constexpr std::size_t kSweepRange = 16;

constexpr BinaryField<HamaHeaderType> kHeader[] = {
    {8, Wire::S32, &HamaHeaderType::hamaIntegrationTime},  // behind "HPK8TMAP"
    {12, Wire::S32, &HamaHeaderType::hamaSweepCondition},  //
    {kSweepRange, Wire::S32, &HamaHeaderType::hamaSweepRange},
    {20, Wire::F32, &HamaHeaderType::hamaCenterWavelength},  //
    {24, Wire::F32, &HamaHeaderType::hamaDispersion},        //
    {28, Wire::S32, &HamaHeaderType::hamaCcdCenter},
};

}  // namespace

int PrnType::ReadHama(std::ifstream& in) {
  if (!in) return 0;
  HamaHeaderType header = {};
  Fill<HamaHeaderType>(header, Block(in, 0, kHeaderSize, Order::Big), kHeader);
  const float span = SweepSpan(header.hamaSweepRange);
  if (span == 0) return 0;

  Reset(*this);
  Grid grid = NewZeroGrid(kWavelengths, kTimes);
  in.seekg(kValuesAt);
  ReadLines(in, Wire::U16, Order::Big, grid.get(), kWavelengths, kTimes);
  Own(zArray, std::move(grid));
  fileType = FileHama;
  allocType = AllocZ;
  nX = kWavelengths;
  nY = kTimes;
  hama = header;

  // The image ends one pixel further from the centre than it starts.
  const auto before = static_cast<float>(header.hamaCcdCenter);
  const auto behind = static_cast<float>(std::int64_t{header.hamaCcdCenter} + 1);
  xStep = header.hamaDispersion;
  xStart = header.hamaCenterWavelength - before * header.hamaDispersion;
  xEnd = behind * header.hamaDispersion + header.hamaCenterWavelength;
  yStart = 0;
  yEnd = span;
  yStep = static_cast<float>(double{span} / (kTimes - 1));
  return Finish(*this, in);
}

// ------------------------------------------------------------ as a dataset

namespace kem::dataset {
namespace {

constexpr std::array kHamaUnits = {text::TextRow{"CenterWavelength", "nm"},
                                   text::TextRow{"Dispersion", "nm per pixel"},
                                   text::TextRow{"CcdCenter", "pixel"}};

Dataset OpenHama(Source& source, int item) {
  int code = 0;
  Block(source.Stream(), 0, kHeaderSize, Order::Big).Get(kSweepRange, Wire::S32, code);
  if (SweepSpan(code) == 0)
    Fail(ErrorCode::Damaged, source.Path(),
         "its sweep range has the code " + std::to_string(code) + "; those of the camera are 1 to 16");
  return OpenOne<&PrnType::ReadHama, kHamaUnits>(source, item);
}

}  // namespace

const Reader kHamaReader{"Hamamatsu raw image", "", [](Source& source) { return Begins(source, "HPK8TMAP"); },
                         OneItem, OpenHama};

}  // namespace kem::dataset
