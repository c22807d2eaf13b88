#include "csv.h"

#include <algorithm>
#include <fstream>
#include <initializer_list>
#include <string>

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

  void Row(std::initializer_list<float> values) {
    for (const float value : values) {
      portable::AppendShortest(text_, value);
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

}  // namespace

bool WriteCsv(const PrnType& record, char* name) {
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
