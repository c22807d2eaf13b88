// Bruker ESR: a text parameter file (.par) and a headerless value file (.spc).
//
//   DOS  Format        values are little-endian floats; big-endian integers without this line
//   GST 3450.000000    start of the sweep
//   GSI 120.000000     its span
//   JEX field-sweep
//   HCF 3510.000000    centre and width of a field sweep, gauss
//   HSW 120.000000
//   RRG 1.002374e+004
//   MF  9.876026
#include <algorithm>
#include <fstream>
#include <limits>
#include <string>

#include "kem.h"
#include "load/announced.h"
#include "load/block.h"
#include "load/keywords.h"
#include "record/findings.h"
#include "record/storage.h"
#include "text/fields.h"

using namespace kem::load;
using namespace kem::text;
using namespace kem::record;

namespace {

// ------------------------------------------------------------ parameter file

using Header = BrukerHeaderType;

// What a parameter file that names nothing stands for.
constexpr Header kDefaults = {
    .brukerGain = 20000,
    .brukerPhase = 0,
    .brukerModFrequency = 100,
    .brukerModAmplitude = 1,
    .brukerConvTime = 5.12f,
    .brukerTimeConstant = 1.28f,
    .brukerMode = "EPR",
    .brukerResolution = 1024,
    .brukerMwFrequency = -1,
    .brukerMwPower = -1,
    .brukerCenterField = 3480,
    .brukerSweepWidth = 50,
    .brukerStaticField = 3480,
    .brukerOperator = "",
    .brukerComment = "",
    .brukerDate = "",
};

struct Par {
  Header header = kDefaults;
  float sweepStart = 0;
  float sweepSpan = 0;
  bool timeSweep = false;
  bool floats = false;     // values in PC layout
  bool twoCurves = false;  // the value file holds two spectra
  bool image = false;      // an image, if it has sizes
  int sizeX = 0;
  int sizeY = 0;
  int widthX = 0;
  int widthY = 0;
};

// Date and time stand in lines of their own.
void AppendDate(Par&, Header& header, std::string_view line) {
  if (const auto word = SecondWord(line))
    CopyText(header.brukerDate, std::string(TextOf(header.brukerDate)).append(*word).append(" "));
}

constexpr Keyword<Par, Header> kKeywords[] = {
    {"JON", &Header::brukerOperator},
    {"KRON", &Par::timeSweep},
    {"DOS", &Par::floats},
    {"RRG", &Header::brukerGain},
    {"RPH", &Header::brukerPhase},
    {"RMF", &Header::brukerModFrequency},
    {"RMA", &Header::brukerModAmplitude},
    {"RCT", &Header::brukerConvTime},
    {"RTC", &Header::brukerTimeConstant},
    {"JEXT2"},
    {"JEX", &Header::brukerMode, Match::AtStart},
    {"RES", &Header::brukerResolution},
    {"HCF", &Header::brukerCenterField},
    {"HSW", &Header::brukerSweepWidth},
    {"EMF", &Header::brukerStaticField},
    {"JCO", &Header::brukerComment},
    {"JDA", AppendDate},
    {"JTM", AppendDate},
    {"GST", &Par::sweepStart},
    {"GSI", &Par::sweepSpan},
    {"MF", &Header::brukerMwFrequency},  // behind RMF and EMF, which contain it
    {"MP", &Header::brukerMwPower},
    {"XPLS", &Par::image},
    {"SSX", &Par::sizeX},
    {"SSY", &Par::sizeY},
    {"XXWI", &Par::widthX},
    {"XYWI", &Par::widthY},
    {"FDUA", &Par::twoCurves},
};
static_assert(FirstIn("JCO by JON", kKeywords)->word == "JON" && FirstIn("RMF", kKeywords)->word == "RMF");
static_assert(FirstIn("my JEX", kKeywords) == nullptr);

void ParseLine(Par& par, std::string_view line) {
  if (const auto* keyword = FirstIn(line, kKeywords)) Store(keyword->to, line, SecondWord, par, par.header);
}

// The software of one generation ends lines with CR, of others with LF or both. Empty lines do not count, nor
// does a last one without an end.
Par ReadPar(std::istream& in) {
  constexpr int kMostLines = 64;
  Par par;
  std::string line;
  int lines = 0;
  for (char c = 0; lines < kMostLines && in.get(c);) {
    if (c != '\r' && c != '\n') {
      if (line.size() < kTextSize - 1) line += c;
    } else if (!line.empty()) {
      ParseLine(par, line.c_str());
      line.clear();
      ++lines;
    }
  }
  return par;
}

// ------------------------------------------------------------ value file

float Step(double span, int points) { return points > 1 ? static_cast<float>(span / (points - 1)) : 0; }

void SetSweep(PrnType& record, const Par& par) {
  const auto mode = TextOf(par.header.brukerMode);
  if (!Contains(mode, "EPR") && !Contains(mode, "field-sweep")) {
    record.xStart = par.sweepStart;
    record.xEnd = par.sweepSpan;  // these experiments store the end where the others store the span
  } else if (par.timeSweep) {
    record.xStart = par.sweepStart;
    record.xEnd = par.sweepStart + par.sweepSpan;
  } else {
    record.xStart = static_cast<float>(par.header.brukerCenterField - par.header.brukerSweepWidth * 0.5);
    record.xEnd = static_cast<float>(par.header.brukerCenterField + par.header.brukerSweepWidth * 0.5);
  }
}

void FillImage(PrnType& record, Par par, std::istream& spc) {
  CheckGrid(spc, par.sizeX, par.sizeY);
  Grid grid = NewZeroGrid(par.sizeX, par.sizeY);
  SeekTo(spc, 0);
  ReadLines(spc, Wire::S32, Order::Big, grid.get(), par.sizeX, par.sizeY);
  Own(record.zArray, std::move(grid));
  record.allocType = AllocZ;
  record.nX = par.sizeX;
  record.nY = par.sizeY;
  record.xStart = record.yStart = 0;
  record.xEnd = static_cast<float>(par.widthX);
  record.yEnd = static_cast<float>(par.widthY);
  record.xStep = Step(par.widthX, par.sizeX);
  record.yStep = Step(par.widthY, par.sizeY);
}

void FillCurve(PrnType& record, const Par& par, bool second, std::istream& spc) {
  constexpr std::size_t kValueSize = 4;
  SeekTo(spc, 0);
  const std::size_t held = BytesLeft(spc) / kValueSize / (par.twoCurves ? 2 : 1);
  const int points = static_cast<int>(std::min<std::size_t>(held, std::numeric_limits<int>::max()));
  auto values = NewZeroArray(points);
  if (par.twoCurves && second) spc.seekg(static_cast<std::streamoff>(kValueSize) * points);
  ReadValues(spc, par.floats ? Wire::F32 : Wire::S32, par.floats ? Order::Little : Order::Big,
             {values.get(), static_cast<std::size_t>(points)});
  Own(record.yArray, std::move(values));
  record.allocType = AllocY;
  record.nX = record.nY = points;
  SetSweep(record, par);
  record.xStep = Step(record.xEnd - record.xStart, points);
  record.yStep = 0;
}

}  // namespace

int PrnType::ReadBruker(std::ifstream& par, std::ifstream& spc, int which) {
  if (!par || !spc) return 0;
  const Par parameters = ReadPar(par);
  const bool image = parameters.image && parameters.sizeX != 0 && parameters.sizeY != 0;
  if (image && (parameters.sizeX < 0 || parameters.sizeY < 0)) return 0;

  Reset(*this);
  const bool second = which == 1;
  if (image)
    FillImage(*this, parameters, spc);
  else
    FillCurve(*this, parameters, second, spc);
  fileType = FileBruker;
  bruker = parameters.header;
  if (parameters.twoCurves) *Found().readNext = second ? 0 : 1;
  return Finish(*this, par, spc);
}
