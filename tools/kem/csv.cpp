#include "csv.h"

#include <algorithm>
#include <fstream>
#include <initializer_list>
#include <memory>
#include <string>
#include <vector>

#include "text.h"

namespace kem::tool {
namespace {

// Lines of a table, written in large pieces.
class Table {
 public:
  explicit Table(const char* name) : file_(name, std::ios::binary) {}

  // A title that holds a separator is quoted, and quotes in it are doubled.
  void Title(const std::string& title, bool last) {
    if (title.find_first_of(",\"\r\n") == title.npos) {
      text_ += title;
    } else {
      text_ += '"';
      for (const char c : title) text_.append(c == '"' ? 2 : 1, c);
      text_ += '"';
    }
    text_ += last ? '\n' : ',';
  }

  void Row(std::initializer_list<float> values) {
    for (const float value : values) {
      AppendShortest(text_, value);
      text_ += ',';
    }
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

std::vector<float> Coordinates(const PrnType& record, void (PrnType::*axis)(float**, int*) const) {
  float* values = nullptr;
  int count = 0;
  (record.*axis)(&values, &count);
  const std::unique_ptr<float[]> owner(values);
  return {values, values + count};
}

std::string Trimmed(const std::string& text) {
  constexpr const char* kBlank = " \t\r\n";
  const auto first = std::min(text.find_first_not_of(kBlank), text.size());
  return text.substr(first, text.find_last_not_of(kBlank) + 1 - first);
}

void WriteTitles(Table& table, const PrnType& record) {
  char titles[3][kTextSize] = {};
  record.LabelAxes(titles[0], titles[1], titles[2]);
  const int last = record.Is3D() ? 2 : 1;
  constexpr const char* kUntitled[] = {"X", "Y", "Z"};
  for (int k = 0; k <= last; ++k) {
    const std::string title = Trimmed(titles[k]);
    table.Title(title.empty() ? kUntitled[k] : Utf8(title), k == last);
  }
}

}  // namespace

bool WriteCsv(const PrnType& record, char* name) {
  Table table(name);
  WriteTitles(table, record);
  const auto xs = Coordinates(record, &PrnType::ArrayFromXAxis);
  if (!record.Is3D()) {
    for (std::size_t i = 0; i < xs.size(); ++i) table.Row({xs[i], record.yArray[i]});
    return table.Close();
  }
  const auto ys = Coordinates(record, &PrnType::ArrayFromYAxis);
  for (std::size_t j = 0; j < ys.size(); ++j)
    for (std::size_t i = 0; i < xs.size(); ++i) table.Row({xs[i], ys[j], record.zArray[i][j]});
  return table.Close();
}

}  // namespace kem::tool
