// Axis titles and the summary line of a record.
#include <iterator>
#include <string>
#include <string_view>

#include "kem.h"
#include "text/fields.h"

using kem::text::CopyText;
using kem::text::TextOf;

namespace {

struct Titles {
  std::string_view x = "X";  // without data: the caller's title stays
  std::string_view y = "Y";
  std::string_view z = "Z";
};

// By scan kind.
constexpr const char* kNPicoAxes[] = {"Delay Time (ps)", "Time (s)", "Wavelength (nm)", "Wavelength (nm)",
                                      "Delay Time (ps)"};

Titles TitlesOf(const PrnType& r) {
  switch (r.fileType) {
    case FileCvt:
    case FileXY:
    case FileP2D:
    case FileBES3T:
      return {TextOf(r.xLabel), TextOf(r.yLabel), ""};
    case FileP3D:
      return {TextOf(r.xLabel), TextOf(r.yLabel), TextOf(r.zLabel)};
    case FileHama:
      return {"Wavelength (nm)", "Time (ns)", "Intensity"};
    case FileBruker:
      return {"Gauss", "Intensity", ""};
    case FileDilor:
      return {TextOf(r.dilor.dilorXLabel), TextOf(r.dilor.dilorYLabel), ""};
    case FileCaryPrn:
      return {"nm", TextOf(r.caryPrn.caryPrnYLabel), ""};
    case FileNPico: {
      const auto kind = static_cast<unsigned>(r.npico.npicoScanType);
      return {kind < std::size(kNPicoAxes) ? kNPicoAxes[kind] : std::string_view(), "Intensity", ""};
    }
    case FileCary45:
      return {TextOf(r.cary45.cary45XLabel), TextOf(r.cary45.cary45YLabel), ""};
    case FileHPDTA:
      return {TextOf(r.hpdta.hpdtaXUnit), TextOf(r.hpdta.hpdtaYUnit), "Intensity (arb. units)"};
    case FileCaryDSW:
      return {TextOf(r.dsw.dswXTitle), TextOf(r.dsw.dswYTitle), ""};
    default:
      return {};
  }
}

constexpr const char* kShapes[] = {" NONE", "", "  Y  ", " XY  ", "   Z ", " X Z ", "  YZ ", " XYZ "};

std::string RightAligned(std::string_view text, std::size_t width) {
  return std::string(text.size() < width ? width - text.size() : 0, ' ').append(text);
}

}  // namespace

void PrnType::LabelAxes(char* const xTitle, char* const yTitle, char* const zTitle) const {
  const Titles titles = TitlesOf(*this);
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
