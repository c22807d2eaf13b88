#ifdef _WIN32
#include <windows.h>
#endif

#include <cstring>

#include "host/detect.h"
#include "support/loads.h"

using namespace kem::host;
using namespace kem::test;

namespace {

std::string FormatByContent(const std::string& text) {
  const TempFolder folder;
  const char* name = KemFormatName(folder.Write("file", text).c_str());
  return name ? name : "";
}

const std::string kXYFile = "XY\nx\ny\n1\n2\nname\n\n1 2\n3 4\n";
const std::string kNXYFile = "NXY 3 t\na\nb\nc\n1\n2\nname\n3\n1 10 20 30\n";

}  // namespace

TEST_CASE("detection: the first text that occurs decides") {
  const std::pair<std::string, std::string> cases[] = {
      {"first XY: points", "XY, NXY or JCAMP-DX"},  // XY comes before XY:
      {"##TITLE and Version", "XY, NXY or JCAMP-DX"},
      {"Version [P3D]", "Dilor Raman"},
      {"[Delay] [Monochromator]", "NPico scan"},
      {"ca       5", "CVT curve"},
      {"IMab", "ICCD or HPDTA image"},
      {"SIMPLE  =", "AT1 image"},
      {";\"HiPic 5.0", "HPDTA profile"},
      {"nothing of note", ""},
      {std::string(129, '.') + "XY", "XY, NXY or JCAMP-DX"},  // ends at byte 131
      {std::string(130, '.') + "XY", ""},
      {std::string("a\0XY", 4), ""}};  // a NUL ends the text
  for (const auto& c : cases) {
    CAPTURE(c.first);
    CHECK(FormatByContent(c.first) == c.second);
  }
  CHECK(FirstHit(NameTests(), "a.P3D") == nullptr);
  CHECK(std::string(FirstHit(NameTests(), "a.spc.cvt")->format->name) == "CVT curve");
}

TEST_CASE("loading: file names, numbers and indices") {
  const TempFolder folder;
  const std::string nxy = folder.Write("name.ext", kNXYFile);
  const std::string stem = nxy.substr(0, nxy.size() - 4);
  CHECK(std::string(PrnType(nxy.c_str(), 2).fileName) == stem + "_02.ext");
  CHECK(std::string(PrnType(nxy.c_str(), 0).fileName) == stem + "_01.ext");
  CHECK(!PrnType(nxy.c_str(), 4));
  const std::string xy = folder.Write("データ µ.xyz", kXYFile);
  CHECK(std::string(PrnType(xy.c_str(), 0).fileName) == xy);
  // the name may be the record's own, which a reader overwrites
  PrnType own;
  std::strcpy(own.fileName,
              folder.Write("own.dx", "##TITLE=other\n##BLOCKS=1\n##NPOINTS=1\n##XYDATA=(XY..XY)\n1 2\n").c_str());
  own.ReadFile(own.fileName, 0);
  CHECK((own.nY == 1 && own.fileName == folder.Path("own.dx")));
  // -1 does not look into the file: the header of an NXY file becomes that of an XY file
  const PrnType unsniffed(nxy.c_str(), -1);
  CHECK((unsniffed.fileType == FileXY && unsniffed.fileName == nxy));
}

TEST_CASE("loading: a reader that is chosen by name and refuses leaves the content its turn") {
  CHECK(Load("a.crv", kXYFile).nY == 2);
  CHECK(!Load("a.crv", "nothing"));
  CHECK(!Load("lonely.par", kXYFile));  // a missing partner file ends the load at once
  CHECK(Load({{"pair.dhd", kXYFile}, {"pair.dat", ""}}).fileType == FileXY);
}

TEST_CASE("loading: what a file announces and does not hold is 0, unless it is absurd or negative") {
  const TempFolder folder;
  const auto image = [](int nY, int nX) {
    std::string cards = "SIMPLE" + std::string(314, ' ');
    for (const int count : {nY, nX})
      (cards += "K = " + std::to_string(count)).resize(cards.size() / 80 * 80 + 80, ' ');
    return cards;
  };
  const auto scan = [](const std::string& points) { return "[Delay]\nIntTime= 1\nNrPoints= " + points + "\n7\n"; };
  constexpr int kMost = 64 << 20;
  struct Case {
    std::string bytes;
    int nX, nY;  // -1 where there is no record
    double announced;
  };
  for (const Case& c : {Case{image(0, 2147483647), 0, 0, 0},
                        {image(2147483647, 0), 0, 0, 0},
                        {image(8192, 8192), 8192, 8192, kMost},
                        {image(8192, 8194), -1, -1, 8192.0 * 8194},
                        {image(1, 8 << 20), -1, -1, 8 << 20},  // rows take memory of their own
                        {image(-2, 3), -1, -1, 0},
                        {scan(std::to_string(kMost)), kMost, kMost, kMost},
                        {scan("2147483646"), -1, -1, 2147483646},
                        {scan("1:3"), 1, 1, 1},
                        {"Version\n\n\n-3\n", -1, -1, 0}}) {
    const std::string name = folder.Write("file", c.bytes);
    PrnType record;
    try {
      record.ReadFile(name.c_str(), 0);
    } catch (const std::bad_alloc&) {
      CHECK(c.nX == -1);
    }
    CAPTURE(c.bytes.substr(0, 80));
    CHECK(!record == (c.nX == -1));
    CHECK(ReadAnnounced == c.announced);
    if (c.announced > 0) CHECK(ReadFileBytes == static_cast<double>(c.bytes.size()));
    if (!!record) CHECK((record.nX == c.nX && record.nY == c.nY && record.zMax == 0));
    if (record.HasY()) CHECK(record.yStart == 0);
  }
}

TEST_CASE("loading: what is no file, or has no room for its name, is a failed load") {
  const TempFolder folder;
  for (const std::string& name : {folder.Path("missing.txt"), folder.Path(""), folder.Path(std::string(140, 'n')),
                                  std::string(200, 'n'), std::string()}) {
    PrnType record;
    record.xStep = 3;
    record.ReadFile(name.c_str(), 0);
    CHECK((!record && record.xStep == 0 && record.fileName[0] == '\0'));
    CHECK(KemFormatName(name.c_str()) == nullptr);
  }
}

#ifndef _WIN32  // whose file names do not tell case
TEST_CASE("loading: of the files that may belong to another it is the one spelled like it") {
  const std::string descriptor =  // or parameter file
      "#DESC\nBSEQ BIG\nIKKF REAL\nXTYP IDX\nYTYP NODATA\nZTYP NODATA\nIRFMT I\nXPTS 1\n#SPL\n";
  const std::vector<std::string> cases[] = {
      // the file, its other one, and some that are not meant
      {"a1.par", "a1.spc", "a1.SPC", "A1.SPC"}, {"a1.PAR", "a1.SPC", "A1.SPC", "A1.spc"},
      {"a1.par", "a1.sPc", "A1.spc"},           {"a1.par", "A1.Spc", "A1.sPC"},
      {"a1.dsc", "a1.dta", "A1.dta", "A1.dsc"}, {"a1.Dsc", "a1.Dta", "a1.dta", "A1.DSC"},
      {"a1.dsc", "a1.DTA", "a1.dta", "A1.DTA"}, {"folder/a1.dsc", "folder/a1.Dta", "folder/A1.Dta", "a1.DTA"},
  };
  for (const auto& names : cases) {
    CAPTURE(names[1]);
    const TempFolder folder;
    std::filesystem::create_directory(folder.Path("folder"));
    const std::string file = folder.Write(names[0], descriptor);
    for (std::size_t k = 1; k < names.size(); ++k)
      folder.Write(names[k], Bytes(std::endian::big).Put(static_cast<int>(k)));
    const PrnType record(file.c_str(), 0);
    REQUIRE(record.nY == 1);
    CHECK(record.yArray[0] == 1);
  }
}
#else
TEST_CASE("loading: a name that is not UTF-8 is one in the code page") {
  const TempFolder folder;
  folder.Write("é.xyz", kXYFile);
  if (GetACP() == 1252) CHECK(PrnType((folder.Path("") + "\xe9.xyz").c_str(), 0).nY == 2);
}
#endif
