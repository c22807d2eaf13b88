// The report and the JSON document of a record in the classic reading.
#include "classic_info.h"

#include <cstring>
#include <iostream>
#include <memory>
#include <streambuf>

#include "classic.h"
#include "json.h"
#include "shape.h"
#include "source.h"
#include "text.h"

namespace kem::tool {
namespace {

// ------------------------------------------------------------ JSON

// A stored axis has no step.
Json Axis(const char* title, bool stored, int points, float start, float end, float step) {
  Json axis = {{"title", Utf8(title)},
               {"points", points},
               {"stored", stored},
               {"start", Number(start)},
               {"end", Number(end)}};
  if (!stored) axis["step"] = Number(step);
  return axis;
}

Json ValueRange(const char* title, float least, float greatest) {
  return {{"title", Utf8(title)}, {"min", Number(least)}, {"max", Number(greatest)}};
}

template <class T>
T ValueAt(const void* values, int index) {
  T value;
  std::memcpy(&value, static_cast<const char*>(values) + static_cast<std::size_t>(index) * sizeof value,
              sizeof value);
  return value;
}

Json Value(const KemParameter& parameter, const void* values, int index) {
  struct Text {
    char text[kTextSize];
  };
  switch (parameter.kind) {
    case KemParameterKind::Text:
      return Utf8(ValueAt<Text>(values, index).text);
    case KemParameterKind::Int:
      return ValueAt<int>(values, index);
    case KemParameterKind::Float:
      return Number(ValueAt<float>(values, index));
    case KemParameterKind::Bytes:
      return ValueAt<unsigned char>(values, index);
  }
  return nullptr;
}

Json Parameters(const PrnType& record) {
  Json parameters = Json::object();
  for (const KemParameter& parameter : KemParameters(record.fileType)) {
    const void* values = parameter.in(record);
    Json& value = parameters[parameter.name];
    if (parameter.count == 1) value = Value(parameter, values, 0);
    for (int k = 0; parameter.count > 1 && k < parameter.count; ++k) value.push_back(Value(parameter, values, k));
  }
  return parameters;
}

Json CommentLines(const PrnType& record) {
  std::string text(2 * sizeof record.headerArea, '\0');
  record.CommentBlock(text.data(), static_cast<int>(text.size()));
  text.resize(std::strlen(text.c_str()));
  Json lines = Json::array();
  for (std::size_t start = 0; start < text.size();) {
    const auto end = std::min(text.find('\n', start), text.size());
    lines.push_back(Utf8(std::string_view(text).substr(start, end - start)));
    start = end + 1;
  }
  return lines;
}

// ------------------------------------------------------------ reports

// While it lives, lines for standard output pass through it and become printable: a report holds what stood in a
// file.
class PrintableLines : std::streambuf {
 public:
  PrintableLines() = default;
  ~PrintableLines() override {
    std::cout.rdbuf(below_.rdbuf());
    std::cout.setstate(below_.rdstate());
  }
  PrintableLines(const PrintableLines&) = delete;
  PrintableLines& operator=(const PrintableLines&) = delete;

 private:
  int_type overflow(int_type c) override {
    if (c != '\n') {
      line_ += traits_type::to_char_type(c);
    } else {
      below_ << Printable{Utf8(line_)} << '\n';
      line_.clear();
    }
    return below_ ? traits_type::not_eof(c) : traits_type::eof();
  }

  std::ostream below_{std::cout.rdbuf(this)};
  std::string line_;
};

}  // namespace

void PrintRecord(const PrnType& record, int level) {
  const PrintableLines lines;
  record.PrintLog(level);
}

Json DescribeRecord(const Input& input) {
  const PrnType& r = *input.record;
  const Titles titles(r);
  const bool grid = r.Is3D() != 0;
  const char* format = KemFormatName(Source(input.file).Name().c_str());
  Json description = {{"file", Utf8(input.file)},
                      {"item", input.item},
                      {"more", input.more},
                      {"name", Utf8(r.fileName)},
                      {"format", format ? format : ""},
                      {"fileType", r.fileType},
                      {"allocType", r.allocType},
                      {"shape", grid ? "grid" : "curve"}};
  const int points = grid ? r.nX : r.nY;
  description["x"] = Axis(titles.x, r.HasX() != 0, points, r.xStart, r.xEnd, r.xStep);
  if (grid) description["y"] = Axis(titles.y, r.HasY() != 0, r.nY, r.yStart, r.yEnd, r.yStep);
  description["values"] = grid ? ValueRange(titles.z, r.zMin, r.zMax) : ValueRange(titles.y, r.yStart, r.yEnd);
  description["parameters"] = Parameters(r);
  description["comment"] = CommentLines(r);
  return description;
}

bool PrintClassicItems(const std::string& file) {
  const auto [items, problem] = ListClassic(file);
  if (!items.empty()) std::cout << file << ": " << items.size() << (items.size() == 1 ? " item" : " items") << '\n';
  for (std::size_t k = 0; k < items.size(); ++k)
    std::cout << k + 1 << '\t' << ShapeOf(items[k]) << '\t' << Printable{Utf8(items[k].title)} << '\n';
  return NoProblem(file, problem);
}

}  // namespace kem::tool
