// HPDTA (HiPic) image of a streak or CCD camera: a header, a status text, the values line by line, and tables of
// the axes anywhere behind them.
//
// The status text of early software is a list that goes by position, with free text at its end:
//   HiPic,1.0,100,1.0,0,0,4,8,0,0,0,12-05-2016,10:21:05,0, ...
// Later software names its settings; quoted values may hold commas, and a section may follow a value at once:
//   [Application],Date="20/01/2023",Time="11:34:55.147" ... [Scaling],ScalingXType=2 ... [Comment],UserComment=""
#include <chrono>
#include <fstream>
#include <iterator>
#include <memory>
#include <optional>
#include <string>

#include "instruments/hpdta_status.h"
#include "kem.h"
#include "load/announced.h"
#include "load/block.h"
#include "load/keywords.h"
#include "record/storage.h"
#include "text/fields.h"

using namespace kem::load;
using namespace kem::text;
using namespace kem::record;

namespace {

// ------------------------------------------------------------ walking the status text

// Takes the front of a text up to one of some characters.
std::string_view TakeUntil(std::string_view& text, std::string_view ends) {
  const auto taken = text.substr(0, text.find_first_of(ends));
  text.remove_prefix(taken.size());
  return taken;
}

void Skip(std::string_view& text, std::size_t count) { text.remove_prefix(std::min(count, text.size())); }

constexpr std::string_view kSeparators = ",\r\n ";

std::string_view TakeValue(std::string_view& text) {
  if (!text.starts_with('"')) return TakeUntil(text, ",[\r\n");
  Skip(text, 1);
  const auto value = TakeUntil(text, "\"");
  Skip(text, 1);
  return value;
}

}  // namespace

void kem::WalkHPDTAStatus(std::string_view text,
                          const std::function<void(std::string_view, std::string_view, std::string_view)>& visit) {
  std::string_view section;
  for (;;) {
    Skip(text, text.find_first_not_of(kSeparators));
    if (text.empty()) return;
    if (text.front() == '[') {
      Skip(text, 1);
      section = TakeUntil(text, "]");
      Skip(text, 1);
      continue;
    }
    const auto key = TakeUntil(text, "=,[\r\n");
    if (!text.starts_with('=')) continue;
    Skip(text, 1);
    visit(section, key, TakeValue(text));
  }
}

namespace {

using Header = HPDTAHeaderType;

constexpr int kLinear = 1;  // scaling type of an axis without a table

// ------------------------------------------------------------ status text

void StoreAcqMode(Header& block, std::string_view value) {
  constexpr const char* kModes[] = {"NoAcquisition",     "Live",   "Acquire", "PhotonCounting",
                                    "AnalogIntegration", "BSLive", "SLive",   "Background"};
  int mode = -1;
  ScanLine(value, "%d", {&mode});
  if (mode >= 0 && mode < static_cast<int>(std::size(kModes))) CopyText(block.hpdtaAcqMode, kModes[mode]);
}

void AppendTime(Header& block, std::string_view value) {
  if (value.empty()) return;
  CopyText(block.hpdtaDate, std::string(TextOf(block.hpdtaDate)).append(" ").append(value));
}

using Target = Destination<Header>;

// ------------------------------------------------------------ status by position

// "#1290": one character of any kind, then the position.
template <int Header::*position>
void StorePosition(Header& block, std::string_view value) {
  ScanLine(value, "%*c%d", {&(block.*position)});
}

struct StatusField {
  int index;
  Target to;
};

constexpr StatusField kStatusLayout[] = {
    {5, StoreAcqMode},
    {11, &Header::hpdtaDate},
    {12, AppendTime},
    {30, &Header::hpdtaAcqTime},
    {35, &Header::hpdtaAcqNumber},
    {40, &Header::hpdtaExposures},
    {48, &Header::hpdtaXScalingType},
    {49, &Header::hpdtaXScale},
    {50, &Header::hpdtaXUnit},
    {51, StorePosition<&Header::hpdtaXTablePos>},
    {52, &Header::hpdtaYScalingType},
    {53, &Header::hpdtaYScale},
    {54, &Header::hpdtaYUnit},
    {55, StorePosition<&Header::hpdtaYTablePos>},
    {63, &Header::hpdtaGain},
};

// Fields behind the end of the text are empty.
void ParseByPosition(Header& block, std::string_view text) {
  const auto* row = std::begin(kStatusLayout);
  for (int index = 0; index < kem::kHPDTAStatusFields; ++index) {
    const auto value = TakeUntil(text, ",");
    Skip(text, 1);
    if (row == std::end(kStatusLayout) || row->index != index) continue;
    Store(row->to, value.substr(0, kTextSize - 1), Whole, block);
    ++row;
  }
  CopyText(block.hpdtaComment, text);
}

// ------------------------------------------------------------ status by key

// "#1379631,0672" or "*0614925": the position of a table in the file. Other texts name a scale outside of it.
template <int Header::*position>
void StoreScalingFile(Header& block, std::string_view value) {
  ScanLine(value, "%*1[#*]%d", {&(block.*position)});
}

struct StatusKey {
  std::string_view section;
  std::string_view key;
  Target to;
};

constexpr StatusKey kStatusKeys[] = {
    {"Application", "Date", &Header::hpdtaDate},
    {"Application", "Time", AppendTime},
    {"Acquisition", "AcqMode", StoreAcqMode},
    {"Acquisition", "ExposureTime", &Header::hpdtaAcqTime},
    {"Acquisition", "NrExposure", &Header::hpdtaExposures},
    {"Acquisition", "NrTrigger", &Header::hpdtaAcqNumber},
    {"Streak camera", "MCP Gain", &Header::hpdtaGain},
    {"Scaling", "ScalingXType", &Header::hpdtaXScalingType},
    {"Scaling", "ScalingXScale", &Header::hpdtaXScale},
    {"Scaling", "ScalingXUnit", &Header::hpdtaXUnit},
    {"Scaling", "ScalingXScalingFile", StoreScalingFile<&Header::hpdtaXTablePos>},
    {"Scaling", "ScalingYType", &Header::hpdtaYScalingType},
    {"Scaling", "ScalingYScale", &Header::hpdtaYScale},
    {"Scaling", "ScalingYUnit", &Header::hpdtaYUnit},
    {"Scaling", "ScalingYScalingFile", StoreScalingFile<&Header::hpdtaYTablePos>},
    {"Comment", "UserComment", &Header::hpdtaComment},
};

void StoreByKey(Header& block, std::string_view section, std::string_view key, std::string_view value) {
  for (const StatusKey& row : kStatusKeys)
    if (row.section == section && row.key == key) return Store(row.to, value, Whole, block);
}

void ParseByKey(Header& block, std::string_view text) {
  kem::WalkHPDTAStatus(text,
                       [&block](auto section, auto key, auto value) { StoreByKey(block, section, key, value); });
  // Acquisitions are counted in triggers, or else in exposures.
  if (block.hpdtaAcqNumber == 0) block.hpdtaAcqNumber = block.hpdtaExposures;
  // An axis without a table counts pixels, whatever its scale is called.
  if (block.hpdtaXTablePos == 0) block.hpdtaXScalingType = kLinear;
  if (block.hpdtaYTablePos == 0) block.hpdtaYScalingType = kLinear;
}

// ------------------------------------------------------------ image

struct Layout {
  int textSize = 0;
  int width = 0;
  int height = 0;
  int dataType = 0;
};

constexpr std::size_t kHeaderSize = 64;

constexpr BinaryField<Layout> kLayout[] = {
    {2, Wire::S16, &Layout::textSize},
    {4, Wire::S16, &Layout::width},
    {6, Wire::S16, &Layout::height},
    {12, Wire::S16, &Layout::dataType},
};

std::optional<Wire> WireOf(int dataType) {
  switch (dataType) {
    case 0:
      return Wire::U8;
    case 2:
      return Wire::U16;
    case 3:
      return Wire::U32;
    default:
      return std::nullopt;
  }
}

// Values of a type that is not known are 0.
Grid ReadImage(Layout layout, std::istream& in) {
  CheckGrid(in, layout.width, layout.height);
  Grid grid = NewZeroGrid(layout.width, layout.height);
  const auto wire = WireOf(layout.dataType);
  if (!wire) return grid;
  SeekTo(in, static_cast<std::streamoff>(kHeaderSize) + layout.textSize);
  ReadLines(in, *wire, Order::Little, grid.get(), layout.width, layout.height);
  return grid;
}

// The stored values of an axis; none when its scale is linear.
std::unique_ptr<float[]> ReadTable(int scalingType, int position, int count, std::istream& in) {
  if (scalingType == kLinear) return nullptr;
  auto values = NewZeroArray(count);
  SeekTo(in, position);
  ReadValues(in, Wire::F32, Order::Little, {values.get(), static_cast<std::size_t>(count)});
  return values;
}

// ------------------------------------------------------------ dates

std::optional<std::chrono::sys_days> DateOf(int day, int month, int year) {
  using namespace std::chrono;
  const bool named = day >= 1 && day <= 31 && month >= 1 && month <= 12 && year >= static_cast<int>(year::min()) &&
                     year <= static_cast<int>(year::max());
  if (!named) return std::nullopt;
  const year_month_day date(std::chrono::year(year), std::chrono::month(static_cast<unsigned>(month)),
                            std::chrono::day(static_cast<unsigned>(day)));
  if (!date.ok()) return std::nullopt;
  return sys_days(date);
}

}  // namespace

int PrnType::ReadHPDTA(std::ifstream& in) {
  if (!in) return 0;
  Layout layout;
  Fill<Layout>(layout, Block(in, 0, kHeaderSize), kLayout);
  if (layout.textSize < 0 || layout.width <= 0 || layout.height <= 0) return 0;
  const Block status(in, kHeaderSize, static_cast<std::size_t>(layout.textSize));
  std::string text(status.Text(0, status.Size()));
  Header header = {};
  header.hpdtaDataType = layout.dataType;
  ParseHPDTAStatus(text.data(), &header);

  Reset(*this);
  Grid grid = ReadImage(layout, in);
  auto x = ReadTable(header.hpdtaXScalingType, header.hpdtaXTablePos, layout.width, in);
  auto y = ReadTable(header.hpdtaYScalingType, header.hpdtaYTablePos, layout.height, in);
  Own(zArray, std::move(grid));
  fileType = FileHPDTA;
  allocType = AllocZ + (x ? AllocX : 0) + (y ? AllocY : 0);
  nX = layout.width;
  nY = layout.height;
  hpdta = header;
  // A linear axis ends one step behind its last value; the ends of a table are found with the ranges.
  if (!x) {
    xStep = header.hpdtaXScale;
    xStart = 0;
    xEnd = static_cast<float>(nX) * header.hpdtaXScale;
  }
  if (!y) {
    yStep = header.hpdtaYScale;
    yStart = 0;
    yEnd = static_cast<float>(nY) * header.hpdtaYScale;
  }
  Own(xArray, std::move(x));
  Own(yArray, std::move(y));
  const int loaded = Finish(*this, in);
  active = 0;  // these images are reported as not active
  return loaded;
}

void PrnType::ParseHPDTAStatus(char* const text, HPDTAHeaderType* block) const {
  if (*text == '[')
    ParseByKey(*block, text);
  else
    ParseByPosition(*block, text);
}

int PrnType::HPDTATime(int day, int month, int year) const {
  if (fileType != FileHPDTA) return 0;
  unsigned d = 0;
  unsigned m = 0;
  unsigned y = 0;
  if (ScanLine(TextOf(hpdta.hpdtaDate), "%2u-%2u-%4u", {&d, &m, &y}) != 3) return 0;
  const auto acquired = DateOf(static_cast<int>(d), static_cast<int>(m), static_cast<int>(y));
  const auto since = DateOf(day, month, year);
  return acquired && since ? static_cast<int>((*acquired - *since).count()) : 0;
}
