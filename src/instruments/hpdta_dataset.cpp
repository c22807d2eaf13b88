// HPDTA (HiPic) images as the instrument meant them: see hpdta.cpp for the layout.
//
// Pixels keep their type. An axis comes from a table of floats anywhere in the file, which its scaling file names
// ("#1379631,0672" or "*0614925": position and count), or counts pixels in steps of its scale.
#include <algorithm>
#include <array>

#include "dataset/reader.h"
#include "instruments/hpdta_status.h"
#include "text/words.h"

namespace kem::dataset {
using namespace text;
namespace {

constexpr std::size_t kHeaderSize = 64;

struct Header {
  std::size_t textSize = 0;
  std::size_t width = 0;
  std::size_t height = 0;
  int type = 0;
};

std::optional<Header> HeaderOf(Source& source) {
  const std::string_view head = source.Head();
  if (head.size() < kHeaderSize || !head.starts_with("IM")) return std::nullopt;
  const auto word = [head](std::size_t at) {
    return static_cast<unsigned char>(head[at]) + 256 * static_cast<unsigned char>(head[at + 1]);
  };
  return Header{static_cast<std::size_t>(word(2)), static_cast<std::size_t>(word(4)),
                static_cast<std::size_t>(word(6)), word(12)};
}

std::optional<NumberType> TypeOf(int code) {
  switch (code) {
    case 0:
      return NumberType::U8;
    case 2:
      return NumberType::U16;
    case 3:
      return NumberType::U32;
    default:
      return std::nullopt;
  }
}

constexpr int kCompressed = 1;

// ------------------------------------------------------------ status text

// Fields of the list that goes by position; the others are numbered.
struct Field {
  int index;
  const char* key;
};
constexpr Field kFields[] = {{5, "AcqMode"},       {11, "Date"},
                             {12, "Time"},         {30, "ExposureTime"},
                             {35, "NrTrigger"},    {40, "NrExposure"},
                             {48, "ScalingXType"}, {49, "ScalingXScale"},
                             {50, "ScalingXUnit"}, {51, "ScalingXScalingFile"},
                             {52, "ScalingYType"}, {53, "ScalingYScale"},
                             {54, "ScalingYUnit"}, {55, "ScalingYScalingFile"},
                             {63, "MCP Gain"}};

// The free text behind the list has lines like "Streak:Time=10 ns, Mode=Operate".
void ReadFreeText(Dataset& d, std::string_view text) {
  Lines lines(text);
  for (std::string_view line; lines.Next(line);) {
    const std::string_view content = Trimmed(line);
    const auto colon = content.find(':');
    const auto equals = content.find('=');
    if (content.empty()) continue;
    if (colon > equals || equals == content.npos) {
      AddParameter(d, {}, "UserComment", content);
      continue;
    }
    for (const std::string& entry : SplitList(content.substr(colon + 1))) {
      const auto at = std::min(entry.find('='), entry.size());
      if (!entry.empty())
        AddParameter(d, content.substr(0, colon), entry.substr(0, at),
                     entry.substr(std::min(at + 1, entry.size())));
    }
  }
}

void ReadByPosition(Dataset& d, std::string_view text) {
  for (int index = 0; index < kHPDTAStatusFields; ++index) {
    const auto end = std::min(text.find(','), text.size());
    const std::string_view value = Trimmed(text.substr(0, end));
    text.remove_prefix(std::min(end + 1, text.size()));
    const auto* const field =
        std::find_if(std::begin(kFields), std::end(kFields), [index](const Field& f) { return f.index == index; });
    const std::string key = field == std::end(kFields) ? "Field " + std::to_string(index) : field->key;
    if (!value.empty()) AddParameter(d, {}, key, value);
  }
  ReadFreeText(d, text);
}

void ReadStatus(Dataset& d, std::string_view text) {
  text = text.substr(0, text.find('\0'));
  if (!text.starts_with('[')) return ReadByPosition(d, text);
  WalkHPDTAStatus(text, [&d](std::string_view section, std::string_view key, std::string_view value) {
    AddParameter(d, section, key, value);
  });
}

std::string TextOf(const Dataset& d, std::string_view key) {
  const Parameter* found = d.Find(key);
  return found ? found->text : std::string();
}

// ------------------------------------------------------------ axes

struct Quantity {
  std::string_view unit;
  const char* name;
};
constexpr Quantity kQuantities[] = {
    {"nm", "Wavelength"}, {"um", "Wavelength"}, {"eV", "Energy"}, {"cm-1", "Wavenumber"}, {"fs", "Time"},
    {"ps", "Time"},       {"ns", "Time"},       {"us", "Time"},   {"ms", "Time"},         {"s", "Time"}};

std::string NameOfQuantity(std::string_view unit, char letter) {
  for (const Quantity& q : kQuantities)
    if (q.unit == unit) return q.name;
  return std::string(1, letter);
}

// The place of a table: behind "#" or "*". Other texts name a scale outside of the file.
std::optional<std::uint64_t> TableAt(std::string_view scalingFile) {
  if (!scalingFile.starts_with('#') && !scalingFile.starts_with('*')) return std::nullopt;
  const auto position = NumberIn(scalingFile.substr(1, scalingFile.find(',') - 1));
  if (!position || !(*position >= 0 && *position <= 1e15)) return std::nullopt;
  return static_cast<std::uint64_t>(*position);
}

Axis ReadAxis(Source& source, Dataset& d, char letter, std::size_t count) {
  const std::string prefix = std::string("Scaling") + letter;
  const std::string unit = TextOf(d, prefix + "Unit");
  const std::string name = NameOfQuantity(unit, letter);
  const std::string file = TextOf(d, prefix + "ScalingFile");
  if (TextOf(d, prefix + "Type") == "2") {
    const auto at = TableAt(file);
    const Layout layout{.at = at.value_or(0), .order = std::endian::little, .type = NumberType::F32};
    if (at && HeldValues(source, layout) >= count) {
      const Values table = ReadValues(source, layout, count);
      const auto numbers = table.As<float>();
      return Axis::Stored(name, unit, {numbers.begin(), numbers.end()});
    }
    d.notes.push_back(
        {Severity::Doubtful, prefix + "Type is 2, a table, but " +
                                 (at ? "the file ends before it" : "\"" + file + "\" is not in the file") +
                                 "; the axis counts pixels"});
  }
  const Parameter* scale = d.Find(prefix + "Scale");
  const double step = scale && scale->number ? *scale->number : 1;
  return Axis::Linear(name, unit, count, 0, static_cast<double>(count - 1) * step);
}

// ------------------------------------------------------------ reader

std::string RecogniseHPDTA(Source& source) {
  const auto header = HeaderOf(source);
  if (!header) return {};
  const std::string_view status = source.Head().substr(kHeaderSize);
  const bool known = header->textSize > 0 && (status.starts_with('[') || status.starts_with("HiPic"));
  const auto type = TypeOf(header->type);
  const std::uint64_t end =
      kHeaderSize + header->textSize + header->width * header->height * (type ? SizeOf(*type) : 1);
  const bool empty = header->width == 0 || header->height == 0;
  if (!known && (!type || empty || end > source.Size())) return {};
  return "begins with IM, and its sizes fit";
}

Dataset OpenHPDTA(Source& source, int) {
  const Header header = *HeaderOf(source);
  const auto type = TypeOf(header.type);
  if (!type)
    Fail(ErrorCode::NotReadable, source.Path(),
         header.type == kCompressed
             ? "its image is compressed, which kem does not read"
             : "its image has type " + std::to_string(header.type) + ", which kem does not read");
  if (header.width == 0 || header.height == 0)
    Fail(ErrorCode::Damaged, source.Path(),
         "its image has " + std::to_string(header.width) + " x " + std::to_string(header.height) + " pixels");
  if (kHeaderSize + header.textSize > source.Size())
    Fail(ErrorCode::Damaged, source.Path(), "ends within its status text");
  std::string status(header.textSize, '\0');
  source.Read(kHeaderSize, std::as_writable_bytes(std::span(status)));

  Dataset d;
  ReadStatus(d, status);
  d.title = TextOf(d, "UserComment");
  d.name = TextOf(d, "ZAxisLabel");
  d.unit = TextOf(d, "ZAxisUnit");
  if (d.name.empty()) d.name = "Intensity";
  d.axes = {ReadAxis(source, d, 'Y', header.height), ReadAxis(source, d, 'X', header.width)};
  const Layout layout{.at = kHeaderSize + header.textSize, .order = std::endian::little, .type = *type};
  d.values = ReadValues(source, layout, FitToFile(d, HeldValues(source, layout), "file"));
  return d;
}

}  // namespace

const Reader kHPDTAReader{"HPDTA image", ".img", RecogniseHPDTA, OneItem, OpenHPDTA};

}  // namespace kem::dataset
