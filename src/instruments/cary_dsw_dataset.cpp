// Cary container (.DSW, .BSW, .BSK, .CSW) as the instrument meant it: a chain of stores, of which some are spectra.
//
//   0    "\x11Varian UV-VIS-NIR"
//   62   stores up to 4 bytes before the end: u32 length and name of the class, u32 size from the store's first
//   byte
//        to the next one
//
// A spectrum begins behind the size with a header of 1028 bytes (f32 extremes of X and Y at 8, u32 number of points
// at 24), then come its points as pairs of f32, then texts, each behind its u32 length: the name, "key: value"
// lines, and the parameters in columns.
#include <algorithm>

#include "dataset/reader.h"
#include "portable.h"
#include "text/words.h"

namespace kem::dataset {
using namespace text;
namespace {

constexpr std::string_view kMark = "Varian UV-VIS-NIR";
constexpr std::size_t kFirstStore = 62;
constexpr std::size_t kHeaderSize = 1028;
constexpr std::size_t kExtremes = 8;
constexpr std::size_t kPoints = 24;
constexpr std::size_t kPairSize = 8;

std::uint32_t Word(std::string_view bytes, std::size_t at) {
  std::uint32_t word = 0;
  for (std::size_t k = 0; k < 4; ++k) word |= std::uint32_t{static_cast<unsigned char>(bytes[at + k])} << (8 * k);
  return word;
}

float Float(std::string_view bytes, std::size_t at) { return portable::bit_cast<float>(Word(bytes, at)); }

// ------------------------------------------------------------ stores

struct Store {
  std::size_t at;           // of its header in the file
  std::string_view header;  // and what follows it, to the end of the store
  std::size_t points;
  bool baseline;

  std::string_view Texts() const { return header.substr(kHeaderSize + points * kPairSize); }
};

// Takes a text behind its length; false at the end of the texts.
bool TakeText(std::string_view& texts, std::string_view& text) {
  if (texts.size() < 4) return false;
  const std::size_t length = Word(texts, 0);
  if (length > texts.size() - 4) return false;
  text = texts.substr(4, length);
  texts.remove_prefix(4 + length);
  return true;
}

// The spectra of a container: scans first, then the baselines they were corrected with.
std::vector<Store> StoresOf(std::string_view file) {
  std::vector<Store> stores;
  std::size_t at = kFirstStore;
  while (file.size() - at > 8) {
    const std::size_t length = Word(file, at);
    if (length > file.size() - at - 8) break;
    const std::string_view name = file.substr(at + 4, length);
    const std::size_t size = Word(file, at + 4 + length);
    const std::size_t header = at + 8 + length;
    if (size < 8 + length) break;
    const std::size_t end = std::min(size, file.size() - at) + at;
    const bool baseline = name == "TBaselineStore";
    if ((baseline || name == "TContinuumStore") && end - header >= kHeaderSize) {
      const std::string_view content = file.substr(header, end - header);
      const std::size_t room = (content.size() - kHeaderSize) / kPairSize;
      stores.push_back({header, content, std::min<std::size_t>(Word(content, kPoints), room), baseline});
    }
    if (size > file.size() - at) break;
    at += size;
  }
  std::stable_partition(stores.begin(), stores.end(), [](const Store& s) { return !s.baseline; });
  return stores;
}

std::string NameOf(const Store& store) {
  std::string_view texts = store.Texts();
  std::string_view name;
  return TakeText(texts, name) ? std::string(Trimmed(name)) : std::string();
}

// ------------------------------------------------------------ texts

// The colon behind a drive's letter, "Saved as C:\data", belongs to the value.
bool IsDrive(std::string_view text, std::size_t colon) {
  return colon >= 2 && colon + 1 < text.size() && text[colon - 2] == ' ' && text[colon + 1] == '\\';
}

// "Name    value", "Name: value", "<Name> , value", "Name C:\value"; a heading ("Parameter List :") begins a
// section.
void AddText(Dataset& d, std::string& section, std::string_view text) {
  const std::string_view content = Trimmed(text);
  if (content.empty()) return;
  const auto split = [&](std::size_t end, std::size_t next) {
    AddParameter(d, section, Trimmed(content.substr(0, end)),
                 Trimmed(content.substr(std::min(next, content.size()))));
  };
  const auto colon = content.find(':');
  const auto columns = content.find("  ");
  if (content.front() == '<' && content.find("> ,") != content.npos) {
    const auto end = content.find("> ,");
    AddParameter(d, section, content.substr(1, end - 1), Trimmed(content.substr(end + 3)));
  } else if (colon == content.size() - 1) {
    section = Trimmed(content.substr(0, colon));
    if (section == "Operator Name") section.clear();  // a name that was not filled in
  } else if (colon < columns && IsDrive(content, colon)) {
    split(colon - 1, colon - 1);
  } else if (colon < columns || Trimmed(content.substr(0, colon)).find("  ") == std::string_view::npos) {
    split(std::min(colon, content.size()), colon == content.npos ? content.size() : colon + 1);
  } else {
    split(columns, columns);
  }
}

void AddTexts(Dataset& d, const Store& store) {
  std::string_view texts = store.Texts();
  std::string_view text;
  std::string section;
  (void)TakeText(texts, text);  // the name
  while (TakeText(texts, text)) AddText(d, section, text);
}

std::string TextOf(const Dataset& d, std::string_view key) {
  const Parameter* found = d.Find(key);
  return found ? found->text : std::string();
}

// ------------------------------------------------------------ reader

std::string RecogniseCary(Source& source) {
  if (source.Head().substr(0, 64).find(kMark) == std::string_view::npos) return {};
  return "begins with \"Varian UV-VIS-NIR\"";
}

std::vector<Store> SpectraOf(Source& source) {
  const std::string_view file = source.Content();
  if (file.size() < kFirstStore) Fail(ErrorCode::Damaged, source.Path(), "ends within its header");
  std::vector<Store> stores = StoresOf(file);
  if (stores.empty()) Fail(ErrorCode::Damaged, source.Path(), "holds no spectrum");
  return stores;
}

std::vector<std::string> CaryItems(Source& source) {
  std::vector<std::string> names;
  for (const Store& store : SpectraOf(source)) names.push_back(NameOf(store));
  return names;
}

void CheckExtremes(Dataset& d, const Store& store, const Values& x) {
  const Values* const sides[] = {&x, &d.values};
  for (std::size_t side = 0; side < 2; ++side) {
    const auto values = sides[side]->As<float>();
    if (values.empty()) return;
    const auto [low, high] = std::minmax_element(values.begin(), values.end());
    if (*low != Float(store.header, kExtremes + 8 * side) || *high != Float(store.header, kExtremes + 4 + 8 * side))
      d.notes.push_back({Severity::Doubtful, std::string("the ") + (side == 0 ? "X" : "Y") +
                                                 " values are not in the range that the file names"});
  }
}

Dataset OpenCary(Source& source, int item) {
  const Store store = SpectraOf(source)[static_cast<std::size_t>(item) - 1];
  Dataset d;
  d.title = NameOf(store);
  AddTexts(d, store);
  Layout layout{.at = store.at + kHeaderSize, .order = std::endian::little, .type = NumberType::F32, .columns = 2};
  const Values x = ReadValues(source, layout, store.points);
  layout.column = 1;
  d.values = ReadValues(source, layout, store.points);
  const std::string unit = TextOf(d, "X Mode");
  const auto coordinates = x.As<float>();
  d.axes = {Axis::Stored(unit.starts_with("Nano") || unit.starts_with("Angs") ? "Wavelength" : "X", unit,
                         {coordinates.begin(), coordinates.end()})};
  d.name = TextOf(d, "Y Mode");
  const std::size_t announced = Word(store.header, kPoints);
  if (announced != store.points)
    d.notes.push_back({Severity::Damaged,
                       "holds " + std::to_string(store.points) + " of " + std::to_string(announced) + " points"});
  CheckExtremes(d, store, x);
  return d;
}

}  // namespace

const Reader kCaryReader{"Cary DSW", ".DSW .BSW .BSK .CSW", RecogniseCary, CaryItems, OpenCary};

}  // namespace kem::dataset
