// The report of a record on standard output, and its comment block. Both are tables of labelled lines, one
// table per file type.
#include <algorithm>
#include <cstring>
#include <iomanip>
#include <iostream>
#include <iterator>
#include <span>
#include <string>
#include <string_view>

#include "record/parameters.h"
#include "text/fields.h"
#include "text/number_text.h"
#include "text/words.h"

using namespace kem::record;
using kem::text::AppendNumber;
using kem::text::TextOf;

namespace {

// A line is its label, the value, and a unit. A line of a comment block is cut to 130 characters and its end.
struct Line {
  const char* label;
  KemParameter value;
  const char* unit = "";
};

// ------------------------------------------------------------ values that are no plain field

// The table entry behind the sweep-range code, not the code.
constexpr KemParameter kSweepRange{nullptr, KemParameterKind::Float, 1, [](const PrnType& r) -> const void* {
                                     return &SweepSpan(r.hama.hamaSweepRange);
                                   }};

// Raw bytes of the OMA and ICCD curve blocks, shown as the numbers that they hold.
constexpr KemParameter kRawTime{nullptr, KemParameterKind::Float, 1,
                                [](const PrnType& r) -> const void* { return r.oma.omaRawWord; }};
constexpr KemParameter kCalibrationStart{nullptr, KemParameterKind::Float, 1,
                                         [](const PrnType& r) -> const void* { return r.oma.omaCalibration; }};
constexpr KemParameter kFirstRange{nullptr, KemParameterKind::Int, 2,
                                   [](const PrnType& r) -> const void* { return r.oma.omaRange; }};
constexpr KemParameter kSecondRange{nullptr, KemParameterKind::Int, 2,
                                    [](const PrnType& r) -> const void* { return r.oma.omaRange + 2; }};
template <int Index>
constexpr KemParameter kCurveExtra{nullptr, KemParameterKind::Int, 1, [](const PrnType& r) -> const void* {
                                     return r.iccdCurve.iccdCurveExtra[Index];
                                   }};
template <int Index>
constexpr KemParameter kImageWord{nullptr, KemParameterKind::Int, 1, [](const PrnType& r) -> const void* {
                                    return r.iccdImage.iccdImageHeader + Index;
                                  }};

// ------------------------------------------------------------ comment blocks

constexpr Line kXYComment[] = {{"", Field<&PrnType::zLabel>()}};

constexpr Line kHamaComment[] = {
    {"Integration Time: ", Field<&HamaHeaderType::hamaIntegrationTime>()},
    {"Sweep Condition: ", Field<&HamaHeaderType::hamaSweepCondition>()},
    {"Sweep Range: ", kSweepRange},
    {"Center Wavelength: ", Field<&HamaHeaderType::hamaCenterWavelength>()},
    {"Dispersion: ", Field<&HamaHeaderType::hamaDispersion>()},
    {"CCD Center: ", Field<&HamaHeaderType::hamaCcdCenter>()},
};

constexpr Line kAT1Comment[] = {
    {"", Field<&PrnType::xLabel>()},
    {"", Field<&PrnType::yLabel>()},
    {"", Field<&PrnType::zLabel>()},
};

constexpr Line kBrukerComment[] = {
    {"Operator   = ", Field<&BrukerHeaderType::brukerOperator>()},
    {"", Field<&BrukerHeaderType::brukerComment>()},
    {"Date       = ", Field<&BrukerHeaderType::brukerDate>()},
    {"Gain       = ", Field<&BrukerHeaderType::brukerGain>()},
    {"Phase      = ", Field<&BrukerHeaderType::brukerPhase>()},
    {"Mod. Freq. = ", Field<&BrukerHeaderType::brukerModFrequency>()},
    {"Mod. Amp.  = ", Field<&BrukerHeaderType::brukerModAmplitude>()},
    {"Conv. Time = ", Field<&BrukerHeaderType::brukerConvTime>()},
    {"Time Cons. = ", Field<&BrukerHeaderType::brukerTimeConstant>()},
    {"Resolution = ", Field<&BrukerHeaderType::brukerResolution>()},
    {"MicroW Fr. = ", Field<&BrukerHeaderType::brukerMwFrequency>()},
    {"MicroW Pw. = ", Field<&BrukerHeaderType::brukerMwPower>()},
    {"Cen. Field = ", Field<&BrukerHeaderType::brukerCenterField>()},
    {"Sweep Wid. = ", Field<&BrukerHeaderType::brukerSweepWidth>()},
};

constexpr Line kDilorComment[] = {
    {"Sample : ", Field<&DilorHeaderType::dilorSample>()},
    {"Exc. Line : ", Field<&DilorHeaderType::dilorExcLine>()},
    {"Power : ", Field<&DilorHeaderType::dilorPower>()},
    {"Int. Time : ", Field<&DilorHeaderType::dilorIntTime>()},
    {"Repeat : ", Field<&DilorHeaderType::dilorRepeat>()},
    {"Slit W. : ", Field<&DilorHeaderType::dilorSlitWidth>()},
    {"Foremono. : ", Field<&DilorHeaderType::dilorForemono>()},
    {"Spectro. : ", Field<&DilorHeaderType::dilorSpectro>()},
    {"Spec. W. : ", Field<&DilorHeaderType::dilorSpecWidth>()},
    {"Operator : ", Field<&DilorHeaderType::dilorOperator>()},
    {"Detector : ", Field<&DilorHeaderType::dilorDetector>()},
    {"Grating : ", Field<&DilorHeaderType::dilorGrating>()},
    {"Filter : ", Field<&DilorHeaderType::dilorFilter>()},
    {"Date : ", Field<&DilorHeaderType::dilorDate>()},
};

constexpr Line kCaryPrnComment[] = {
    {"Sample : ", Field<&CaryPrnHeaderType::caryPrnSample>()},
    {"Date : ", Field<&CaryPrnHeaderType::caryPrnDate>()},
    {"SBW : ", Field<&CaryPrnHeaderType::caryPrnSbw>()},
    {"Int. Time : ", Field<&CaryPrnHeaderType::caryPrnIntTime>()},
    {"Temperature : ", Field<&CaryPrnHeaderType::caryPrnTemperature>()},
};

constexpr Line kNPicoComment[] = {
    {"Offset : ", Field<&NPicoHeaderType::npicoOffset>()},
    {"Input : ", Field<&NPicoHeaderType::npicoInput>()},
    {"Laser : ", Field<&NPicoHeaderType::npicoLaserLine>()},
    {"In. Time : ", Field<&NPicoHeaderType::npicoIntTime>()},
    {"Repeat : ", Field<&NPicoHeaderType::npicoRepeat>()},
    {"BackScan : ", Field<&NPicoHeaderType::npicoBackScans>()},
};

constexpr Line kCary45OneRangeComment[] = {
    {"", Field<&Cary45HeaderType::cary45Comment>()},
    {"SBW : ", Field<&Cary45HeaderType::cary45VisSbw>()},
    {"In. Time : ", Field<&Cary45HeaderType::cary45VisIntTime>()},
    {"Source Change : ", Field<&Cary45HeaderType::cary45SourceChange>()},
    {"Detect Change : ", Field<&Cary45HeaderType::cary45DetectorChange>()},
    {"Date : ", Field<&Cary45HeaderType::cary45Date>()},
};

constexpr Line kCary45TwoRangesComment[] = {
    {"", Field<&Cary45HeaderType::cary45Comment>()},
    {"VIS SBW : ", Field<&Cary45HeaderType::cary45VisSbw>()},
    {"VIS In. Time : ", Field<&Cary45HeaderType::cary45VisIntTime>()},
    {"NIR SBW : ", Field<&Cary45HeaderType::cary45NirSbw>()},
    {"NIR In. Time : ", Field<&Cary45HeaderType::cary45NirIntTime>()},
    {"Source Change : ", Field<&Cary45HeaderType::cary45SourceChange>()},
    {"Detect Change : ", Field<&Cary45HeaderType::cary45DetectorChange>()},
    {"Date : ", Field<&Cary45HeaderType::cary45Date>()},
};

// The 2-D exchange files carry the header lines of the OMA, so both types share one layout.
constexpr Line kOMAComment[] = {
    {"Setup  : ", Field<&PrnType::xLabel>()},
    {"InTime : ", kRawTime, " s"},
    {"Backgr : ", Field<&PrnType::yLabel>()},
    {"Slice  : ", Field<&PrnType::zLabel>()},
    {"Track  : ", Field<&OMAHeaderType::omaScanMode>()},
};

constexpr Line kBES3TComment[] = {
    {"", Field<&BES3THeaderType::bes3tComment>()},
    {"Micro. Freq.= ", Field<&BES3THeaderType::bes3tMwFrequency>()},
    {"Micro. Pow. = ", Field<&BES3THeaderType::bes3tMwPower>()},
    {"Rec. TimeCt = ", Field<&BES3THeaderType::bes3tTimeConstant>()},
    {"Modul. Freq. = ", Field<&BES3THeaderType::bes3tModFrequency>()},
    {"Modul. Amp. = ", Field<&BES3THeaderType::bes3tModAmplitude>()},
    {"Rec. Gain = ", Field<&BES3THeaderType::bes3tGain>()},
    {"Rec. Phase = ", Field<&BES3THeaderType::bes3tPhase>()},
    {"Rec. Offset = ", Field<&BES3THeaderType::bes3tOffset>()},
    {"Rec. Harm. = ", Field<&BES3THeaderType::bes3tHarmonic>()},
    {"InTime = ", Field<&BES3THeaderType::bes3tSptp>()},
    {"", Field<&BES3THeaderType::bes3tExperiment>()},
    {"Experiment: ", Field<&BES3THeaderType::bes3tExperiment>()},
    {"Ordinate: ", Field<&BES3THeaderType::bes3tOrdinateSource>()},
    {"Axis: ", Field<&BES3THeaderType::bes3tAbscissaSource>()},
};

constexpr Line kHPDTAComment[] = {
    {"Date      : ", Field<&HPDTAHeaderType::hpdtaDate>()},
    {"Gain      : ", Field<&HPDTAHeaderType::hpdtaGain>()},
    {"Acq. Mode : ", Field<&HPDTAHeaderType::hpdtaAcqMode>()},
    {"Acq. Time : ", Field<&HPDTAHeaderType::hpdtaAcqTime>()},
    {"Acq. No   : ", Field<&HPDTAHeaderType::hpdtaAcqNumber>()},
    {"Exposures : ", Field<&HPDTAHeaderType::hpdtaExposures>()},
};

// 15 before 14: the order in which the instrument's own report lists them.
constexpr Line kCaryDSWComment[] = {
    {"", Field<&CaryDSWHeaderType::dswXTitle>()}, {"", Field<&CaryDSWHeaderType::dswYTitle>()},
    {"", Field<&CaryDSWHeaderType::dswText13>()}, {"", Field<&CaryDSWHeaderType::dswText15>()},
    {"", Field<&CaryDSWHeaderType::dswText14>()}, {"", Field<&CaryDSWHeaderType::dswText26>()},
};

constexpr Line kIccdCurveComment[] = {{"lmin : ", kCurveExtra<0>}, {"lmax : ", kCurveExtra<1>}};

constexpr Line kIccdImageComment[] = {
    {"nrowOffset : ", kImageWord<0>}, {"ncolOffset : ", kImageWord<1>},  {"nrows : ", kImageWord<2>},
    {"ncols : ", kImageWord<3>},      {"nrowgrpsize : ", kImageWord<4>}, {"ncolgrpsize : ", kImageWord<5>},
};

std::span<const Line> CommentLines(const PrnType& record) {
  switch (record.fileType) {
    case FileXY:
      return kXYComment;
    case FileHama:
      return kHamaComment;
    case FileAT1:
      return kAT1Comment;
    case FileBruker:
      return kBrukerComment;
    case FileDilor:
      return kDilorComment;
    case FileCaryPrn:
      return kCaryPrnComment;
    case FileNPico:
      return kNPicoComment;
    case FileCary45:
      if (record.cary45.cary45IndependentNir) return kCary45TwoRangesComment;
      return kCary45OneRangeComment;
    case FileP2D:
    case FileOMA:
      return kOMAComment;
    case FileBES3T:
      return kBES3TComment;
    case FileHPDTA:
      return kHPDTAComment;
    case FileCaryDSW:
      return kCaryDSWComment;
    case FileIccdCurve:
      return kIccdCurveComment;
    case FileIccdImage:
      return kIccdImageComment;
    default:
      return {};
  }
}

// ------------------------------------------------------------ reports

constexpr Line kCvtReport[] = {
    {"X-axis : ", Field<&PrnType::xLabel>()},
    {"Y-axis : ", Field<&PrnType::yLabel>()},
};

// The Y title of an XY record stands under the Z prefix: hosts read the ordinate's title from there.
constexpr Line kXYReport[] = {
    {"X-axis : ", Field<&PrnType::xLabel>()},
    {"Z-axis : ", Field<&PrnType::yLabel>()},
    {"", Field<&PrnType::zLabel>()},
};

constexpr Line kP3DReport[] = {
    {"X-axis : ", Field<&PrnType::xLabel>()},
    {"Y-axis : ", Field<&PrnType::yLabel>()},
    {"Z-axis : ", Field<&PrnType::zLabel>()},
};

constexpr Line kHamaReport[] = {
    {"Integration Time  : ", Field<&HamaHeaderType::hamaIntegrationTime>()},
    {"Sweep Condition   : ", Field<&HamaHeaderType::hamaSweepCondition>()},
    {"Sweep Range       : ", kSweepRange},
    {"Center Wavelength : ", Field<&HamaHeaderType::hamaCenterWavelength>()},
    {"Dispersion        : ", Field<&HamaHeaderType::hamaDispersion>()},
};

constexpr Line kAT1Report[] = {
    {"Start Time : ", Field<&PrnType::xLabel>()},
    {"End Time   : ", Field<&PrnType::yLabel>()},
    {"Date       : ", Field<&PrnType::zLabel>()},
};

constexpr Line kBrukerReport[] = {
    {"GAIN      (RRG) : ", Field<&BrukerHeaderType::brukerGain>()},
    {"PHASE     (RPH) : ", Field<&BrukerHeaderType::brukerPhase>()},
    {"MODULFR   (RMF) : ", Field<&BrukerHeaderType::brukerModFrequency>()},
    {"MODULAM   (RMA) : ", Field<&BrukerHeaderType::brukerModAmplitude>()},
    {"CONVTIME  (RCT) : ", Field<&BrukerHeaderType::brukerConvTime>()},
    {"TIMECONS  (RTC) : ", Field<&BrukerHeaderType::brukerTimeConstant>()},
    {"MODE            : ", Field<&BrukerHeaderType::brukerMode>()},
    {"RESOL     (RES) : ", Field<&BrukerHeaderType::brukerResolution>()},
    {"MICROFR   (MF ) : ", Field<&BrukerHeaderType::brukerMwFrequency>()},
    {"MICROPOW  (MP ) : ", Field<&BrukerHeaderType::brukerMwPower>()},
    {"CENFIELD  (HCF) : ", Field<&BrukerHeaderType::brukerCenterField>()},
    {"SWEEPW    (HSW) : ", Field<&BrukerHeaderType::brukerSweepWidth>()},
    {"STATFIELD (EMF) : ", Field<&BrukerHeaderType::brukerStaticField>()},
    {"OPERATOR  (JON) : ", Field<&BrukerHeaderType::brukerOperator>()},
    {"COMMENT   (JCO) : ", Field<&BrukerHeaderType::brukerComment>()},
    {"DATE      (JDA) : ", Field<&BrukerHeaderType::brukerDate>()},
};

constexpr Line kDilorReport[] = {
    {"Int. Time : ", Field<&DilorHeaderType::dilorIntTime>()},
    {"Repeat    : ", Field<&DilorHeaderType::dilorRepeat>()},
    {"Power     : ", Field<&DilorHeaderType::dilorPower>()},
    {"Operator  : ", Field<&DilorHeaderType::dilorOperator>()},
    {"Sample    : ", Field<&DilorHeaderType::dilorSample>()},
    {"Detector  : ", Field<&DilorHeaderType::dilorDetector>()},
    {"Grating   : ", Field<&DilorHeaderType::dilorGrating>()},
    {"Filter    : ", Field<&DilorHeaderType::dilorFilter>()},
    {"XLabel    : ", Field<&DilorHeaderType::dilorXLabel>()},
    {"YLabel    : ", Field<&DilorHeaderType::dilorYLabel>()},
    {"Exc. Line : ", Field<&DilorHeaderType::dilorExcLine>()},
    {"Foremono. : ", Field<&DilorHeaderType::dilorForemono>()},
    {"Spectro.  : ", Field<&DilorHeaderType::dilorSpectro>()},
    {"Slit W.   : ", Field<&DilorHeaderType::dilorSlitWidth>()},
    {"Spec. W.  : ", Field<&DilorHeaderType::dilorSpecWidth>()},
    {"Date      : ", Field<&DilorHeaderType::dilorDate>()},
    {"Comment   : ", Field<&DilorHeaderType::dilorComment>()},
};

constexpr Line kCaryPrnReport[] = {
    {"Sample      : ", Field<&CaryPrnHeaderType::caryPrnSample>()},
    {"Date        : ", Field<&CaryPrnHeaderType::caryPrnDate>()},
    {"YLabel      : ", Field<&CaryPrnHeaderType::caryPrnYLabel>()},
    {"SBW         : ", Field<&CaryPrnHeaderType::caryPrnSbw>()},
    {"Int. Time   : ", Field<&CaryPrnHeaderType::caryPrnIntTime>()},
    {"Temperature : ", Field<&CaryPrnHeaderType::caryPrnTemperature>()},
};

constexpr Line kNPicoReport[] = {
    {"Offset   : ", Field<&NPicoHeaderType::npicoOffset>()},
    {"Input    : ", Field<&NPicoHeaderType::npicoInput>()},
    {"Laser    : ", Field<&NPicoHeaderType::npicoLaserLine>()},
    {"InTime   : ", Field<&NPicoHeaderType::npicoIntTime>()},
    {"Repeat   : ", Field<&NPicoHeaderType::npicoRepeat>()},
    {"BackScan : ", Field<&NPicoHeaderType::npicoBackScans>()},
};

constexpr Line kCary45Report[] = {
    {"Indep. NIR   : ", Field<&Cary45HeaderType::cary45IndependentNir>()},
    {"VIS SBW      : ", Field<&Cary45HeaderType::cary45VisSbw>()},
    {"NIR SBW      : ", Field<&Cary45HeaderType::cary45NirSbw>()},
    {"VIS In. Time : ", Field<&Cary45HeaderType::cary45VisIntTime>()},
    {"NIR In. Time : ", Field<&Cary45HeaderType::cary45NirIntTime>()},
    {"SourceChange : ", Field<&Cary45HeaderType::cary45SourceChange>()},
    {"DetectChange : ", Field<&Cary45HeaderType::cary45DetectorChange>()},
    {"XLabel       : ", Field<&Cary45HeaderType::cary45XLabel>()},
    {"YLabel       : ", Field<&Cary45HeaderType::cary45YLabel>()},
    {"Comment      : ", Field<&Cary45HeaderType::cary45Comment>()},
    {"Date         : ", Field<&Cary45HeaderType::cary45Date>()},
};

constexpr Line kOMAReport[] = {
    {"Setup:    ", Field<&PrnType::xLabel>()},
    {"Backgr:   ", Field<&PrnType::yLabel>()},
    {"Slice:    ", Field<&PrnType::zLabel>()},
    {"Track:    ", Field<&OMAHeaderType::omaScanMode>()},
    {"InTime:   ", kRawTime},
    {"CalX:     ", kCalibrationStart},
    {"X1, X2:   ", kFirstRange},
    {"Y1, Y2:   ", kSecondRange},
    {"OMAX_Gr:  ", Field<&OMAHeaderType::omaTrackCount>()},
    {"OMAY_Gr:  ", Field<&OMAHeaderType::omaSliceCount>()},
    {"OMAGr_Ty: ", Field<&OMAHeaderType::omaSegmentIsSlice>()},
    {"OMAGr_St: ", Field<&OMAHeaderType::omaSegmentFirst>()},
    {"OMAGr_Le: ", Field<&OMAHeaderType::omaSegmentWidth>()},
};

constexpr Line kBES3TReport[] = {
    {"Title       : ", Field<&PrnType::zLabel>()},
    {"Experiment  : ", Field<&BES3THeaderType::bes3tExperiment>()},
    {"Ordinate    : ", Field<&BES3THeaderType::bes3tOrdinateSource>()},
    {"Swept Axis  : ", Field<&BES3THeaderType::bes3tAbscissaSource>()},
    {"InTime      : ", Field<&BES3THeaderType::bes3tSptp>()},
    {"Micro. Freq.: ", Field<&BES3THeaderType::bes3tMwFrequency>()},
    {"Micro. Pow. : ", Field<&BES3THeaderType::bes3tMwPower>()},
    {"Rec. TimeCt.: ", Field<&BES3THeaderType::bes3tTimeConstant>()},
    {"Rec. Gain   : ", Field<&BES3THeaderType::bes3tGain>()},
    {"Rec. Phase  : ", Field<&BES3THeaderType::bes3tPhase>()},
    {"Rec. Harm.  : ", Field<&BES3THeaderType::bes3tHarmonic>()},
    {"Rec. Offset : ", Field<&BES3THeaderType::bes3tOffset>()},
    {"Modul. Amp. : ", Field<&BES3THeaderType::bes3tModAmplitude>()},
    {"Modul. Freq.: ", Field<&BES3THeaderType::bes3tModFrequency>()},
};

constexpr Line kHPDTAReport[] = {
    {"Comment   : ", Field<&HPDTAHeaderType::hpdtaComment>()},
    {"Date      : ", Field<&HPDTAHeaderType::hpdtaDate>()},
    {"Acq. Mode : ", Field<&HPDTAHeaderType::hpdtaAcqMode>()},
    {"Acq. Time : ", Field<&HPDTAHeaderType::hpdtaAcqTime>()},
    {"Acq. No.  : ", Field<&HPDTAHeaderType::hpdtaAcqNumber>()},
    {"Exposures : ", Field<&HPDTAHeaderType::hpdtaExposures>()},
    {"MCP Gain  : ", Field<&HPDTAHeaderType::hpdtaGain>()},
    {"X Unit    : ", Field<&HPDTAHeaderType::hpdtaXUnit>()},
    {"X Mode    : ", Field<&HPDTAHeaderType::hpdtaXScalingType>()},
    {"X Scale   : ", Field<&HPDTAHeaderType::hpdtaXScale>()},
    {"Y Unit    : ", Field<&HPDTAHeaderType::hpdtaYUnit>()},
    {"Y Mode    : ", Field<&HPDTAHeaderType::hpdtaYScalingType>()},
    {"Y Scale   : ", Field<&HPDTAHeaderType::hpdtaYScale>()},
    {"Format    : ", Field<&HPDTAHeaderType::hpdtaDataType>()},
};

constexpr Line kCaryDSWReport[] = {
    {"Sample    : ", Field<&CaryDSWHeaderType::dswXTitle>()},
    {"Y Title   : ", Field<&CaryDSWHeaderType::dswYTitle>()},
    {"Text 10   : ", Field<&CaryDSWHeaderType::dswText10>()},
    {"Text 11   : ", Field<&CaryDSWHeaderType::dswText11>()},
    {"Text 13   : ", Field<&CaryDSWHeaderType::dswText13>()},
    {"Text 14   : ", Field<&CaryDSWHeaderType::dswText14>()},
    {"Text 15   : ", Field<&CaryDSWHeaderType::dswText15>()},
    {"Text 26   : ", Field<&CaryDSWHeaderType::dswText26>()},
};

struct FileTypeRow {
  const char* name;  // null: the type has no name
  std::span<const Line> report;
};

constexpr FileTypeRow kFileTypes[] = {
    {".cvt file", kCvtReport},
    {"XY .prn file", kXYReport},
    {".p3d or .b3d file", kP3DReport},
    {"Hamamatsu Raw file", kHamaReport},
    {"Wright CCD Image", kAT1Report},
    {"Bruker ESR spectrum", kBrukerReport},
    {"Dilor Raman spectrum", kDilorReport},
    {"Cary Absorption .prn", kCaryPrnReport},
    {"NPico Delay Scan", kNPicoReport},
    {"Cary OS/2 Absorption", kCary45Report},
    {nullptr, {}},
    {nullptr, {}},
    {".p2d or .b2d file", kOMAReport},
    {"EG&G OMA", kOMAReport},
    {"Bruker BES^3T file", kBES3TReport},
    {"HPDTA File", kHPDTAReport},
    {"Cary DSW file", kCaryDSWReport},
};

constexpr const char* kScanKinds[] = {"Delay Scan", "Time Scan", "Excitation Scan", "Monochromator Scan",
                                      "DcDelay Scan"};

// ------------------------------------------------------------ text of values

template <class T>
T ValueAt(const char* values, int index) {
  T value;
  std::memcpy(&value, values + static_cast<std::size_t>(index) * sizeof value, sizeof value);
  return value;
}

std::string ValueText(const PrnType& record, const KemParameter& parameter) {
  const auto* values = static_cast<const char*>(parameter.in(record));
  if (parameter.kind == KemParameterKind::Text) return std::string(kem::text::TextOfField(values));
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

// Whole words within 131 characters, without blanks around them.
std::string WholeWords(std::string text) {
  constexpr std::size_t kLongest = kTextSize - 1;
  if (text.size() > kLongest) text.resize(std::min(kLongest, text.find_last_of(' ', kLongest)));
  return std::string(kem::text::Trimmed(text, " "));
}

// ------------------------------------------------------------ assembling

void AppendLine(std::string& text, std::string_view line) {
  text += line.substr(0, kTextSize - 2);
  text += '\n';
}

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
  const auto type = static_cast<unsigned>(r.fileType);
  if (type < std::size(kFileTypes) && kFileTypes[type].name) std::cout << kFileTypes[type].name << std::endl;
  std::cout << (r.active ? "Active" : "Not Active") << std::endl;
}

void PrintRanges(const PrnType& r) {
  std::cout << "X-axis :" << r.xStart << " -> " << r.xEnd << " , " << r.xStep << std::endl;
  std::cout << "Y-axis :" << r.yStart << " -> " << r.yEnd << " , " << r.yStep << std::endl;
  std::cout << "Z-axis :" << r.zMin << " -> " << r.zMax << std::endl;
}

void PrintHeader(const PrnType& r) {
  const auto type = static_cast<unsigned>(r.fileType);
  if (type >= std::size(kFileTypes)) return;
  if (type == FileNPico) {
    const auto kind = static_cast<unsigned>(r.npico.npicoScanType);
    if (kind < std::size(kScanKinds)) std::cout << kScanKinds[kind] << std::endl;
  }
  for (const Line& line : kFileTypes[type].report)
    std::cout << line.label << ValueText(r, line.value) << line.unit << std::endl;
  if (type == FileP3D)
    for (const auto& comment : r.commentLines) std::cout << TextOf(comment) << std::endl;
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

}  // namespace

void PrnType::CommentBlock(char* const text, int size) const {
  if (allocType == AllocNone || size <= 0) return;
  std::string block;
  if (fileType == FileP3D)
    for (const auto& comment : commentLines) {
      if (&comment == commentLines || comment[0]) AppendLine(block, TextOf(comment));
    }
  const bool wholeWords = fileType == FileP2D || fileType == FileOMA;
  for (const Line& line : CommentLines(*this)) {
    std::string value = ValueText(*this, line.value);
    if (wholeWords && line.value.kind == KemParameterKind::Text) value = WholeWords(std::move(value));
    AppendLine(block, line.label + value + line.unit);
  }
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
