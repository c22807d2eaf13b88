// The report of a record on standard output, its comment block, its axis titles and its summary line.
#include <cstring>
#include <iomanip>
#include <iostream>
#include <iterator>
#include <string>
#include <string_view>

#include "record/headers.h"
#include "text/fields.h"
#include "text/number_text.h"
#include "text/words.h"

using namespace kem::record;
using namespace kem::text;

namespace {

// ------------------------------------------------------------ lines of a header

template <class T>
T ValueAt(const char* values, int index) {
  T value;
  std::memcpy(&value, values + static_cast<std::size_t>(index) * sizeof value, sizeof value);
  return value;
}

std::string NumbersText(const KemParameter& parameter, const char* values) {
  std::string text;
  for (int k = 0; k < parameter.count; ++k) {
    if (k > 0) text += ' ';
    if (parameter.kind == KemParameterKind::Float)
      AppendNumber(text, ValueAt<float>(values, k));
    else
      AppendNumber(text, ValueAt<int>(values, k));
  }
  return text;
}

// Takes each line of a table, its value as text, and which of several texts that is.
template <class Take>
void ForEachLine(const PrnType& record, std::span<const Line> lines, Take take) {
  for (const Line& line : lines) {
    const auto* values = static_cast<const char*>(line.value.in(record));
    if (!values) continue;
    if (line.value.kind == KemParameterKind::Text)
      for (int k = 0; k < line.value.count; ++k, values += kTextSize) take(line, TextOfField(values), k);
    else
      take(line, NumbersText(line.value, values), 0);
  }
}

// ------------------------------------------------------------ report

void PrintAxis(const char* axis, bool stored, int count, float start, float end, float step) {
  if (stored)
    std::cout << axis << " array allocated : " << count << std::endl;
  else
    std::cout << axis << " array defined   : " << start << " -> " << end << " , " << step << std::endl;
}

void PrintShape(const PrnType& r) {
  std::cout << TextOf(r.fileName) << std::endl;
  PrintAxis("X", r.HasX(), r.nX, r.xStart, r.xEnd, r.xStep);
  PrintAxis("Y", r.HasY(), r.nY, r.yStart, r.yEnd, r.yStep);
  if (r.Is3D()) std::cout << "Z array allocated : " << r.nX << " x " << r.nY << std::endl;
  if (const char* name = RowOf(r.fileType).name) std::cout << name << std::endl;
  std::cout << (r.active ? "Active" : "Not Active") << std::endl;
}

void PrintRanges(const PrnType& r) {
  std::cout << "X-axis :" << r.xStart << " -> " << r.xEnd << " , " << r.xStep << std::endl;
  std::cout << "Y-axis :" << r.yStart << " -> " << r.yEnd << " , " << r.yStep << std::endl;
  std::cout << "Z-axis :" << r.zMin << " -> " << r.zMax << std::endl;
}

void PrintHeader(const PrnType& r) {
  ForEachLine(r, RowOf(r.fileType).report, [](const Line& line, std::string_view value, int) {
    std::cout << line.label << value << line.unit << std::endl;
  });
}

// Six values to a line.
template <class At>
void PrintValues(int count, At at) {
  for (int k = 0; k < count; ++k) {
    std::cout << at(k) << ' ';
    if (k % 6 == 5) std::cout << std::endl;
  }
  std::cout << std::endl;
}

// The width set behind a heading outlives its line break, so that the first value alone is padded: a column
// that existing print-outs have.
void PrintHeading(const char* heading) { std::cout << heading << std::setw(12) << std::endl; }

void PrintArrays(const PrnType& r) {
  if (r.HasX() && r.xArray) {
    PrintHeading("----[X]----");
    PrintValues(r.nX, [&r](int k) { return r.xArray[k]; });
  }
  if (r.HasY() && r.yArray) {
    PrintHeading("----[Y]----");
    PrintValues(r.nY, [&r](int k) { return r.yArray[k]; });
  }
  if (r.Is3D() && r.zArray) {
    PrintHeading("----[Z]----");
    for (int j = 0; j < r.nY; ++j) PrintValues(r.nX, [&r, j](int i) { return r.zArray[i][j]; });
  }
}

// ------------------------------------------------------------ comment block and summary line

// A line is cut to 130 characters and its end.
void AppendLine(std::string& text, std::string_view line) {
  text += line.substr(0, kTextSize - 2);
  text += '\n';
}

constexpr const char* kShapes[] = {" NONE", "", "  Y  ", " XY  ", "   Z ", " X Z ", "  YZ ", " XYZ "};

std::string RightAligned(std::string_view text, std::size_t width) {
  return std::string(text.size() < width ? width - text.size() : 0, ' ').append(text);
}

}  // namespace

void PrnType::CommentBlock(char* const text, int size) const {
  if (allocType == AllocNone || size <= 0) return;
  const FileTypeRow& row = RowOf(fileType);
  std::string block;
  ForEachLine(*this, row.comments, [&](const Line& line, std::string_view value, int k) {
    if (k > 0 && value.empty()) return;  // of several texts the first has a line in any case
    if (row.trimmed) value = Trimmed(value, " ");
    AppendLine(block, std::string(line.label).append(value).append(line.unit));
  });
  const auto capacity = static_cast<std::size_t>(size);
  std::memset(text, 0, capacity);
  block.copy(text, capacity - 1);
}

void PrnType::PrintLog(int level) const {
  if (level >= 1) PrintShape(*this);
  if (level >= 2) PrintRanges(*this);
  if (level >= 3) PrintHeader(*this);
  if (level >= 4 && extension && ExtensionPrintHook) ExtensionPrintHook(extension);
  if (level >= 5) PrintArrays(*this);
}

void PrnType::LabelAxes(char* const xTitle, char* const yTitle, char* const zTitle) const {
  const Titles titles = RowOf(fileType).titles(*this);
  if (titles.x.data()) CopyText(xTitle, titles.x);
  CopyText(yTitle, titles.y);
  CopyText(zTitle, titles.z);
}

void PrnType::GetLabel(char* const line) const {
  std::string text = RightAligned(TextOf(fileName), 19);
  if (static_cast<unsigned>(allocType) < std::size(kShapes)) text += kShapes[allocType];
  if (Is3D())
    text += RightAligned(std::to_string(nX), 4) + " x " + std::to_string(nY);
  else
    text += RightAligned(std::to_string(nY), 4) + std::string(7, ' ');
  CopyText(line, text);
}
