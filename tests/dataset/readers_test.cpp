// Datasets from built bytes: one table of files and what kem::Open makes of them.
#include <new>
#include <thread>

#include "support/datasets.h"

using namespace kem;
using namespace kem::test;

namespace {

struct Case {
  const char* what;
  Files files;
  int item;
  std::string expected;
};

void CheckAll(const std::vector<Case>& cases) {
  for (const Case& c : cases) {
    CAPTURE(c.what);
    CHECK(OpenedAs(c.files, c.item) == c.expected);
  }
}

template <class Number>
std::string Numbers(std::initializer_list<Number> numbers, std::endian order = std::endian::big) {
  Bytes bytes(order);
  for (const Number n : numbers) bytes.Put(n);
  return bytes;
}

// ------------------------------------------------------------ BES3T

// The lines that a case names replace those of the same keyword.
std::string Descriptor(const std::vector<std::pair<std::string, std::string>>& changes = {}) {
  std::vector<std::pair<std::string, std::string>> lines = {
      {"BSEQ", "BIG"},     {"IKKF", "REAL"}, {"IRFMT", "D"},  {"XTYP", "IDX"},           {"XPTS", "3"},
      {"XMIN", "10"},      {"XWID", "20"},   {"TITL", "'A'"}, {"IRNAM", "'I','second'"}, {"IRUNI", "'V','mV'"},
      {"XNAM", "'Field'"}, {"XUNI", "'G'"}};
  for (const auto& change : changes) {
    const auto same =
        std::find_if(lines.begin(), lines.end(), [&](const auto& line) { return line.first == change.first; });
    if (same == lines.end())
      lines.push_back(change);
    else
      same->second = change.second;
  }
  std::string text = "#DESC\t1.2 * DESCRIPTOR ***\r\n*\r\n";
  for (const auto& [key, value] : lines) text += key + '\t' + value + "\r\n";
  return text +
         "#SPL\t1.2\nMWFQ    9.5e+09\nCMNT    two \\n\\\nlines\n#DSL\t1.0\n.DVC     mwBridge, 1.0\nPower   2.0 "
         "mW\n#MHL\nNO 1\n";
}

Files BES3T(const std::vector<std::pair<std::string, std::string>>& changes, std::initializer_list<double> values) {
  return {{"a.DSC", Descriptor(changes)}, {"a.DTA", Numbers<double>(values)}};
}

Files With(Files files, const std::string& name, const std::string& bytes) {
  files.emplace_back(name, bytes);
  return files;
}

const Files kCurve = BES3T({}, {1, 2, 3});

// ------------------------------------------------------------ ESP, JCAMP-DX, HPDTA, Cary

Files Esp(const std::string& par, const std::string& spc) { return {{"a.par", par}, {"a.spc", spc}}; }

std::string Dx(const std::string& labels) {
  return "##TITLE= t\n##JCAMP-DX= 4.24 $$ comment\n" + labels + "##END=\n";
}

std::string Image(int type, int width, int height, const std::string& status, const std::string& pixels) {
  Bytes bytes;
  bytes.Text("IM").Put(static_cast<std::uint16_t>(status.size())).Put(static_cast<std::uint16_t>(width));
  bytes.Put(static_cast<std::uint16_t>(height)).PadTo(12).Put(static_cast<std::uint16_t>(type)).PadTo(64);
  return bytes.Text(status).Text(pixels);
}

std::string CaryText(const std::string& text) {
  return std::string(Bytes().Put(static_cast<std::uint32_t>(text.size())).Text(text));
}

std::string CaryStore(const std::string& name, std::uint32_t announced, std::initializer_list<float> pairs,
                      const std::string& texts) {
  const std::string numbers = Numbers<float>(pairs, std::endian::little);
  Bytes header;
  header.Put(std::uint32_t{410})
      .Put(std::uint32_t{149})
      .Put(1.0f)
      .Put(2.0f)
      .Put(5.0f)
      .Put(6.0f)
      .Put(announced)
      .PadTo(1028);
  const std::string content = std::string(header) + numbers + texts;
  const auto size = static_cast<std::uint32_t>(8 + name.size() + content.size());
  return CaryText(name) + std::string(Bytes().Put(size)) + content;
}

std::string Cary(const std::string& stores) {
  return std::string(Bytes().Text("\x11Varian UV-VIS-NIR").PadTo(62)) + stores + "tail";
}

}  // namespace

TEST_CASE("dataset: Bruker BES3T") {
  const std::string head = "Bruker BES3T 1/1 'I' A: I (V) f64\nField (G): 10 20 30\n";
  CheckAll({
      {"curve", kCurve, 1, head + "= 1 2 3\n"},
      {"by its value file", {{"a.DTA", kCurve[1].second}, {"a.DSC", kCurve[0].second}}, 1, head + "= 1 2 3\n"},
      {"of two value files the named one, written last where case does not tell them apart",
       {{"a.dta", {}}, kCurve[0], {"a.DTA", Numbers<double>({4, 5, 6})}, {"a.dta", kCurve[1].second}},
       1,
       head + "= 1 2 3\n"},
      {"two variables, one complex", BES3T({{"IKKF", "REAL,CPLX"}, {"IRFMT", "D,D"}}, {1, 2, 3, 4, 5, 6, 7, 8, 9}),
       2,
       "Bruker BES3T 2/2 'second' A: second (mV) f64 complex\nField (G): 10 20 30\n= 2+3i 5+6i 8+9i\n! holds 1 "
       "more item\n"},
      {"grid, stored descending Y",
       With(BES3T({{"YTYP", "IGD"}, {"YPTS", "2"}, {"YFMT", "F"}, {"YNAM", "'Power'"}, {"YUNI", "'mW'"}},
                  {1, 2, 3, 4, 5, 6}),
            "a.YGF", Numbers<float>({20.0f, 0.5f})),
       1, "Bruker BES3T 1/1 'I' A: I (V) f64\nPower (mW) stored: 20 0.5\nField (G): 10 20 30\n= 1 2 3 4 5 6\n"},
      {"one Y point", BES3T({{"YTYP", "IDX"}, {"YPTS", "1"}}, {1, 2, 3}), 1, head + "= 1 2 3\n"},
      {"no companion", BES3T({{"XTYP", "IGD"}}, {1, 2, 3}), 1,
       head + "= 1 2 3\n! XTYP is IGD, but there is no .XGF; the axis is that of XMIN and XWID\n"},
      {"values missing", BES3T({}, {1, 2}), 1,
       "Bruker BES3T 1/1 'I' A: I (V) f64\nField (G): 10 20\n= 1 2\n! values file holds 2 of 3 points\n"},
      {"values behind", BES3T({}, {1, 2, 3, 4}), 1, head + "= 1 2 3\n! values file has 8 bytes behind the data\n"},
      {"an absurd count", BES3T({{"XPTS", "2147483647"}}, {}), 1,
       "Bruker BES3T 1/1 'I' A: I (V) f64\nField (G):\n=\n! values file holds 0 of 2147483647 points\n! holds no "
       "points\n"},
      {"tuples", BES3T({{"XTYP", "NTUP"}}, {}), 1, "refused: XTYP NTUP, tuples, is not read"},
      {"no such item", kCurve, 2, "refused: holds no item 2, but 1"},
      {"a descriptor under the name of values",
       {{"a.DTA", kCurve[0].second}},
       1,
       "refused: its descriptor, a file of the same name with .DSC and #DESC, is missing"},
      {"no values", {kCurve[0]}, 1, "refused: its values, a file of the same name with .DTA, are missing"},
  });
  const std::string parameters = WithFiles(kCurve, [](const std::string& path) { return Parameters(Open(path)); });
  CHECK(parameters.substr(parameters.find("[SPL]")) ==
        "[SPL] MWFQ = 9.5e+09 {9.5e+09 Hz}\n[SPL] CMNT = two \nlines\n[DSL mwBridge] Power = 2.0 mW {2 mW}\n");
}

TEST_CASE("dataset: Bruker ESP and WinEPR") {
  const std::string floats = Numbers<float>({1, 2, 3, 4}, std::endian::little);
  const std::string curve = "Bruker ESR spc/par 1/1 '' sample one: Intensity () ";
  CheckAll({
      {"floats, axis of GST and GSI",
       Esp("DOS  Format\rJSS 0\rGST 10\rGSI 30\rHCF 1\rHSW 1\rJCO sample one\rMPD 15\r", floats), 1,
       curve + "f32\nField (G): 10 20 30 40\n= 1 2 3 4\n"},
      {"integers, complex, field by centre",
       Esp("* GST 1\nJSS 16\nHCF 100\nHSW 20\nJCO sample\n one\n", Numbers<std::int32_t>({1, 2, 3, 4})), 1,
       curve + "i32 complex\nField (G): 90 110\n= 1+2i 3+4i\n"},
      {"image",
       Esp("DOS\r\nJSS 4096\r\nSSX 2\r\nSSY 2\r\nXXWI 5\r\nXXUN ns\r\nXYLB 7\r\nXYWI -4\r\nJCO sample one\r\n",
           floats),
       1, curve + "f32\n (): 7 3\nTime (ns): 0 5\n= 1 2 3 4\n"},
      {"short, out of range, a default", Esp("DOS\nANZ 5\nMIN 0\nMAX 4\nHCF 100\nJCO sample one\n", floats), 1,
       curve + "f32\nField (G): 75 91.6667 108.333 125\n= 1 2 3 4\n! values file holds 4 of 5 points\n"
               "! HSW 50 is assumed for the axis; the file has no HSW\n! the values are not in the range that MIN "
               "0 and MAX 4 name\n"},
      {"image without widths", Esp("DOS\nJSS 4096\nSSX 2\nSSY 2\nXXLB 7\nXXWI 5\nJCO sample one\n", floats), 1,
       curve + "f32\n (): 0 1\n (): 7 12\n= 1 2 3 4\n! there is no XYWI; the axis counts points\n"},
      {"no parameters",
       {{"a.spc", floats}},
       1,
       "refused: its parameters, a file of the same name with .par, are missing"},
      {"another maker's parameters", Esp("Gain 5\n", floats), 1,
       "refused: is not a Bruker ESR file: its parameters hold none of JSS, DOS, GST and JEX"},
  });
}

TEST_CASE("dataset: JCAMP-DX") {
  const std::string head = "JCAMP-DX 1/1 't' t:  (A) f64\n (nm): 400 401 402 403 404\n";
  const std::string labels =
      "##XUNITS= nm\n##y units = A $$ absorbance\n##FIRSTX= 400\n##LASTX=404\n##NPOINTS=5\n##YFACTOR=0.5\n";
  const std::string even = labels + "##XYDATA=(X++(Y..Y))\n";
  const auto dx = [](const std::string& text) { return Files{{"a.dx", Dx(text)}}; };
  CheckAll({
      {"plain numbers", dx(even + "400 2 4 6\n403 8 10\n"), 1, head + "= 1 2 3 4 5\n"},
      {"packed", dx(even + "400+2+4-6+8+1.0E+1\n"), 1, head + "= 1 2 -3 4 5\n"},
      {"squeezed, difference, duplicate, check", dx(even + "400B%T\r403BN%\r404G\r"), 1,
       head + "= 1 1 1 3.5 3.5\n"},
      {"a missing ordinate, an unknown sign", dx(even + "400 2 ? 6 8 ! 10\n"), 1,
       head + "= 1 nan 3 4 5\n! characters in the data that are no numbers: 1\n! values that are not finite: 1\n"},
      {"a failed check", dx(even + "400A1J\n402 13 J J J\n"), 1,
       head + "= 5.5 6 7 7.5 8\n! lines that do not begin with the ordinate before: 1\n"},
      {"pairs with decimal commas", dx("##FIRSTX=1,5\n##NPOINTS=2\n##XYPOINTS=(XY..XY)\n1,5, 10,25\n2,5 20\n"), 1,
       "JCAMP-DX 1/1 't' t:  () f64\n () stored: 1.5 2.5\n= 10.25 20\n"},
      {"blocks behind a link, too few points",
       dx("##BLOCKS=2\n##TITLE=one\n##PEAK "
          "TABLE=(XY..XY)\n1,2;3,4\n##END=\n##TITLE=two\n##NPOINTS=3e30\n##PEAKTABLE=(XY..XY)\n5 6\n##END=\n"),
       2,
       "JCAMP-DX 2/2 'two' two:  () f64\n () stored: 5\n= 6\n! holds 1 points; NPOINTS announces 3e+30\n! holds 1 "
       "more "
       "item\n"},
      {"pages",
       dx("##NTUPLES= X\n##SYMBOL= X, R, N\n##VAR_NAME= F, RE, P\n##UNITS= HZ, V\n##FIRST= 8, 1, 1\n##LAST= 9, 2, "
          "2\n"
          "##FACTOR= 1, 10, 1\n##VAR_DIM= 2, 2, 2\n##PAGE= N=1\n##DATA TABLE= (X++(R..R)), XYDATA\n8 1 2\n##PAGE= "
          "N=2\n"
          "##DATA TABLE= (X++(R..R)), XYDATA\n8 3 4\n##END NTUPLES=\n"),
       2, "JCAMP-DX 2/2 'N=2' t: RE (V) f64\nF (HZ): 8 9\n= 30 40\n! holds 1 more item\n"},
      {"an absurd repetition", dx(even + "400A s99999999999999\n"), 1,
       "refused: repeats a value more often than 22 bytes would"},
      {"no spectrum", dx("##DATA TYPE=LINK\n"), 1,
       "refused: holds no spectrum that kem reads (XYDATA, XYPOINTS, PEAK TABLE or DATA TABLE)"},
  });
}

TEST_CASE("dataset: HPDTA") {
  const std::string status =
      "[Acquisition],ZAxisLabel=Intensity,ZAxisUnit=Count,SubType=0[Scaling],ScalingXType=2,ScalingXUnit=\"nm\","
      "ScalingXScalingFile=\"#0000000,2\",ScalingYType=1,ScalingYScale=2,ScalingYUnit=\"ns\"";
  const auto placed = [&](std::size_t at) {
    std::string text = status;
    const std::string digits = std::to_string(at);
    return text.replace(text.find("0000000") + 7 - digits.size(), digits.size(), digits);
  };
  const std::string pixels = Numbers<std::uint16_t>({1, 2, 65535, 4}, std::endian::little);
  const std::string table = Numbers<float>({700, 500}, std::endian::little);
  const std::string head = "HPDTA image 1/1 '' : Intensity (Count) u16\nTime (ns): 0 2\nWavelength (nm)";
  CheckAll({
      {"a table of X",
       {{"a.img", Image(2, 2, 2, placed(64 + status.size() + 8), pixels + table)}},
       1,
       head + " stored: 700 500\n= 1 2 65535 4\n"},
      {"a table that is not there",
       {{"a.img", Image(2, 2, 2, placed(9999), pixels)}},
       1,
       head + ": 0 1\n= 1 2 65535 4\n! ScalingXType is 2, a table, but the file ends before it; the axis counts "
              "pixels\n"},
      {"cut",
       {{"a.img", Image(2, 2, 2, placed(9999), pixels.substr(0, 7))}},
       1,
       "HPDTA image 1/1 '' : Intensity (Count) u16\nTime (ns): 0\nWavelength (nm): 0 1\n= 1 2\n"
       "! ScalingXType is 2, a table, but the file ends before it; the axis counts pixels\n! file holds 3 of 4 "
       "points\n"},
      {"no pixels", {{"a.img", Image(2, 0, 1, status, "")}}, 1, "refused: its image has 0 x 1 pixels"},
      {"compressed",
       {{"a.img", Image(1, 2, 2, status, pixels)}},
       1,
       "refused: its image is compressed, which kem does not read"},
      {"by position",
       {{"a.img", Image(0, 2, 1,
                        "HiPic,1.0,100,1.0,0,2,4,8,0,0,0,12-05-2016" + std::string(72, ',') +
                            " note\nStreak:Mode=Operate, Gain=12",
                        "\x05\x06")}},
       1,
       "HPDTA image 1/1 '' note: Intensity () u8\nY (): 0\nX (): 0 1\n= 5 6\n"},
  });
}

TEST_CASE("dataset: Cary containers") {
  const std::string texts = CaryText("white") + CaryText("Collection Time: 7/27/2017") +
                            CaryText("Saved as C:\\a.BSW") + CaryText("Parameter List : ") +
                            CaryText("X Mode      Nanometers   ") + CaryText("Y Mode   %R") +
                            CaryText("Start (nm)   2.00") + CaryText("<SBW (nm)> , 2.00");
  const std::string stores = CaryStore("TBaselineStore", 1, {2, 6}, CaryText("base")) +
                             CaryStore("TGraphStore", 0, {}, "") +
                             CaryStore("TContinuumStore", 2, {2, 6, 1, 5}, texts);
  const Files file = {{"a.BSW", Cary(stores)}};
  CheckAll({
      {"a scan before its baseline", file, 1,
       "Cary DSW 1/2 'white' white: %R () f32\nWavelength (Nanometers) stored: 2 1\n= 6 5\n! holds 1 more item\n"},
      {"too few points",
       {{"a.DSW", Cary(CaryStore("TContinuumStore", 9, {2, 6, 1, 5}, ""))}},
       1,
       "Cary DSW 1/1 '' :  () f32\nX () stored: 2 1\n= 6 5\n! holds 2 of 9 points\n"},
      {"nothing but a mark",
       {{"a.DSW", std::string("\x11Varian UV-VIS-NIR")}},
       1,
       "refused: ends within its header"},
  });
  CHECK(WithFiles(file, [](const std::string& path) { return Parameters(Open(path)); }) ==
        "[] Collection Time = 7/27/2017\n[] Saved as = C:\\a.BSW\n[Parameter List] X Mode = Nanometers\n[Parameter "
        "List] Y Mode = %R\n"
        "[Parameter List] Start (nm) = 2.00 {2 nm}\n[Parameter List] SBW (nm) = 2.00 {2 nm}\n");
}

TEST_CASE("dataset: columns of text") {
  const auto text = [](const std::string& content) { return Files{{"a.txt", content}}; };
  const std::string two = "columns of text 1/1 '' :  () f64\n () stored: 1.5 2.5\n= 10.5 20.5\n";
  CheckAll({
      {"blanks, no last line end", text(" 1.5 10.5 \n2.5   20.5"), 1, two},
      {"tabs", text("1.5\t10.5\r2.5\t20.5\r"), 1, two},
      {"commas", text("1.5,10.5\r\n2.5, 20.5\r\n"), 1, two},
      {"decimal commas between semicolons", text("1,5;10,5\n2,5;20,5\n"), 1, two},
      {"decimal commas between tabs and blanks", text("1,5\t10,5\n2,5 20,5\n"), 1, two},
      {"header, titles, units", text("# sample: x\nTemp\t300\nField [G],a (V),b\n1,2,3\n4,5,6\n"), 2,
       "columns of text 2/2 'b' : b () f64\nField (G) stored: 1 4\n= 3 6\n! holds 1 more item\n"},
      {"a lattice", text("x,y,z\n1,7,1\n2,7,2\n1,8,3\n2,8,4\n"), 1,
       "columns of text 1/1 '' : z () f64\ny () stored: 7 8\nx () stored: 1 2\n= 1 2 3 4\n"},
      {"a matrix", text("\"t, s (ns) \\ (nm)\",400,401\n0,1,2\n5,3,4\n"), 1,
       "columns of text 1/1 '' :  () f64\nt, s (ns) stored: 0 5\n (nm) stored: 400 401\n= 1 2 3 4\n"},
      {"rows of another length", text("1 2\n3 4\n5 6 7\n8\n\n 9  10 \r\n+1;\n"), 1,
       "columns of text 1/1 '' :  () f64\n () stored: 1 3 9\n= 2 4 10\n! rows of another length: 1\n"},
      {"XY prn with a third column",
       text("XY\nShift (1/cm)\nI\n\"Start : \"1\n\"Stop  : \"2\nname\n\n1 3 5\n2 4 6\n"), 2,
       "columns of text 2/2 '' name:  () f64\nShift (1/cm) stored: 1 2\n= 5 6\n! holds 1 more item\n"},
      {"XY prn", text("XY\nShift (1/cm)\nI\n\"Start : \"1\n\"Stop  : \"2\nname\n\n1 3\n2 4\n"), 1,
       "columns of text 1/1 'I' name: I () f64\nShift (1/cm) stored: 1 2\n= 3 4\n"},
      {"XY prn with empty lines for titles, and one point", text("XY\n\nI\n\n\nname\n\n1 3\n"), 1,
       "columns of text 1/1 'I' name: I () f64\n () stored: 1\n= 3\n"},
      {"NXY with empty lines", text("NXY 2 t (s)\n\nb\n\n\nname\n\n1 3 5\n2 4 6\n"), 2,
       "columns of text 2/2 'b' name: b () f64\nt (s) stored: 1 2\n= 5 6\n! holds 1 more item\n"},
      {"one row", text("a\n1 2\nb\n"), 1, "refused: unknown format"},
      {"a count beyond all counts", text("Version\n\"\n\n4e81\n"), 1, "refused: unknown format"},
      {"binary", text(std::string("1 2\n3 4\n\0\1", 10)), 1, "refused: unknown format"},
      {"nothing", text(""), 1, "refused: is empty"},
  });
}

TEST_CASE("dataset: formats whose record says all") {
  const auto at1 = [](const std::string& pixels) {
    Bytes cards;
    int k = 0;
    for (const char* card : {"SIMPLE = T", "", "", "", "NAXIS1 = 2", "NAXIS2 = 2", "Y0 = 7", "X0 = 5", "DY = 2",
                             "DX = 3", "Pixel (px)", "Line", "", "date"})
      cards.Text(card).PadTo(static_cast<std::size_t>(80 * ++k));
    return Files{{"a.dat", std::string(cards.PadTo(2880)) + pixels}};
  };
  const auto curve = [](const char* title, float value) {
    Bytes bytes;
    bytes.Text("Channel").PadTo(29).Text(title).PadTo(213).Put(char{0}).Put(char{2});
    return std::string(bytes.Put(std::uint16_t{2}).Put(value).Put(-value).Put(7).Put(8));
  };
  const std::string curves =
      std::string(Bytes().Text("\xFC\xFF\x04\x81").Put(std::uint16_t{2}).Put(std::uint16_t{2})) +
      curve("Counts (cps)", 1) + curve("Dark", 3);
  const auto p2d = [](const std::string& values) {
    return Files{{"a.p2d", "[P2D]\nTime (ns)\nI\n\nnote\n[X] DEFINITION\n0 2 1\n[Y]\n" + values}};
  };
  const std::string scan = "[DcDelay]\nStart= 0\nEnd= 1\nStep= 1\nLaserline= 532\nNrPoints= 2:4\n";
  const std::string line = "P2D text curve 1/1 '' : I () f32\nTime (ns): 0 1 2\n";
  CheckAll({
      {"AT1, X fastest", at1(std::string("\1\0\2\0\3\0\4\0", 8)), 1,
       "AT1 image 1/1 '' : Z () f32\nY (): 7 9\nX (): 5 8\n= 1 3 2 4\n"},
      {"AT1, cut", at1(std::string("\1\0\2\0\3\0", 6)), 1,
       "AT1 image 1/1 '' : Z () f32\nY (): 7 9\nX (): 5 8\n= 1 3 2 0\n! numbers that are missing and are 0: 1\n"},
      {"ICCD curves by name",
       {{"a.crv", curves}},
       2,
       "ICCD curve 2/2 'Dark' : Dark () f32\nChannel (): 0 1\n= 3 -3\n! holds 1 more item\n"},
      {"P2D", p2d("1 2 3\n"), 1, line + "= 1 2 3\n"},
      {"P2D, cut", p2d("1 2"), 1, line + "= 1 2 0\n! numbers that are missing and are 0: 1\n"},
      {"P2D, absurd",
       {{"a.p2d", "[P2D]\nX\nY\n\n[X] DEFINITION\n0 1 1e-30\n"}},
       1,
       "refused: announces 1000000015047466219876688855040 values, the file has 36 bytes"},
      {"NPico, the second signal",
       {{"scan", scan + "1 2 3 4\n5 6 7 8\n"}},
       2,
       "NPico scan 2/2 'second signal' : Intensity () f32\nDelay Time (ps): 0 1\n= 750 875\n! holds 1 more item\n"},
      {"NPico, columns that this kind of scan has not",
       {{"scan", "[Delay]\nStart= 0\nEnd= 1\nStep= 1\nNrPoints= 2:3\n"}},
       1,
       "NPico scan 1/1 '' : Intensity () f32\nDelay Time (ps): 0 1\n= 0 0\n! numbers that are missing and are 0: "
       "2\n"},
      {"CVT",
       {{"a.cvt", "ca 3\nField (G)\nI\n\"start :\" 1\n\"increment :\" 2\n\n5\n6\n"}},
       1,
       "CVT curve 1/1 '' : I () f32\nField (G): 1 3\n= 5 6\n! holds 2 points; its first line announces 3\n"},
      {"Hamamatsu, a code that is none",
       {{"a.img", "HPK8TMAP" + std::string(999, '\1')}},
       1,
       "refused: its sweep range has the code 16843009; those of the camera are 1 to 16"},
  });
}

TEST_CASE("dataset: foreign files are refused by name") {
  const std::string fits = std::string("SIMPLE  =                    T").append(130, ' ') + "NAXIS   = 0" +
                           std::string(69, ' ') + "END     ";
  CheckAll({
      {"git-lfs",
       {{"a.DSC", "version https://git-lfs.github.com/spec/v1\n"}},
       1,
       "refused: is a git-lfs pointer; the data themselves were not fetched"},
      {"Galactic",
       {{"a.spc", std::string("\0K", 2)}},
       1,
       "refused: is a Galactic SPC file, which kem does not read"},
      {"FITS", {{"a.fits", fits}}, 1, "refused: is a FITS file and not AT1; kem does not read it"},
  });
  CHECK(Refusal([] { Open("no/such/file"); }) == "no such file");
}

TEST_CASE("dataset: cut and damaged files are read or refused, by threads at once too") {
  const std::vector<Files> all = {
      BES3T({{"IKKF", "CPLX"}, {"YTYP", "IDX"}, {"YPTS", "2"}}, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}),
      Esp("DOS\nJSS 4112\nSSX 2\nSSY 1\n", std::string(16, '\1')),
      {{"a.dx", Dx("##FIRSTX=1\n##LASTX=4\n##NPOINTS=4\n##XYDATA=(X++(Y..Y))\n1A%KT\n3B\n")}},
      {{"a.img", Image(2, 2, 2, "[Scaling],ScalingXType=2,ScalingXScalingFile=\"#120,2\"", std::string(99, '\2'))}},
      {{"a.DSW", Cary(CaryStore("TContinuumStore", 2, {2, 6, 1, 5}, CaryText("white")))}},
      {{"a.csv", "Field (G),I\n1,2\n3,4\n"}},
      {{"a.p3d", "[P3D]\nX\nY\nZ\n[X] ARRAY 2\n1 2\n[Y] DEFINITION\n0 2 1\n[Z]\n1 2\n3 4\n"}},
      {{"a.dat", std::string(Bytes().Text("EG&G").PadTo(125).Put('\2').PadTo(2135).Put(char{0}).PadTo(2400))}},
      {{"a.m3d", std::string(Bytes().Text("Multi-3D").PadTo(32).Put('\2').PadTo(34).Put('\3').PadTo(1400))}}};
  const auto survive = [](const Files& files) {
    WithFiles(files, [](const std::string& path) {
      try {
        for (const ItemInfo& item : Items(path)) (void)Open(path, item.number);
      } catch (const Error& error) {
        CHECK(std::string_view(error.what()).size() > 3);
      } catch (const std::bad_alloc&) {
      }
    });
  };
  CAPTURE(kSeed);
  const auto run = [&](std::size_t k) {
    Rng rng(kSeed);
    for (std::size_t part = 0; part < all[k].size(); ++part)
      for (const std::size_t length : Prefixes(all[k][part].second.size(), 200)) {
        Files files = all[k];
        files[part].second.resize(length);
        survive(files);
        files[part].second = all[k][part].second;
        for (int n = 0; n < 3; ++n)
          files[part].second[rng() % files[part].second.size()] = static_cast<char>(rng());
        survive(files);
      }
  };
  std::vector<std::thread> threads;
  for (std::size_t k = 0; k < all.size(); ++k) threads.emplace_back(run, k);
  for (std::thread& thread : threads) thread.join();
}
