// Columns of numbers in text, whatever program wrote them.
//
// A row is a line of two numbers or more. Tabs and semicolons separate, and so do commas and blanks where they
// leave a reading; a comma that cannot separate is a decimal one:
//
//   1.5 2.5     1.5,2.5     1.5, 2.5     1,5;2,5     1,5 2,5     1.5<TAB>2.5
//
// Other lines are parameters ("Key: value", "KEY<TAB>value", "# key = value") or comments. The line before the
// first row may name the columns. Each column behind the first is an item; three columns that run through a lattice
// are a grid, and so is a matrix whose first line has "Y \ X" and the X coordinates. The headers of XY and NXY
// files name titles by position, see prn.cpp.
#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

#include "dataset/reader.h"
#include "text/short_number.h"
#include "text/words.h"

namespace kem::dataset {
using namespace text;
namespace {

// ------------------------------------------------------------ rows

// What keeps the numbers of a line apart.
struct Separators {
  std::string_view strong;  // one of them stands between two fields, which may be empty
  bool decimalComma = false;
};

// Commas separate where a blank follows each of them or no blanks stand between numbers.
Separators SeparatorsOf(std::string_view line) {
  if (line.find('\t') != line.npos) return {"\t", true};
  if (line.find(';') != line.npos) return {";", true};
  const auto comma = line.find(',');
  if (comma == line.npos) return {};
  const bool blanks = line.find(' ') != line.npos;
  for (auto at = comma; blanks && at != line.npos; at = line.find(',', at + 1))
    if (at + 1 < line.size() && line[at + 1] != ' ') return {{}, true};
  return {",", false};
}

std::optional<double> FieldNumber(std::string_view field, bool decimalComma) {
  const auto comma = field.find(',');
  if (comma == field.npos) return NumberIn(field);
  if (!decimalComma || comma == 0 || comma + 1 == field.size() || !IsDigit(field[comma + 1])) return std::nullopt;
  std::string plain(field);
  plain[comma] = '.';
  return NumberIn(plain);
}

// Takes the next field of a line without the blanks around it.
std::string_view TakeField(std::string_view& line, std::string_view strong) {
  const auto end = std::min(line.find_first_of(strong.empty() ? " \t" : strong), line.size());
  const std::string_view field = Trimmed(line.substr(0, end));
  line.remove_prefix(std::min(end + 1, line.size()));
  if (strong.empty()) line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
  return field;
}

// The numbers of a row as most are: short ones with one kind of gap between them. Returns where its line ends; null
// for a row of another kind, of which numbers may have been taken.
const char* ScanPlainRow(const char* at, const char* end, std::vector<double>& numbers) {
  const auto skipBlanks = [&] {
    while (at != end && *at == ' ') ++at;
  };
  const auto lineEnds = [&] { return at == end || *at == '\n' || *at == '\r'; };
  const auto separates = [](char c) { return c == ' ' || c == '\t' || c == ',' || c == ';'; };
  char gap = 0;
  double number = 0;
  for (skipBlanks(); (at = TakeShort(at, end, number)) != nullptr;) {
    numbers.push_back(number);
    if (lineEnds()) return at;
    if (gap == 0) gap = *at;
    if (*at++ != gap || !separates(gap)) return nullptr;
    if (gap != ' ') continue;
    skipBlanks();
    if (lineEnds()) return at;
  }
  return nullptr;
}

// The numbers of a row; false when the line is none. An empty field is not a number.
bool ScanRow(std::string_view line, std::vector<double>& numbers) {
  numbers.clear();
  line = Trimmed(line);
  if (line.empty() || !(IsDigit(line[0]) || std::string_view("+-.").find(line[0]) != std::string_view::npos))
    return false;
  if (ScanPlainRow(line.data(), line.data() + line.size(), numbers) && numbers.size() >= 2) return true;
  numbers.clear();
  const Separators separators = SeparatorsOf(line);
  while (!line.empty()) {
    const std::string_view field = TakeField(line, separators.strong);
    const auto number =
        field.empty() ? std::numeric_limits<double>::quiet_NaN() : FieldNumber(field, separators.decimalComma);
    if (!number) return false;
    numbers.push_back(*number);
  }
  return numbers.size() >= 2 && !std::isnan(numbers[0]);
}

// ------------------------------------------------------------ header

// "# [SPL]" begins a section.
void AddHeaderLine(Dataset& d, std::string_view line, std::string& section) {
  const bool marked = line.starts_with('#');
  while (!line.empty() && (line.front() == '#' || line.front() == ' ')) line.remove_prefix(1);
  const std::string_view whole = Trimmed(line);
  if (whole.empty()) return;
  if (marked && whole.front() == '[' && whole.back() == ']') {
    section = whole.substr(1, whole.size() - 2);
    return;
  }
  for (const char separator : {'\t', ':', '='}) {
    constexpr std::size_t kLongestKey = 60;
    const auto at = line.find(separator);
    if (at == line.npos || at == 0 || at > kLongestKey || line.front() == '"') continue;
    return AddParameter(d, section, Trimmed(line.substr(0, at)), Trimmed(line.substr(at + 1)));
  }
  AddParameter(d, section, "Comment", whole);
}

// The titles of a line between the separators that it has, which may stand in quotes.
std::vector<NamedUnit> TitlesIn(std::string_view line) {
  std::vector<NamedUnit> titles;
  line = Trimmed(line);
  while (!line.empty() && line.front() == '#') line = Trimmed(line.substr(1));
  const bool blanks = line.find_first_of("\t;,") == line.npos;
  const std::string_view strong = blanks                         ? std::string_view()
                                  : line.find('\t') != line.npos ? "\t"
                                  : line.find(';') != line.npos  ? ";"
                                                                 : ",";
  while (!line.empty()) {
    const bool quoted = !blanks && line.front() == '"' && line.find('"', 1) != line.npos;
    if (quoted) {
      const auto end = line.find('"', 1);
      titles.push_back(SplitTitle(line.substr(1, end - 1)));
      line.remove_prefix(std::min(line.find_first_of(strong, end), line.size()));
      line.remove_prefix(std::min<std::size_t>(1, line.size()));
    } else {
      titles.push_back(SplitTitle(TakeField(line, strong)));
    }
  }
  return titles;
}

// The titles of the columns, where the line before the first row has one for each.
std::vector<NamedUnit> ColumnTitles(std::string_view line, std::size_t columns) {
  const std::vector<NamedUnit> titles = TitlesIn(line);
  const bool plain = std::none_of(titles.begin(), titles.end(), [](const NamedUnit& t) {
    return t.name.empty() ? t.unit.empty() : NumberIn(t.name).has_value();
  });
  return titles.size() == columns && plain ? titles : std::vector<NamedUnit>();
}

// ------------------------------------------------------------ tables

struct Table {
  std::size_t columns = 0;
  std::vector<double> numbers;            // row by row
  std::vector<std::string_view> header;   // lines before the rows
  std::vector<std::string_view> trailer;  // and behind them
  std::size_t oddRows = 0;                // rows of another length

  std::size_t Rows() const { return columns == 0 ? 0 : numbers.size() / columns; }
  double At(std::size_t row, std::size_t column) const { return numbers[row * columns + column]; }
};

// Takes rows that are plain, as most are, up to a line that is none.
void TakePlainRows(Lines& lines, Table& table) {
  for (;;) {
    const std::string_view rest = lines.Rest();
    const std::size_t before = table.numbers.size();
    const char* const end = ScanPlainRow(rest.data(), rest.data() + rest.size(), table.numbers);
    if (!end || table.numbers.size() - before != table.columns) return table.numbers.resize(before);
    lines.Leave(static_cast<std::size_t>(end - rest.data()));
  }
}

// Which header a table has; that of XY and NXY files counts its lines, empty ones included.
enum class Kind { Any, XY, NXY };

bool CountsLines(const Table& t) {
  const std::string_view first = t.header.empty() ? std::string_view() : Trimmed(t.header.front());
  return first == "XY" || first.starts_with("NXY ");
}

Kind KindOf(const Table& t) {
  if (!CountsLines(t)) return Kind::Any;
  if (Trimmed(t.header.front()) != "XY") return Kind::NXY;
  return t.header.size() >= 5 ? Kind::XY : Kind::Any;
}

void BeginRows(Table& table, std::size_t at, const std::vector<double>& row) {
  table.columns = row.size();
  table.header.resize(at);
  table.numbers = row;
}

// Rows, and what stands between and behind them.
void TakeRows(Lines& lines, Table& table) {
  TakePlainRows(lines, table);
  std::vector<double> row;
  for (std::string_view line; lines.Next(line);) {
    if (ScanRow(line, row) && row.size() == table.columns)
      table.numbers.insert(table.numbers.end(), row.begin(), row.end()), TakePlainRows(lines, table);
    else if (!Trimmed(line).empty())
      table.trailer.push_back(line), table.oddRows += !row.empty() && row.size() >= 2 ? 1 : 0;
  }
}

// The rows begin where two lines of equally many numbers follow each other; behind a whole header one is enough.
Table TableOf(std::string_view text) {
  Table table;
  std::vector<double> row;
  std::vector<double> before;
  std::size_t at = 0;  // where the line before stands in the header
  Lines lines(text);
  for (std::string_view line; table.columns == 0 && lines.Next(line);) {
    const bool blank = Trimmed(line).empty();
    const bool isRow = !blank && ScanRow(line, row);
    if (isRow && row.size() == before.size()) {
      BeginRows(table, at, before);
      table.numbers.reserve(lines.Rest().size() / line.size() * table.columns + 3 * table.columns);
      table.numbers.insert(table.numbers.end(), row.begin(), row.end());
    } else if (!blank) {
      at = table.header.size();
      table.header.push_back(line);
      before = isRow ? row : std::vector<double>();
    } else if (CountsLines(table)) {
      table.header.push_back(line);
    }
  }
  // Seven lines, or one, a title for each column but the first, and four.
  const Kind kind = KindOf(table);
  const std::size_t whole = kind == Kind::XY ? 7 : before.size() + 4;
  if (table.columns != 0)
    TakeRows(lines, table);
  else if (kind != Kind::Any && !before.empty() && at >= whole)
    BeginRows(table, at, before);
  if (kind == Kind::Any) std::erase_if(table.header, [](std::string_view line) { return Trimmed(line).empty(); });
  return table;
}

// Control characters do not stand in text.
bool LooksBinary(std::string_view head) {
  return std::any_of(head.begin(), head.end(), [](char c) {
    const auto byte = static_cast<unsigned char>(c);
    return (byte < 32 && std::string_view("\t\n\v\f\r").find(c) == std::string_view::npos) || byte == 127;
  });
}

std::string_view WithoutMark(std::string_view text) {
  return text.starts_with("\xEF\xBB\xBF") ? text.substr(3) : text;
}

// A file has one table, which its items share.
const Table& TableOf(Source& source) {
  return source.Once<Table>([&source] { return TableOf(WithoutMark(source.Content())); });
}

// The X positions of a lattice whose second column stays while the first runs; 0 where the rows are none.
std::size_t LatticeWidth(const Table& t) {
  if (t.columns != 3) return 0;
  std::size_t width = 1;
  while (width < t.Rows() && t.At(width, 1) == t.At(0, 1)) ++width;
  if (width < 2 || width == t.Rows() || t.Rows() % width != 0) return 0;
  for (std::size_t k = 0; k < t.Rows(); ++k)
    if (t.At(k, 0) != t.At(k % width, 0) || t.At(k, 1) != t.At(k - k % width, 1)) return 0;
  return width;
}

// ------------------------------------------------------------ titles by position

struct Titles {
  std::string title;
  std::vector<NamedUnit> columns;
  std::vector<double> across = {};  // the X coordinates of a matrix, whose titles are those of Y and X
};

// "Time (ns) \ Wavelength (nm)", then an X coordinate for each column.
bool FindMatrix(Titles& titles, std::string_view line, std::size_t columns) {
  const std::vector<NamedUnit> fields = TitlesIn(line);
  const auto mark = fields.size() == columns ? fields[0].name.find(" \\") : std::string::npos;
  if (mark == std::string::npos) return false;
  std::vector<double> across;
  for (std::size_t k = 1; k < columns; ++k)
    if (const auto x = NumberIn(fields[k].name)) across.push_back(*x);
  if (across.size() + 1 != columns) return false;
  const std::string x(Trimmed(std::string_view(fields[0].name).substr(mark + 2)));
  titles.columns = {SplitTitle(std::string_view(fields[0].name).substr(0, mark)), {x, fields[0].unit}};
  titles.across = std::move(across);
  return true;
}

// "NXY 3 Wavelength (nm)", a title for each column, start, stop, the name.
Titles TitlesOfNXY(const Table& t) {
  std::string_view first = Trimmed(t.header[0]);
  (void)TakeField(first, {});
  (void)TakeField(first, {});
  Titles titles{{}, {SplitTitle(first)}};
  for (std::size_t k = 1; k < t.columns; ++k)
    titles.columns.push_back(k < t.header.size() ? SplitTitle(t.header[k]) : NamedUnit());
  if (t.header.size() > t.columns + 2) titles.title = Trimmed(t.header[t.columns + 2]);
  return titles;
}

// "XY", both titles, two lines, the name. Further columns have no titles.
Titles TitlesOfXY(const Table& t) {
  Titles titles{t.header.size() > 5 ? std::string(Trimmed(t.header[5])) : std::string(),
                {SplitTitle(t.header[1]), SplitTitle(t.header[2])}};
  titles.columns.resize(t.columns);
  return titles;
}

// Also fills the parameters from the lines that name no titles.
Titles TitlesOf(Dataset& d, const Table& t) {
  if (KindOf(t) == Kind::NXY) return TitlesOfNXY(t);
  if (KindOf(t) == Kind::XY) return TitlesOfXY(t);
  Titles titles;
  if (!t.header.empty() && !FindMatrix(titles, t.header.back(), t.columns))
    titles.columns = ColumnTitles(t.header.back(), t.columns);
  const std::size_t named = titles.columns.empty() ? 0 : 1;
  std::string section;
  for (std::size_t k = 0; k + named < t.header.size(); ++k) AddHeaderLine(d, t.header[k], section);
  for (const std::string_view line : t.trailer) AddHeaderLine(d, line, section);
  titles.columns.resize(t.columns);
  const auto text = [&d](std::string_view key) { return d.Find(key) ? d.Find(key)->text : std::string(); };
  titles.title = text("TITLE");
  if (!titles.across.empty()) return titles;
  if (titles.columns[0].unit.empty()) titles.columns[0].unit = text("XUNITS");
  if (titles.columns[1].unit.empty()) titles.columns[1].unit = text("YUNITS");
  return titles;
}

// ------------------------------------------------------------ reader

std::string RecogniseColumns(Source& source) {
  if (source.Size() == 0 || LooksBinary(WithoutMark(source.Head()))) return {};
  const Table& table = TableOf(source);
  if (table.Rows() == 0) return {};
  return "text with " + std::to_string(table.Rows()) + (table.Rows() == 1 ? " row of " : " rows of ") +
         std::to_string(table.columns) + " numbers";
}

std::vector<std::string> ColumnItems(Source& source) {
  const Table& table = TableOf(source);
  if (LatticeWidth(table) > 0) return {std::string()};
  Dataset scratch;
  const Titles titles = TitlesOf(scratch, table);
  if (!titles.across.empty()) return {std::string()};
  std::vector<std::string> names;
  for (std::size_t k = 1; k < table.columns; ++k) names.push_back(titles.columns[k].name);
  return names;
}

std::vector<double> Column(const Table& t, std::size_t column, std::size_t count, std::size_t step) {
  std::vector<double> values(count);
  for (std::size_t k = 0; k < count; ++k) values[k] = t.At(k * step, column);
  return values;
}

Dataset OpenColumns(Source& source, int item) {
  const Table& table = TableOf(source);
  Dataset d;
  const Titles titles = TitlesOf(d, table);
  d.title = titles.title;
  const auto axis = [&](std::size_t column, std::size_t count, std::size_t step) {
    return Axis::Stored(titles.columns[column].name, titles.columns[column].unit,
                        Column(table, column, count, step));
  };
  if (table.oddRows > 0)
    d.notes.push_back({Severity::Damaged, "rows of another length: " + std::to_string(table.oddRows)});
  if (!titles.across.empty()) {
    d.axes = {axis(0, table.Rows(), 1),
              Axis::Stored(titles.columns[1].name, titles.columns[1].unit, titles.across)};
    std::vector<double> values;
    for (std::size_t k = 0; k < table.numbers.size(); ++k)
      if (k % table.columns != 0) values.push_back(table.numbers[k]);
    d.values = Values::Of(std::move(values));
    return d;
  }
  const std::size_t width = LatticeWidth(table);
  const std::size_t values = width > 0 ? 2 : static_cast<std::size_t>(item);
  if (width > 0)
    d.axes = {axis(1, table.Rows() / width, width), axis(0, width, 1)};
  else
    d.axes = {axis(0, table.Rows(), 1)};
  d.name = titles.columns[values].name;
  d.unit = titles.columns[values].unit;
  d.values = Values::Of(Column(table, values, table.Rows(), 1));
  return d;
}

}  // namespace

const Reader kColumnsReader{"columns of text", ".txt .csv .prn .xy .dat", RecogniseColumns, ColumnItems,
                            OpenColumns};

}  // namespace kem::dataset
