#include <cstring>

#include "support/support.h"

using namespace kem::test;

namespace {

template <std::size_t N>
void Set(char (&field)[N], const std::string& text) {
  std::snprintf(field, N, "%s", text.c_str());
}

std::string Comment(const PrnType& r, int size = 4000) {
  std::string text(static_cast<std::size_t>(size), '?');
  r.CommentBlock(text.data(), size);
  return text.c_str();
}

std::string Log(const PrnType& r, int level) {
  return Printed([&] { r.PrintLog(level); });
}

// The part of the report that stands behind shape and ranges.
std::string Header(const PrnType& r) { return Log(r, 3).substr(Log(r, 2).size()); }

std::string Titles(const PrnType& r) {
  char x[132] = "before", y[132] = "", z[132] = "";
  r.LabelAxes(x, y, z);
  return std::string(x) + "|" + y + "|" + z;
}

// A record of a type whose texts are their fields' names and whose numbers count up from 1.
PrnType Numbered(int fileType) {
  PrnType r(AllocY, 2);
  r.fileType = fileType;
  r.yArray[0] = r.yArray[1] = 0;
  Set(r.xLabel, "xl");
  Set(r.yLabel, "yl");
  Set(r.zLabel, "zl");
  int next = 1;
  for (const KemParameter& p : KemParameters(fileType)) {
    auto* at = const_cast<char*>(static_cast<const char*>(p.in(r)));
    for (int k = 0; k < p.count && p.kind != KemParameterKind::Bytes; ++k) {
      const float number = static_cast<float>(next);
      if (p.kind == KemParameterKind::Text) std::snprintf(at + 132 * k, 132, "%s", p.name);
      if (p.kind == KemParameterKind::Int) std::memcpy(at + 4 * k, &next, 4);
      if (p.kind == KemParameterKind::Float) std::memcpy(at + 4 * k, &number, 4);
      ++next;
    }
  }
  return r;
}

}  // namespace

TEST_CASE("report: comment blocks of the instruments") {
  PrnType hama = Numbered(FileHama);
  hama.hama.hamaSweepRange = 7;
  CHECK(Comment(hama) ==
        "Integration Time: 1\nSweep Condition: 2\nSweep Range: 99.8\nCenter Wavelength: 4\n"
        "Dispersion: 5\nCCD Center: 6\n");
  CHECK(Comment(Numbered(FileAT1)) == "xl\nyl\nzl\n");
  CHECK(Comment(Numbered(FileBruker)) ==
        "Operator   = brukerOperator\nbrukerComment\nDate       = brukerDate\nGain       = 1\nPhase      = 2\n"
        "Mod. Freq. = 3\nMod. Amp.  = 4\nConv. Time = 5\nTime Cons. = 6\nResolution = 8\nMicroW Fr. = 9\n"
        "MicroW Pw. = 10\nCen. Field = 11\nSweep Wid. = 12\n");
  CHECK(Comment(Numbered(FileDilor)) ==
        "Sample : dilorSample\nExc. Line : 11\nPower : dilorPower\nInt. Time : 1\nRepeat : 2\nSlit W. : 14\n"
        "Foremono. : 12\nSpectro. : 13\nSpec. W. : 15\nOperator : dilorOperator\nDetector : dilorDetector\n"
        "Grating : dilorGrating\nFilter : dilorFilter\nDate : dilorDate\n");
  CHECK(Comment(Numbered(FileCaryPrn)) ==
        "Sample : caryPrnSample\nDate : caryPrnDate\nSBW : 4\nInt. Time : 5\n"
        "Temperature : caryPrnTemperature\n");
  CHECK(Comment(Numbered(FileNPico)) ==
        "Offset : 2\nInput : npicoInput\nLaser : 8\nIn. Time : 9\nRepeat : 10\nBackScan : 11\n");
  PrnType cary = Numbered(FileCary45);
  CHECK(Comment(cary) ==
        "cary45Comment\nVIS SBW : 3\nVIS In. Time : 5\nNIR SBW : 4\nNIR In. Time : 6\n"
        "Source Change : 7\nDetect Change : 8\nDate : cary45Date\n");
  cary.cary45.cary45IndependentNir = 0;
  CHECK(Comment(cary) ==
        "cary45Comment\nSBW : 3\nIn. Time : 5\nSource Change : 7\nDetect Change : 8\n"
        "Date : cary45Date\n");
  PrnType oma = Numbered(FileOMA);
  const float time = 2.5f;
  std::memcpy(oma.oma.omaRawWord, &time, 4);
  Set(oma.xLabel, "  setup text ");
  CHECK(Comment(oma) == "Setup  : setup text\nInTime : 2.5 s\nBackgr : yl\nSlice  : zl\nTrack  : omaScanMode\n");
  CHECK(Comment(Numbered(FileBES3T)) ==
        "bes3tComment\nMicro. Freq.= 6\nMicro. Pow. = 7\nRec. TimeCt = 8\nModul. Freq. = 14\nModul. Amp. = 13\n"
        "Rec. Gain = 9\nRec. Phase = 10\nRec. Offset = 12\nRec. Harm. = 11\nInTime = 5\nbes3tExperiment\n"
        "Experiment: bes3tExperiment\nOrdinate: bes3tOrdinateSource\nAxis: bes3tAbscissaSource\n");
  CHECK(Comment(Numbered(FileHPDTA)) ==
        "Date      : hpdtaDate\nGain      : hpdtaGain\nAcq. Mode : hpdtaAcqMode\n"
        "Acq. Time : hpdtaAcqTime\nAcq. No   : 5\nExposures : 6\n");
  CHECK(Comment(Numbered(FileCaryDSW)) == "dswXTitle\ndswYTitle\ndswText13\ndswText15\ndswText14\ndswText26\n");
  PrnType curve = Numbered(FileIccdCurve);
  curve.iccdCurve = {{{5, 0, 0, 0}, {1, 2, 0, 0}}};
  CHECK(Comment(curve) == "lmin : 5\nlmax : 513\n");
  CHECK(Comment(Numbered(FileIccdImage)) ==
        "nrowOffset : 1\nncolOffset : 2\nnrows : 3\nncols : 4\nnrowgrpsize : 5\nncolgrpsize : 6\n");
}

TEST_CASE("report: comment blocks of generic records, and their limits") {
  PrnType grid(AllocZ, 1, 1);
  grid.zArray[0][0] = 1;
  Set(grid.commentLines[3], "three");
  CHECK(Comment(grid) == "\nthree\n");
  Set(grid.commentLines[0], std::string(131, 'a'));
  CHECK(Comment(grid) == std::string(130, 'a') + "\nthree\n");  // so that readers of 131 characters take it
  CHECK(Comment(grid, 4) == "aaa");
  PrnType curve(AllocY, 1);
  CHECK(Comment(curve).empty());
  curve.fileType = 19;
  CHECK(Comment(curve).empty());
  char untouched[] = "as it was";
  PrnType().CommentBlock(untouched, sizeof untouched);
  CHECK(std::string(untouched) == "as it was");
}

TEST_CASE("report: shape, ranges and titles") {
  PrnType curve(AllocY, 3);
  Set(curve.fileName, "c");
  for (int k = 0; k < 3; ++k) curve.yArray[k] = static_cast<float>(k);
  curve.xEnd = 2;
  curve.MinMax();
  CHECK(Log(curve, 0).empty());
  CHECK(Log(curve, 1) == "c\nX array defined   : 0 -> 2 , 1\nY array allocated : 3\n.cvt file\nNot Active\n");
  CHECK(Log(curve, 2) == Log(curve, 1) + "X-axis :0 -> 2 , 1\nY-axis :0 -> 2 , 1\nZ-axis :0 -> 0\n");
  CHECK(Header(curve) == "X-axis : X\nY-axis : Y\n");
  CHECK(Header(Numbered(FileXY)) == "X-axis : xl\nZ-axis : yl\nzl\n");
  CHECK(Header(Numbered(FileIccdImage)).empty());
  PrnType grid(AllocXZ, 2, 2);
  CHECK(Log(grid, 1).find("Z array allocated : 2 x 2\n.p3d or .b3d file\n") != std::string::npos);
  CHECK(Header(grid) == "X-axis : X\nY-axis : Y\nZ-axis : Z\n" + std::string(12, '\n'));
}

TEST_CASE("report: parameters of the instruments") {
  const std::pair<int, const char*> lines[] = {
      {FileHama, "Sweep Range       : 5.32\n"},
      {FileAT1, "End Time   : yl\n"},
      {FileBruker, "MICROFR   (MF ) : 9\n"},
      {FileDilor, "Slit W.   : 14\n"},
      {FileCaryPrn, "Temperature : caryPrnTemperature\n"},
      {FileNPico, "Time Scan\nOffset   : 2\n"},
      {FileCary45, "DetectChange : 8\n"},
      {FileP2D, "Slice:    zl\n"},
      {FileOMA, "X1, X2:   "},
      {FileBES3T, "Title       : zl\nExperiment  : bes3tExperiment\n"},
      {FileHPDTA, "MCP Gain  : hpdtaGain\nX Unit    : hpdtaXUnit\n"},
      {FileCaryDSW, "Sample    : dswXTitle\n"},
  };
  for (const auto& [type, line] : lines) {
    CAPTURE(line);
    CHECK(Header(Numbered(type)).find(line) != std::string::npos);
  }
}

TEST_CASE("report: values stand six to a line, the first padded") {
  PrnType curve(AllocXY, 7);
  for (int k = 0; k < 7; ++k) curve.xArray[k] = curve.yArray[k] = static_cast<float>(k);
  const std::string values = "           0 1 2 3 4 5 \n6 \n";
  CHECK(Log(curve, 5).substr(Log(curve, 4).size()) == "----[X]----\n" + values + "----[Y]----\n" + values);
  PrnType grid(AllocZ, 2, 2);
  for (int i = 0; i < 2; ++i)
    for (int j = 0; j < 2; ++j) grid.zArray[i][j] = static_cast<float>(10 * i + j);
  CHECK(Log(grid, 5).substr(Log(grid, 4).size()) == "----[Z]----\n           0 10 \n1 11 \n");
}

TEST_CASE("report: axis titles and summary line") {
  const std::pair<int, const char*> titles[] = {
      {FileCvt, "xl|yl|"},
      {FileP3D, "xl|yl|zl"},
      {FileHama, "Wavelength (nm)|Time (ns)|Intensity"},
      {FileBruker, "Gauss|Intensity|"},
      {FileDilor, "dilorXLabel|dilorYLabel|"},
      {FileCaryPrn, "nm|caryPrnYLabel|"},
      {FileNPico, "Time (s)|Intensity|"},
      {FileCary45, "cary45XLabel|cary45YLabel|"},
      {FileP2D, "xl|yl|"},
      {FileHPDTA, "hpdtaXUnit|hpdtaYUnit|Intensity (arb. units)"},
      {FileCaryDSW, "dswXTitle|dswYTitle|"},
      {FileOMA, "X|Y|Z"},
      {FileAT1, "X|Y|Z"},
      {99, "X|Y|Z"},
  };
  for (const auto& [type, expected] : titles) {
    CAPTURE(type);
    CHECK(Titles(Numbered(type)) == expected);
  }
  PrnType npico = Numbered(FileNPico);
  npico.npico.npicoScanType = 5;
  CHECK(Titles(npico) == "before|Intensity|");

  char line[132];
  PrnType empty;
  Set(empty.fileName, "e");
  empty.GetLabel(line);
  CHECK(std::string(line) == std::string(18, ' ') + "e NONE   0       ");
  PrnType grid(AllocXYZ, 12, 34567);
  Set(grid.fileName, "a name of more than nineteen");
  grid.GetLabel(line);
  CHECK(std::string(line) == "a name of more than nineteen XYZ   12 x 34567");
}
