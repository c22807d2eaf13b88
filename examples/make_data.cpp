// Makes the example data: small spectra as instruments would have measured them. "make_data FOLDER" writes them,
// "make_data --check FOLDER" tells whether the files there are what it would write.
//
// Only +, -, *, / and rounding are used, whose results are the same on every machine, so that the files are too.
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <fstream>
#include <initializer_list>
#include <iostream>
#include <iterator>
#include <string>
#include <string_view>

#include "portable.h"

namespace {

// ------------------------------------------------------------ noise and line shapes

class Noise {
 public:
  explicit Noise(std::uint32_t seed) : state_(seed) {}

  // Nearly normal, with mean 0 and deviation 1: the sum of twelve even deviates.
  double Next() {
    double sum = -6;
    for (int k = 0; k < 12; ++k) sum += Even();
    return sum;
  }

 private:
  double Even() {
    state_ = state_ * 1664525u + 1013904223u;
    return state_ / 4294967296.0;
  }

  std::uint32_t state_;
};

double Square(double x) { return x * x; }

// Line shapes of height 1, with x in half widths at half height.
double Lorentzian(double x) { return 1 / (1 + x * x); }
double LorentzianSlope(double x) { return -2 * x / Square(1 + x * x); }
// (1 + x^2 / n)^-n tends to a Gaussian; n = 16 is near enough.
double Bell(double x) { return 1 / Square(Square(Square(Square(1 + 0.6931 * x * x / 16)))); }

struct Line {
  double centre;
  double halfWidth;
  double height;
};

template <class Shape>
double Sum(std::initializer_list<Line> lines, double x, Shape shape) {
  double sum = 0;
  for (const Line& line : lines) sum += line.height * shape((x - line.centre) / line.halfWidth);
  return sum;
}

// ------------------------------------------------------------ text

std::string Whole(double value) { return std::to_string(static_cast<long>(std::floor(value + 0.5))); }

std::string Tenths(double value) {
  const auto tenths = static_cast<long>(std::floor(value * 10 + 0.5));
  return std::to_string(tenths / 10) + '.' + std::to_string(tenths % 10);
}

// ------------------------------------------------------------ files

// TEMPO in toluene at X band: three lines, 15.5 G apart, of which the high-field one is broadest.
constexpr int kFieldPoints = 1024;

std::string NitroxideDescriptor() {
  return R"(#DESC	1.2 * DESCRIPTOR INFORMATION ***********************
*
*	Dataset Type and Format:
*
DSRC	EXP
BSEQ	BIG
IKKF	REAL
XTYP	IDX
YTYP	NODATA
ZTYP	NODATA
*
*	Item Formats:
*
IRFMT	D
*
*	Data Ranges and Resolutions:
*
XPTS	1024
XMIN	3308.700000
XWID	100.000000
*
*	Documentational Text:
*
TITL	'TEMPO in toluene'
IRNAM	'Intensity'
XNAM	'Field'
IRUNI	''
XUNI	'G'
*
************************************************************
*
#SPL	1.2 * STANDARD PARAMETER LAYER
*
OPER    example
DATE    09/17/24
TIME    10:30:00
CMNT    0.5 mM, 295 K, simulated
SAMP
SFOR
STAG    L
EXPT    CW
OXS1    IADC
AXS1    B0VL
AXS2    NONE
AXS3
A1CT    0.33587
A1SW    0.01
MWFQ    9.43e+09
MWPW    0.002
AVGS    4
RESO    4122SHQE
SPTP    0.04096
RCAG    50
RCHM    1
B0MA    0.0001
B0MF    100000
RCPH    0.0
RCOF    0.0
RCTC    0.02048
STMP    295
*
************************************************************
*
#DSL	1.0 * DEVICE SPECIFIC LAYER
*
)";
}

std::string NitroxideValues() {
  Noise noise(1);
  std::string bytes;
  for (int k = 0; k < kFieldPoints; ++k) {
    const double field = 3308.7 + 100.0 * k / (kFieldPoints - 1);
    const double slope =
        Sum({{3343.2, 0.85, 17000}, {3358.7, 0.80, 18000}, {3374.2, 0.95, 13500}}, field, LorentzianSlope);
    const auto bits = kem::portable::bit_cast<std::uint64_t>(std::floor(slope + 60 * noise.Next()));
    for (int shift = 56; shift >= 0; shift -= 8) bytes += static_cast<char>(bits >> shift & 0xff);
  }
  return bytes;
}

std::string RamanHeader(const std::string& sample) {
  return "XY\nRaman shift (1/cm)\nIntensity (counts)\n\"Start : \"400\n\"Stop  : \"3200\n" + sample + "\n\n";
}

double Background(int shift) { return 450 - 0.06 * shift; }

// Bands of liquid cyclohexane on a sloping background.
std::string Raman() {
  std::string text = RamanHeader("cyclohexane");
  Noise noise(2);
  for (int shift = 400; shift <= 3200; shift += 2) {
    const double counts = Background(shift) + Sum({{427, 4, 300},
                                                   {801, 3.5, 5200},
                                                   {1028, 5, 1900},
                                                   {1157, 5, 700},
                                                   {1266, 6, 1900},
                                                   {1444, 7, 1700},
                                                   {2852, 9, 5600},
                                                   {2923, 11, 4700},
                                                   {2938, 10, 5000}},
                                                  shift, Lorentzian);
    text += std::to_string(shift) + "   " + Whole(counts + 12 * noise.Next()) + '\n';
  }
  return text;
}

// The empty cell, in wider steps.
std::string EmptyCell() {
  std::string text = RamanHeader("empty cell");
  Noise noise(5);
  for (int shift = 400; shift <= 3200; shift += 5)
    text += std::to_string(shift) + "   " + Whole(Background(shift) + 4 * noise.Next()) + '\n';
  return text;
}

// Fluorescence of one dye at three concentrations of a quencher.
std::string Quenching() {
  std::string text = "NXY 3 Wavelength (nm)\nno quencher\n10 mM quencher\n25 mM quencher\n";
  text += "\"Start : \"420\n\"Stop  : \"620\nfluorescence of a dye, excited at 400 nm\n\n";
  Noise noise(3);
  for (int wavelength = 420; wavelength <= 620; ++wavelength) {
    const double shape = Sum({{468, 14, 820}, {498, 22, 540}, {535, 28, 160}}, wavelength, Bell);
    text += std::to_string(wavelength);
    for (const double quenching : {1.0, 1.6, 2.5})
      text += ' ' + Tenths(20 + shape / quenching + 1.5 * noise.Next());
    text += '\n';
  }
  return text;
}

// A streak camera's image: two emission bands, whose decays begin with the camera's response.
constexpr int kWavelengths = 64;
constexpr int kTimes = 100;

std::string Streak() {
  std::string text =
      "[P3D]\nWavelength (nm)\nTime (ns)\nIntensity (counts)\nemission of two components, simulated\n";
  text += "[X] ARRAY " + std::to_string(kWavelengths) + '\n';
  for (int i = 0; i < kWavelengths; ++i) text += std::to_string(430 + 3 * i) + ' ';
  text += "\n[Y] ARRAY " + std::to_string(kTimes) + '\n';
  for (int j = 0; j < kTimes; ++j) text += Tenths(0.2 * j) + ' ';
  text += "\n[Z]\n";
  Noise noise(4);
  double fast = 0;  // populations, after 1.5 and 6 ns shrunk to 1/e
  double slow = 0;
  for (int j = 0; j < kTimes; ++j) {
    const double response = Bell((j - 12) / 2.0);
    fast = fast * 0.87517 + response;
    slow = slow * 0.96722 + response;
    for (int i = 0; i < kWavelengths; ++i) {
      const double x = 430 + 3 * i;
      const double counts = 20 + 130 * fast * Bell((x - 480) / 18) + 45 * slow * Bell((x - 545) / 26);
      text += Whole(counts + std::sqrt(counts) * noise.Next()) + ' ';
    }
    text += '\n';
  }
  return text;
}

struct File {
  const char* name;
  std::string (*bytes)();
};

constexpr File kFiles[] = {
    {"nitroxide.DSC", NitroxideDescriptor}, {"nitroxide.DTA", NitroxideValues}, {"raman.prn", Raman},
    {"raman_background.prn", EmptyCell},    {"columns.nxy", Quenching},         {"streak.p3d", Streak},
};

bool Write(const std::string& path, const std::string& bytes) {
  std::ofstream file(path, std::ios::binary);
  file << bytes;
  file.close();
  return !file.fail();
}

bool Matches(const std::string& path, const std::string& bytes) {
  std::ifstream file(path, std::ios::binary);
  return file && std::string(std::istreambuf_iterator<char>(file), {}) == bytes;
}

}  // namespace

int main(int argc, char** argv) {
  const bool check = argc > 1 && std::string_view(argv[1]) == "--check";
  if (argc != (check ? 3 : 2)) {
    std::cerr << "usage: make_data [--check] FOLDER\n";
    return 2;
  }
  int status = 0;
  for (const File& file : kFiles) {
    const std::string path = std::string(argv[argc - 1]) + '/' + file.name;
    if (check ? Matches(path, file.bytes()) : Write(path, file.bytes())) continue;
    std::cerr << "make_data: " << path << (check ? ": is not what make_data writes\n" : ": cannot be written\n");
    status = 1;
  }
  return status;
}
