#include "csv.h"

#include <algorithm>
#include <fstream>
#include <initializer_list>
#include <string>
#include <vector>

#include "describe.h"
#include "portable.h"
#include "shape.h"
#include "system.h"
#include "text.h"

namespace kem::tool {
namespace {

// Lines of a table, written in large pieces.
class Table {
 public:
  explicit Table(const char* name) : file_(PathOf(name), std::ios::binary) {}

  void Title(const std::string& title, bool last) {
    text_ += CsvText(title);
    text_ += last ? '\n' : ',';
  }

  void Comment(const std::string& line) { text_ += "# " + line + '\n'; }

  void Row(std::initializer_list<float> values) {
    for (const float value : values) Add(value);
    EndRow();
  }

  template <class Number>
  void Add(Number value) {
    portable::AppendShortest(text_, value);
    text_ += ',';
  }

  void Put(const std::string& text) {
    text_ += text;
    text_ += ',';
  }

  void EndRow() {
    text_.back() = '\n';
    if (text_.size() >= kPiece) Flush();
  }

  bool Close() {
    Flush();
    file_.close();
    return !file_.fail();
  }

 private:
  static constexpr std::size_t kPiece = 1 << 16;

  void Flush() {
    file_.write(text_.data(), static_cast<std::streamsize>(text_.size()));
    text_.clear();
  }

  std::ofstream file_;
  std::string text_;
};

std::string Trimmed(const std::string& text) {
  constexpr const char* kBlank = " \t\r\n";
  const auto first = std::min(text.find_first_not_of(kBlank), text.size());
  return text.substr(first, text.find_last_not_of(kBlank) + 1 - first);
}

void WriteTitles(Table& table, const PrnType& record) {
  const Titles titles(record);
  const char* const texts[] = {titles.x, titles.y, titles.z};
  const int last = record.Is3D() ? 2 : 1;
  constexpr const char* kUntitled[] = {"X", "Y", "Z"};
  for (int k = 0; k <= last; ++k) {
    const std::string title = Trimmed(texts[k]);
    table.Title(title.empty() ? kUntitled[k] : Utf8(title), k == last);
  }
}

// ------------------------------------------------------------ datasets

std::string TitleOf(const std::string& name, const std::string& unit, const char* untitled) {
  const std::string title = Named(name, unit);
  return title.empty() ? untitled : title;
}

// Fifteen digits of a linear axis: those behind them stem from the division that made the coordinate.
std::string CoordinateText(const Axis& axis, std::size_t k) {
  std::string text;
  if (axis.IsLinear())
    portable::AppendGeneral(text, axis[k], 15);
  else
    portable::AppendShortest(text, axis[k]);
  return text;
}

void AddCoordinate(Table& table, const Axis& axis, std::size_t k) { table.Put(CoordinateText(axis, k)); }

// Integers and single precision in the digits that they need.
void AddNumber(Table& table, NumberType type, double value) {
  if (type == NumberType::F32)
    table.Add(static_cast<float>(value));
  else
    table.Add(value);
}

void AddValue(Table& table, const Values& values, std::size_t k) {
  AddNumber(table, values.Type(), values.Real(k));
  if (values.IsComplex()) AddNumber(table, values.Type(), values.Imaginary(k));
}

void WriteTitles(Table& table, const Dataset& d) {
  constexpr const char* kAxes[] = {"X", "Y", "Z"};
  const std::size_t rank = d.axes.size();
  for (std::size_t k = 0; k < rank; ++k) {
    const Axis& axis = d.axes[rank - 1 - k];  // the fastest first
    table.Title(TitleOf(axis.name, axis.unit, kAxes[std::min<std::size_t>(k, 2)]), false);
  }
  const char* untitled = rank == 1 ? "Y" : "Z";
  if (d.values.IsComplex()) {
    const std::string name = d.name.empty() ? untitled : d.name;
    table.Title(Named(name + " re", d.unit), false);
    table.Title(Named(name + " im", d.unit), true);
  } else {
    table.Title(TitleOf(d.name, d.unit, untitled), true);
  }
}

// A line stays one.
std::string InOneLine(std::string text) {
  for (std::size_t at = 0; (at = text.find_first_of("\r\n", at)) != text.npos; at += 2) text.replace(at, 1, "\\n");
  return text;
}

void WriteHeader(Table& table, const Dataset& d) {
  if (!d.title.empty()) table.Comment("TITLE: " + InOneLine(d.title));
  std::string section;
  for (const Parameter& p : d.parameters) {
    if (p.key == "TITLE" && p.section.empty()) continue;
    if (p.section != section) table.Comment('[' + (section = p.section) + ']');
    table.Comment(InOneLine(p.key + ": " + WithUnit(p)));
  }
}

// The texts of an axis of a grid, each of which is in many lines.
std::vector<std::string> TextsOf(const Axis& axis) {
  std::vector<std::string> texts(axis.Count());
  for (std::size_t k = 0; k < texts.size(); ++k) texts[k] = CoordinateText(axis, k);
  return texts;
}

void WriteTable(Table& table, const Dataset& d) {
  WriteTitles(table, d);
  std::vector<std::vector<std::string>> texts;
  for (std::size_t a = 0; d.axes.size() > 1 && a < d.axes.size(); ++a) texts.push_back(TextsOf(d.axes[a]));
  std::vector<std::size_t> at(d.axes.size());
  for (std::size_t k = 0; k < d.values.Count(); ++k) {
    for (std::size_t a = d.axes.size(); a-- > 0;)
      if (texts.empty())
        AddCoordinate(table, d.axes[a], at[a]);
      else
        table.Put(texts[a][at[a]]);
    AddValue(table, d.values, k);
    table.EndRow();
    for (std::size_t a = d.axes.size(); a-- > 0 && ++at[a] == d.axes[a].Count();) at[a] = 0;
  }
}

void WriteMatrix(Table& table, const Dataset& d) {
  const Axis& x = d.axes.back();
  const std::size_t rows = d.axes.size() == 1 ? 1 : d.axes.front().Count();
  const std::string titleOfX = TitleOf(x.name, x.unit, "X");
  const Axis& y = d.axes.front();
  table.Title(d.axes.size() == 1 ? titleOfX : TitleOf(y.name, y.unit, "Y") + " \\ " + titleOfX, false);
  for (std::size_t i = 0; i < x.Count(); ++i) AddCoordinate(table, x, i);
  table.EndRow();
  for (std::size_t j = 0, k = 0; j < rows; ++j) {
    if (d.axes.size() > 1)
      AddCoordinate(table, d.axes.front(), j);
    else
      table.Title(TitleOf(d.name, d.unit, "Y"), false);
    for (std::size_t i = 0; i < x.Count(); ++i, ++k) AddValue(table, d.values, k);
    table.EndRow();
  }
}

}  // namespace

bool WriteCsv(const Dataset& dataset, const char* name, bool matrix, bool header) {
  Table table(name);
  if (header) WriteHeader(table, dataset);
  if (matrix)
    WriteMatrix(table, dataset);
  else
    WriteTable(table, dataset);
  return table.Close();
}

bool WriteColumns(const kem::Axis& x, const std::vector<Column>& columns, const char* name) {
  Table table(name);
  table.Title(TitleOf(x.name, x.unit, "X"), false);
  for (const Column& column : columns) table.Title(column.title, &column == &columns.back());
  for (std::size_t k = 0; k < x.Count(); ++k) {
    AddCoordinate(table, x, k);
    for (const Column& column : columns) AddNumber(table, column.type, column.values[k]);
    table.EndRow();
  }
  return table.Close();
}

bool WriteCsv(const PrnType& record, const char* name) {
  Table table(name);
  WriteTitles(table, record);
  const auto xs = XCoordinates(record);
  if (!record.Is3D()) {
    for (std::size_t i = 0; i < xs.size(); ++i) table.Row({xs[i], record.yArray[i]});
    return table.Close();
  }
  const auto ys = YCoordinates(record);
  for (std::size_t j = 0; j < ys.size(); ++j)
    for (std::size_t i = 0; i < xs.size(); ++i) table.Row({xs[i], ys[j], record.zArray[i][j]});
  return table.Close();
}

}  // namespace kem::tool
