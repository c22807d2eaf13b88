#include "support/formats.h"

using namespace kem::test;

namespace {

std::string Block(const std::string& points, int count) {
  return "##TITLE=part\n##XUNITS= nm\n##YUNITS=much too long\n##NPOINTS=" + std::to_string(count) +
         "\n##XYDATA=(XY..XY)\n" + points + "##END=\n";
}

}  // namespace

TEST_CASE("jcamp: a curve as text, with a running X and the name of its type") {
  PrnType curve = Curve(100, 0.1f, {3, 1, 2});
  std::snprintf(curve.fileName, kTextSize, "a.spc");
  for (const auto& [fileType, type, x, y] : {std::tuple{5, "Bruker ESR", "Gauss", "Intensity"},
                                             {0, "Cvt", "X", "Y"},
                                             {10, "", "X", "Y"},
                                             {-1, "", "X", "Y"}}) {
    curve.fileType = fileType;
    CHECK(Written(curve, &PrnType::WriteDX) ==
          std::string("##TITLE=a.spc\n##JCAMP-DX=4.24\n##DATA TYPE=") + type +
              "\n##ORIGIN=kem_file\n##OWNER=\n##DATE=\n##BLOCKS=1\n##$SLIT=0.0\n##XUNITS=" + x + "\n##YUNITS=" + y +
              "\n##XFACTOR=1.0\n##YFACTOR=1.0\n##DELTAX=0.1\n##FIRSTX=100\n##LASTX=100.2\n##NPOINTS=3\n##FIRSTY=1\n"
              "##XYDATA=(XY..XY)\n100  3\n100.1  1\n100.2  2\n##END=a.spc\n");
  }
  for (const PrnType& other : {PrnType(), PrnType(AllocZ)}) CHECK(Written(other, &PrnType::WriteDX).empty());
}

TEST_CASE("jcamp: what is written is read back, texts of up to seven characters included") {
  PrnType curve = Curve({3, 1, 2}, {30, 10, 20});
  std::snprintf(curve.fileName, kTextSize, "1234567");
  std::snprintf(curve.xLabel, kTextSize, "12345678");
  const std::string text = Written(curve, &PrnType::WriteDX);
  for (const auto& [file, yTitle] : {std::pair(text, "Y|"), {WithCrLf(text), "Y\r|"}}) {
    const Read back(file, &PrnType::ReadDX);
    CHECK(std::string(back.record.fileName) + ' ' + Facts(back.record) ==
          "1234567 0 XY 3x3 x 1 3 1: 1 2 3 y 10 30 1 = 10 20 30 | |" + std::string(yTitle));
  }
}

TEST_CASE("jcamp: blocks, point counts and what ends a header") {
  struct Case {
    std::string text;
    Floats x;
    Floats y;
  };
  const std::string two = Block("5 50\n6 60\n4 40\n", 3) + Block("2,20; 1,10; 3;30\n", 3);
  const std::string part = Block("1 2\n", 1);
  const std::string longLine = "##ANY=" + std::string(300, 'x') + "\n";
  for (const Case& c : {Case{"##TITLE=t\n##NBLOCKS=2\n" + two, {1, 2, 3, 4, 5, 6}, {10, 20, 30, 40, 50, 60}},
                        {"##BLOCKS= 1\n" + two, {4, 5, 6}, {40, 50, 60}},
                        {"##BLOCKS=3\n" + part, {0, 0, 1}, {0, 0, 2}},        // two blocks never come
                        {"##NPOINTS\n##XYDATA=\n1 2\n", {}, {}},              // no count, but an end
                        {"##BLOCKS=1\n##ANY=1\n1 2\n##NPOINTS=1\n", {}, {}},  // a line without "##" ends the header
                        {longLine + "##BLOCKS=1\n" + std::string(longLine).append(part), {1}, {2}},
                        {"##BLOCKS=1\n" + Block("2 1\n-1 3\n", 4), {-1, 0, 0, 2}, {3, 0, 0, 1}},
                        {"##BLOCKS=1\n" + Block("3 x 5 6\n", 2), {0, 3}, {0, 0}},
                        {"", {}, {}}}) {
    CAPTURE(c.text);
    const Read file(c.text, &PrnType::ReadDX);
    CHECK(file.result == 1);
    CHECK(file.record.nX == file.record.nY);
    CHECK_SAME(XOf(file.record), c.x);
    CHECK_SAME(ValuesOf(file.record), c.y);
  }
  CHECK(Facts(Read("##BLOCKS=2\n" + two, &PrnType::ReadDX).record) ==
        "0 XY 6x6 x 1 6 1: 1 2 3 4 5 6 y 10 60 1 = 10 20 30 40 50 60 |  nm||part");
  // Without a number of blocks, units in front of the point count belong to the preamble.
  CHECK(std::string(Read(part, &PrnType::ReadDX).record.xLabel) == "X");
  const Read none("##BLOCKS=0\n" + two, &PrnType::ReadDX);
  CHECK((none.result == 1 && !none.record));
  for (const std::string& absurd :
       {"##BLOCKS=2000000000\n" + Block("1 2\n", 2), "##BLOCKS=1\n" + Block("1 2\n", -4),
        std::string("##NPOINTS=99999999999\n##XYDATA\n1 2\n")})
    CHECK_THROWS_AS(Read(absurd, &PrnType::ReadDX), std::bad_alloc);
}

TEST_CASE("jcamp: factors are told, not applied, and forgotten by the next load") {
  const TempFolder folder;
  const std::string more = "##YFACTOR=1\n" + Block("3 4\n", 1);
  const std::string text = "##TITLE=t\n##XFACTOR= 0.5\n##BLOCKS=2\n##YFACTOR=1E-3\n" + Block("1 2\n", 1) + more;
  CHECK_SAME(XOf(PrnType(folder.Write("a.jdx", text).c_str(), 0)), (Floats{1, 3}));
  CHECK(Numbers(std::array{ReadXFactor, ReadYFactor}) == " 0.5 0.00100000005");
  CHECK(!PrnType(folder.Write("b.p3d", "").c_str(), 0));
  CHECK(Numbers(std::array{ReadXFactor, ReadYFactor}) == " 1 1");
}
