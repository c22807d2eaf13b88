// JCAMP-DX as its standard has it (McDonald and Wilks, Applied Spectroscopy 42 (1988) 151; Davies and Lampen, 47
// (1993) 1093).
//
// A label is "##", then everything up to "=", compared without blanks, "-", "/", "_" and case; its value runs on to
// the next label. "$$" begins a comment. From ##TITLE to ##END is a block; one that links others has ##BLOCKS or
// the data type LINK. Items are the blocks that hold a spectrum, and in tuples their pages.
#include <algorithm>
#include <cmath>
#include <utility>

#include "dataset/reader.h"
#include "formats/asdf.h"
#include "portable.h"
#include "text/short_number.h"
#include "text/words.h"

namespace kem::dataset {
using namespace text;
namespace {

// ------------------------------------------------------------ labels

std::string Normal(std::string_view label) {
  std::string normal;
  for (const char c : label) {
    if (std::string_view(" \t-/_\r\n").find(c) != std::string_view::npos) continue;
    normal += Upper(c);
  }
  return normal;
}

struct Label {
  std::string_view key;    // as the file spells it
  std::string normal;      // to be compared
  std::string_view value;  // with comments and line ends
};

// Where the next label begins; the end of the text when there is none. Two number signs inside a line are none.
std::size_t NextLabel(std::string_view text, std::size_t from) {
  for (auto at = text.find("##", from); at != text.npos; at = text.find("##", at + 2)) {
    auto before = at;
    while (before > 0 && (text[before - 1] == ' ' || text[before - 1] == '\t')) --before;
    if (before == 0 || text[before - 1] == '\n' || text[before - 1] == '\r') return at;
  }
  return text.size();
}

std::vector<Label> LabelsOf(std::string_view text) {
  std::vector<Label> labels;
  for (std::size_t at = NextLabel(text, 0); at < text.size();) {
    const std::size_t next = NextLabel(text, at + 2);
    const std::string_view whole = text.substr(at + 2, next - at - 2);
    const auto equals = whole.find('=');
    if (equals != whole.npos)
      labels.push_back(
          {Trimmed(whole.substr(0, equals)), Normal(whole.substr(0, equals)), whole.substr(equals + 1)});
    at = next;
  }
  return labels;
}

// The value without comments, its lines joined by line feeds.
std::string Clean(std::string_view value) {
  std::string clean;
  Lines lines(value);
  for (std::string_view line; lines.Next(line);) {
    const std::string_view content = Trimmed(line.substr(0, line.find("$$")));
    if (content.empty()) continue;
    if (!clean.empty()) clean += '\n';
    clean += content;
  }
  return clean;
}

// ------------------------------------------------------------ blocks

using LabelSpan = std::vector<const Label*>;

// What can be opened: the labels that say everything about it, and the one that holds the numbers.
struct Item {
  LabelSpan labels;  // of its block, in the order of the file
  LabelSpan links;   // of the block that links it
  const Label* page = nullptr;
  LabelSpan pageLabels;
  const Label* data = nullptr;
};

const Label* Find(const LabelSpan& labels, std::string_view normal) {
  const auto found =
      std::find_if(labels.begin(), labels.end(), [normal](const Label* l) { return l->normal == normal; });
  return found == labels.end() ? nullptr : *found;
}

bool IsData(const Label& label) {
  constexpr std::string_view kNames[] = {"XYDATA", "XYPOINTS", "PEAKTABLE", "DATATABLE"};
  return std::find(std::begin(kNames), std::end(kNames), label.normal) != std::end(kNames);
}

bool IsLink(const LabelSpan& labels) {
  const Label* type = Find(labels, "DATATYPE");
  return Find(labels, "BLOCKS") || Find(labels, "NBLOCKS") || (type && Normal(Clean(type->value)) == "LINK");
}

// Collects the items of one file.
class Blocks {
 public:
  explicit Blocks(const std::vector<Label>& labels) {
    for (const Label& label : labels) Take(label);
    Close();
  }
  std::vector<Item> Items() && { return std::move(items_); }

 private:
  void Take(const Label& label) {
    if (label.normal == "TITLE") {
      if (!block_.empty() && IsLink(block_)) links_ = block_;
      Close();
    }
    if (label.normal == "END") return Close();
    if (label.normal == "PAGE" || label.normal == "ENDNTUPLES") {
      page_ = label.normal == "PAGE" ? &label : nullptr;
      pageLabels_.clear();
      return;
    }
    if (IsData(label)) {
      const bool tuples = label.normal == "DATATABLE";
      items_.push_back({{}, links_, tuples ? page_ : nullptr, tuples ? pageLabels_ : LabelSpan(), &label});
    } else {
      (page_ ? pageLabels_ : block_).push_back(&label);
    }
  }

  // Labels count for all items of their block, also for those before them.
  void Close() {
    for (; given_ < items_.size(); ++given_) items_[given_].labels = block_;
    block_.clear();
    page_ = nullptr;
    pageLabels_.clear();
  }

  std::vector<Item> items_;
  std::size_t given_ = 0;  // items that have got their labels
  LabelSpan links_;
  LabelSpan block_;
  LabelSpan pageLabels_;
  const Label* page_ = nullptr;
};

std::string ValueOf(const Item& item, std::string_view normal) {
  const Label* found = Find(item.pageLabels, normal);
  if (!found) found = Find(item.labels, normal);
  return found ? Clean(found->value) : std::string();
}

std::string NameOf(const Item& item) { return item.page ? Clean(item.page->value) : ValueOf(item, "TITLE"); }

// ------------------------------------------------------------ numbers

// A comma between digits of a single number can only be a decimal one.
bool HasDecimalComma(std::string_view number) {
  for (std::size_t k = 1; k + 1 < number.size(); ++k)
    if (number[k] == ',' && IsDigit(number[k - 1]) && IsDigit(number[k + 1])) return true;
  return false;
}

std::optional<double> NumberOf(std::string text) {
  if (HasDecimalComma(text)) std::replace(text.begin(), text.end(), ',', '.');
  return NumberIn(Trimmed(text));
}

std::optional<double> NumberOf(const Item& item, std::string_view normal) {
  return NumberOf(ValueOf(item, normal));
}

bool UsesDecimalComma(const Item& item) {
  const std::string_view labels[] = {"FIRSTX", "LASTX", "FIRSTY"};
  return std::any_of(std::begin(labels), std::end(labels),
                     [&item](std::string_view label) { return HasDecimalComma(ValueOf(item, label)); });
}

// The entry of a variable in a list of tuples.
std::string Entry(const Item& item, std::string_view list, std::size_t variable) {
  const auto entries = SplitList(ValueOf(item, list));
  return variable < entries.size() ? entries[variable] : std::string();
}

// What an item's numbers mean: factors, ends and units, from labels or from the lists of tuples.
struct Meaning {
  double xFactor = 1;
  double yFactor = 1;
  std::optional<double> firstX, lastX, deltaX, firstY, points;
  std::string xName, xUnit, yName, yUnit;
};

Meaning MeaningOfBlock(const Item& item) {
  return {.xFactor = NumberOf(item, "XFACTOR").value_or(1),
          .yFactor = NumberOf(item, "YFACTOR").value_or(1),
          .firstX = NumberOf(item, "FIRSTX"),
          .lastX = NumberOf(item, "LASTX"),
          .deltaX = NumberOf(item, "DELTAX"),
          .firstY = NumberOf(item, "FIRSTY"),
          .points = NumberOf(item, "NPOINTS"),
          .xName = ValueOf(item, "XLABEL"),
          .xUnit = ValueOf(item, "XUNITS"),
          .yName = ValueOf(item, "YLABEL"),
          .yUnit = ValueOf(item, "YUNITS")};
}

// The variable of a symbol; that of its place where the list does not name it.
std::size_t VariableOf(const Item& item, char symbol, std::size_t place) {
  const auto symbols = SplitList(ValueOf(item, "SYMBOL"));
  const auto found = std::find(symbols.begin(), symbols.end(), std::string(1, symbol));
  return found == symbols.end() ? place : static_cast<std::size_t>(found - symbols.begin());
}

// A form names its variables: "(X++(R..R))", "(XY..XY)".
Meaning MeaningOfPage(const Item& item, std::string_view form) {
  const std::size_t x = VariableOf(item, form.size() > 1 ? form[1] : 'X', 0);
  const auto second = form.find_first_of("ABCDEFGHIJKLMNOPQRSTUVWYZ");
  const std::size_t y = VariableOf(item, second == form.npos ? 'Y' : form[second], 1);
  const auto points = NumberOf(item, "NPOINTS");
  return {.xFactor = NumberOf(Entry(item, "FACTOR", x)).value_or(1),
          .yFactor = NumberOf(Entry(item, "FACTOR", y)).value_or(1),
          .firstX = NumberOf(Entry(item, "FIRST", x)),
          .lastX = NumberOf(Entry(item, "LAST", x)),
          .deltaX = {},
          .firstY = {},  // those of the list belong to the first page
          .points = points ? points : NumberOf(Entry(item, "VARDIM", y)),
          .xName = Entry(item, "VARNAME", x),
          .xUnit = Entry(item, "UNITS", x),
          .yName = Entry(item, "VARNAME", y),
          .yUnit = Entry(item, "UNITS", y)};
}

// ------------------------------------------------------------ tables

struct Points {
  std::vector<double> x;  // empty where the abscissae are evenly spaced
  std::vector<double> y;
};

// Takes the numbers of a text, whatever separates them.
std::vector<double> ScanPairs(std::string_view text, bool decimalComma, std::size_t& unknown) {
  std::vector<double> numbers;
  std::string plain;
  Lines lines(text);
  for (std::string_view line; lines.Next(line);) {
    plain = line.substr(0, line.find("$$"));
    if (decimalComma)
      for (std::size_t k = 1; k + 1 < plain.size(); ++k)
        if (plain[k] == ',' && IsDigit(plain[k - 1]) && IsDigit(plain[k + 1])) plain[k] = '.';
    const char* at = plain.data();
    const char* const end = at + plain.size();
    while (at != end) {
      if (std::string_view(" \t,;+").find(*at) != std::string_view::npos) {
        ++at;
        continue;
      }
      double value = 0;
      const auto parsed = FromChars(at, end, value);
      if (parsed.ec == std::errc()) numbers.push_back(value);
      unknown += parsed.ec == std::errc() ? 0 : 1;
      at = parsed.ec == std::errc() ? parsed.ptr : at + 1;
    }
  }
  return numbers;
}

void NoteUnknown(Dataset& d, std::size_t count) {
  if (count > 0)
    d.notes.push_back({Severity::Doubtful, "characters in the data that are no numbers: " + std::to_string(count)});
}

Points ReadPairs(Dataset& d, std::string_view text, const Meaning& meaning, bool decimalComma) {
  std::size_t unknown = 0;
  const std::vector<double> numbers = ScanPairs(text, decimalComma, unknown);
  NoteUnknown(d, unknown);
  if (numbers.size() % 2 != 0) d.notes.push_back({Severity::Damaged, "the last pair has no second number"});
  Points points;
  for (std::size_t k = 0; k + 1 < numbers.size(); k += 2) {
    points.x.push_back(numbers[k] * meaning.xFactor);
    points.y.push_back(numbers[k + 1] * meaning.yFactor);
  }
  return points;
}

Points ReadOrdinates(const std::filesystem::path& file, Dataset& d, std::string_view text, const Meaning& meaning,
                     bool decimalComma) {
  formats::Ordinates ordinates = formats::DecodeOrdinates(text, decimalComma, meaning.points.value_or(0));
  if (ordinates.absurd)
    Fail(ErrorCode::Damaged, file,
         "repeats a value more often than " + std::to_string(text.size()) + " bytes would");
  NoteUnknown(d, ordinates.unknownSymbols);
  if (ordinates.failedChecks > 0)
    d.notes.push_back({Severity::Doubtful, "lines that do not begin with the ordinate before: " +
                                               std::to_string(ordinates.failedChecks)});
  if (meaning.yFactor != 1)
    for (double& y : ordinates.values) y *= meaning.yFactor;
  return {{}, std::move(ordinates.values)};
}

// The announced count sets the spacing, whatever number of points is there.
Axis EvenAxis(Dataset& d, const Meaning& meaning, std::size_t count) {
  const double first = meaning.firstX.value_or(0);
  const double points = meaning.points.value_or(static_cast<double>(count));
  double step = meaning.deltaX.value_or(1);
  if (meaning.lastX && points > 1) step = (*meaning.lastX - first) / (points - 1);
  if (!meaning.firstX || (!meaning.lastX && !meaning.deltaX))
    d.notes.push_back({Severity::Doubtful, "FIRSTX or LASTX is missing; the axis is incomplete"});
  const bool whole = meaning.lastX && points == static_cast<double>(count);
  const double end = whole ? *meaning.lastX : first + static_cast<double>(count > 0 ? count - 1 : 0) * step;
  return Axis::Linear(meaning.xName, meaning.xUnit, count, first, end);
}

void CheckTable(Dataset& d, const Meaning& meaning, const std::vector<double>& y) {
  const auto count = static_cast<double>(y.size());
  if (meaning.points && *meaning.points != count) {
    std::string problem = "holds " + std::to_string(y.size()) + " points; NPOINTS announces ";
    portable::AppendGeneral(problem, *meaning.points, 15);
    d.notes.push_back({count < *meaning.points ? Severity::Damaged : Severity::Doubtful, std::move(problem)});
  }
  if (!meaning.firstY || y.empty()) return;
  const double tolerance = std::max(std::abs(*meaning.firstY) * 1e-3, std::abs(meaning.yFactor));
  if (std::abs(*meaning.firstY - y[0]) > tolerance)
    d.notes.push_back({Severity::Doubtful, "FIRSTY is not the first ordinate"});
}

// ------------------------------------------------------------ reader

void AddParameters(Dataset& d, const char* section, const LabelSpan& labels) {
  for (const Label* label : labels) AddParameter(d, section, label->key, Clean(label->value));
}

std::string RecogniseJcamp(Source& source) {
  const std::string_view head = source.Head();
  const std::vector<Label> labels = LabelsOf(head);
  if (labels.empty()) return {};
  const auto isMark = [](const Label& l) { return l.normal == "TITLE" || l.normal == "JCAMPDX"; };
  if (std::none_of(labels.begin(), labels.end(), isMark) || head.find('\0') != head.npos) return {};
  return "its first labels are ##" + std::string(labels.front().key) + "= and others of this kind";
}

struct Content {
  std::vector<Label> labels;
  std::vector<Item> items;  // point to them

  explicit Content(std::string_view text) : labels(LabelsOf(text)), items(Blocks(labels).Items()) {}
};

const std::vector<Item>& ItemsOf(Source& source) {
  return source.Once<Content>([&source] { return Content(source.Content()); }).items;
}

std::vector<std::string> JcampItems(Source& source) {
  std::vector<std::string> names;
  for (const Item& item : ItemsOf(source)) names.push_back(NameOf(item));
  if (names.empty())
    Fail(ErrorCode::NotReadable, source.Path(),
         "holds no spectrum that kem reads (XYDATA, XYPOINTS, PEAK TABLE or DATA TABLE)");
  return names;
}

Dataset OpenJcamp(Source& source, int number) {
  const Item& item = ItemsOf(source)[static_cast<std::size_t>(number) - 1];
  Dataset d;
  AddParameters(d, "", item.labels);
  if (item.page) AddParameter(d, "", item.page->key, Clean(item.page->value));
  AddParameters(d, "", item.pageLabels);
  AddParameters(d, "LINK", item.links);
  d.title = ValueOf(item, "TITLE");

  const std::string_view value = item.data->value;
  const auto lineEnd = std::min(value.find_first_of("\r\n"), value.size());
  const std::string_view line = value.substr(0, lineEnd);
  const std::string form = Normal(line.substr(0, line.find("$$")));
  const std::string_view text = value.substr(lineEnd);
  const bool even = form.find("++") != form.npos;
  if (!even && !form.starts_with("(XY..XY)"))
    Fail(ErrorCode::NotReadable, source.Path(), "its table has the form " + form + ", which kem does not read");
  const Meaning meaning = item.page ? MeaningOfPage(item, form) : MeaningOfBlock(item);
  const bool comma = UsesDecimalComma(item);
  Points points = even ? ReadOrdinates(source.Path(), d, text, meaning, comma) : ReadPairs(d, text, meaning, comma);
  CheckTable(d, meaning, points.y);
  d.name = meaning.yName;
  d.unit = meaning.yUnit;
  d.axes = {even ? EvenAxis(d, meaning, points.y.size())
                 : Axis::Stored(meaning.xName, meaning.xUnit, std::move(points.x))};
  d.values = Values::Of(std::move(points.y));
  return d;
}

}  // namespace

const Reader kJcampReader{"JCAMP-DX", ".dx .jdx .jcm", RecogniseJcamp, JcampItems, OpenJcamp};

}  // namespace kem::dataset
