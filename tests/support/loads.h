// Files loaded, and records as text, so that a test compares all of one at a glance.
#pragma once

#include <algorithm>
#include <array>
#include <iterator>
#include <sstream>
#include <utility>

#include "support/support.h"

namespace kem::test {

// The same text as made by hand under Windows.
inline std::string WithCrLf(std::string text) {
  for (auto at = text.find('\n'); at != text.npos; at = text.find('\n', at + 2)) text.insert(at, "\r");
  return text;
}

// What the last load printed.
inline std::string printed;

// Writes files by name and content, and loads the first.
inline PrnType Load(const std::vector<std::pair<std::string, std::string>>& files, int index = 0) {
  const TempFolder folder;
  for (const auto& [name, bytes] : files) folder.Write(name, bytes);
  PrnType record;
  printed = Printed([&] { record.ReadFile(folder.Path(files.front().first).c_str(), index); });
  return record;
}
inline PrnType Load(const std::string& name, const std::string& bytes, int index = 0) {
  return Load({{name, bytes}}, index);
}

// " 1 2 3 ..."
inline std::string Numbers(std::span<const float> values, std::size_t most = 8) {
  std::ostringstream text;
  text.precision(9);
  for (std::size_t k = 0; k < std::min(values.size(), most); ++k) {
    text << ' ';
    if (std::isnan(values[k]))
      text << "nan";
    else
      text << values[k];
  }
  return text.str() + (values.size() > most ? " ..." : "");
}

inline std::string WithoutBlanksBehind(std::string text) { return text.substr(0, text.find_last_not_of(' ') + 1); }

// File type, shape, counts, the ends and step of each axis and its stored coordinates, the first values, and
// titles: "5 Y 3x3 x 3350 3450 50 y -8 7 0 = 7 -8 3 | Gauss|Intensity|"; what is not active is "idle".
inline std::string Facts(const PrnType& r) {
  if (!r) return "none";
  constexpr const char* kShapes[] = {"", " X", " Y", " XY", " Z", " XZ", " YZ", " XYZ"};
  const auto count = [](int n) { return static_cast<std::size_t>(n); };
  std::string text = std::to_string(r.fileType) + kShapes[r.allocType] + ' ' + std::to_string(r.nX) + 'x' +
                     std::to_string(r.nY) + (r.active ? "" : " idle");
  text += " x" + Numbers(std::array{r.xStart, r.xEnd, r.xStep});
  if (r.HasX()) text += ":" + Numbers({r.xArray, count(r.nX)});
  text += " y" + Numbers(std::array{r.yStart, r.yEnd, r.yStep});
  if (r.Is3D() && r.HasY()) text += ":" + Numbers({r.yArray, count(r.nY)});
  if (r.Is3D() || r.zMin != 0 || r.zMax != 0) text += " z" + Numbers(std::array{r.zMin, r.zMax});
  text += " =";
  if (!r.Is3D()) text += Numbers({r.yArray, count(r.nY)});
  for (int i = 0; r.Is3D() && i < std::min(r.nX, 3); ++i)
    text += (i ? " /" : "") + Numbers({r.zArray[i], count(r.nY)}, 3);
  char x[kTextSize] = "", y[kTextSize] = "", z[kTextSize] = "";
  r.LabelAxes(x, y, z);
  constexpr int kLabelled[] = {FileCvt, FileXY,    FileP3D,       FileAT1,      FileP2D,
                               FileOMA, FileBES3T, FileIccdCurve, FileIccdImage};
  const bool labelled = std::find(std::begin(kLabelled), std::end(kLabelled), r.fileType) != std::end(kLabelled);
  text += " | " + WithoutBlanksBehind(labelled ? r.xLabel : x) + '|' +
          WithoutBlanksBehind(labelled ? r.yLabel : y) + '|';
  return text + WithoutBlanksBehind(labelled && r.fileType != FileIccdCurve ? r.zLabel : z);
}

// The parameters of a record, "1.5|EPR|512|...".
inline std::string HeaderOf(const PrnType& r) {
  std::ostringstream text;
  text.precision(9);
  for (const KemParameter& p : KemParameters(r.fileType)) {
    const auto* at = static_cast<const char*>(p.in(r));
    for (int k = 0; k < p.count; ++k) {
      if (p.kind == KemParameterKind::Text) text << at + kTextSize * k;
      if (p.kind == KemParameterKind::Int) text << reinterpret_cast<const int*>(at)[k];
      if (p.kind == KemParameterKind::Float) text << reinterpret_cast<const float*>(at)[k];
      if (p.kind == KemParameterKind::Bytes) text << int{reinterpret_cast<const unsigned char*>(at)[k]};
      text << '|';
    }
  }
  return text.str();
}

}  // namespace kem::test
