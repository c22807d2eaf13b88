#include "format.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <iterator>

#include "csv.h"
#include "kem/dataset.h"
#include "shape.h"
#include "system.h"
#include "text.h"

namespace kem::tool {
namespace {

namespace fs = std::filesystem;

// Counts of the binary formats are signed 16-bit numbers.
constexpr int kMostBinaryPoints = 32767;

constexpr Format kFormats[] = {
    {"prn", "XY columns of text", true, false, 0, Linear::OneByOne, true},
    {"csv", "comma-separated values", true, true, 0, Linear::Exactly, false},
    {"cvt", "text with a defined or stored X axis", true, false, 0, Linear::StartStep, true},
    {"dx", "JCAMP-DX", true, false, 0, Linear::OneByOne, true},
    {"p2d", "text with comment lines", true, false, 0, Linear::Points, true},
    {"p3d", "text with comment lines", false, true, 0, Linear::Steps, true},
    {"b2d", "binary", true, false, kMostBinaryPoints, Linear::Exactly, false},
    {"b3d", "binary", false, true, kMostBinaryPoints, Linear::Exactly, false},
};

// ------------------------------------------------------------ axes

float SixDigits(float value) {
  char text[32];
  std::snprintf(text, sizeof text, "%.6g", double{value});
  return std::strtof(text, nullptr);
}

// The steps that the readers make of a definition.
double StepsOf(const LinearAxis& axis) {
  const float steps = (axis.end - axis.start) / axis.step;
  return std::floor(std::fabs(double{steps}) + 0.5);
}

// Half a unit of the last digit that a coordinate is written with.
double Resolution(const LinearAxis& axis) {
  const double furthest = std::max(std::fabs(double{axis.start}), std::fabs(axis.Last()));
  return 0.5 * std::pow(10.0, std::floor(std::log10(furthest)) - 5);
}

// Whether the axis that a reader makes of the written definition has another number of points, or drifts away from
// this one further than coordinates in six digits would.
bool Loses(Linear linear, const LinearAxis& axis) {
  if (linear == Linear::Exactly || linear == Linear::OneByOne) return linear == Linear::OneByOne;
  const LinearAxis read{SixDigits(axis.start), SixDigits(axis.end), SixDigits(axis.step), axis.points};
  if (linear == Linear::Points && StepsOf(read) != axis.points - 1) return true;
  if (linear == Linear::Steps && StepsOf(read) != axis.points) return true;
  const double span = (axis.points - 1.0) * read.step;
  return !(std::fabs(span - (axis.Last() - axis.start)) <= Resolution(axis));
}

void StoreX(PrnType& record) {
  const LinearAxis axis = XAxis(record);
  record.ArrayFromXAxis(&record.xArray, &record.nX);
  record.allocType |= AllocX;
  const auto xs = axis.Coordinates();
  std::copy(xs.begin(), xs.end(), record.xArray);
  record.xEnd = static_cast<float>(axis.Last());
}

void StoreY(PrnType& grid) {
  const LinearAxis axis = YAxis(grid);
  grid.ArrayFromYAxis(&grid.yArray, &grid.nY);
  grid.allocType |= AllocY;
  const auto ys = axis.Coordinates();
  std::copy(ys.begin(), ys.end(), grid.yArray);
  grid.yEnd = static_cast<float>(axis.Last());
}

// ------------------------------------------------------------ values

// The reader of a text format ends at the first text that is no number.
Problem NotFinite(const Format& format, const PrnType& record) {
  const auto problem = [&](float value, const std::string& place) {
    return "has " + Shortest(value) + " as " + place + ", which " + format.name + " cannot hold; " +
           (record.Is3D() ? "b3d" : "b2d") + " and csv can";
  };
  const auto infinite = [](float value) { return !std::isfinite(value); };
  const auto in = [&](const std::vector<float>& values, const char* what) {
    const auto found = std::find_if(values.begin(), values.end(), infinite);
    return found == values.end() ? "" : problem(*found, what + std::to_string(found - values.begin() + 1));
  };
  if (Problem x = in(XCoordinates(record), "X coordinate "); !x.empty()) return x;
  if (!record.Is3D()) return in({record.yArray, record.yArray + record.nY}, "value ");
  if (Problem y = in(YCoordinates(record), "Y coordinate "); !y.empty()) return y;
  for (int i = 0; i < record.nX; ++i) {
    const float* end = record.zArray[i] + record.nY;
    const float* found = std::find_if<const float*>(record.zArray[i], end, infinite);
    if (found != end)
      return problem(*found,
                     "value " + std::to_string(i + 1) + ", " + std::to_string(found - record.zArray[i] + 1));
  }
  return {};
}

// What the reader makes of the file.
std::string ShapeInFile(const std::string& name) {
  std::string shape = "nothing";
  const fs::path path = PathOf(name);
  (void)Attempted(path, [&] { shape = ShapeOf(*Open(path).ToRecord()); });
  return shape;
}

Problem WriteOther(PrnType& record, const Format& format, const std::string& name) {
  kem::Record owner(std::move(record));
  const fs::path path = PathOf(name);
  Problem problem = Attempted(path, [&] { owner.Write(path, std::string(".") + format.name); });
  record = std::move(*owner.Release());
  return problem.empty() ? "" : "cannot be written completely: " + problem;
}

}  // namespace

std::span<const Format> Formats() { return kFormats; }

const Format* FormatNamed(const std::string& name) {
  const auto* found = std::find_if(std::begin(kFormats), std::end(kFormats),
                                   [small = LowerCase(name)](const Format& f) { return small == f.name; });
  return found == std::end(kFormats) ? nullptr : found;
}

std::string FormatNames() {
  std::string names;
  for (const Format& format : kFormats) names += std::string(names.empty() ? "" : ", ") + format.name;
  return names;
}

Problem CannotHold(const Format& format, const PrnType& record) {
  const std::string name = format.name;
  const std::string size = std::to_string(record.nX) + " x " + std::to_string(record.nY) + " points";
  if (record.Is3D() && !format.grids) return name + " holds curves only, and this is a grid of " + size;
  if (!record.Is3D() && !format.curves) return name + " holds grids only, and this is a curve";
  const int points = record.Is3D() ? std::max(record.nX, record.nY) : record.nY;
  if (format.mostPoints > 0 && points > format.mostPoints)
    return name + " holds at most " + std::to_string(format.mostPoints) + " points along an axis, and this has " +
           std::to_string(points);
  return format.linear == Linear::Exactly ? "" : NotFinite(format, record);
}

void NameByTitle(PrnType& record, const Format& format, std::string title) {
  if (std::string_view(format.name) != "prn") return;
  const auto breaks = [](char c) { return c == '\n' || c == '\r'; };
  std::replace_if(title.begin(), title.end(), breaks, ' ');
  std::snprintf(record.fileName, sizeof record.fileName, "%s", title.c_str());
}

Problem WriteRecord(PrnType& record, const Format& format, const std::string& name) {
  if (!record.HasX() && Loses(format.linear, XAxis(record))) StoreX(record);
  if (record.Is3D() && !record.HasY() && Loses(format.linear, YAxis(record))) StoreY(record);
  if (std::string_view(format.name) == "csv")
    return WriteCsv(record, name.c_str()) ? "" : "cannot be written completely";
  if (Problem problem = WriteOther(record, format, name); !problem.empty() || !format.checked) return problem;
  const std::string shape = ShapeInFile(name);
  return shape == ShapeOf(record) ? "" : "would read back as " + shape + " instead of " + ShapeOf(record);
}

}  // namespace kem::tool
