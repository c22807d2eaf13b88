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
  for (const std::string& file : {text, WithCrLf(text)}) {
    const Read back(file, &PrnType::ReadDX);
    CHECK(back.record.fileType == FileCvt);
    CHECK(back.record.active == 1);
    CHECK_SAME(XOf(back.record), (Floats{1, 2, 3}));
    CHECK_SAME(ValuesOf(back.record), (Floats{10, 20, 30}));
    CHECK(std::string(back.record.fileName) == "1234567");
    CHECK(std::string(back.record.xLabel).empty());
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
    LoadEveryPrefix("cut.jdx", c.text, 50);
  }
  const Read joined("##BLOCKS=2\n" + two, &PrnType::ReadDX);
  CHECK(std::string(joined.record.xLabel) == " nm");
  CHECK(std::string(joined.record.yLabel).empty());
  CHECK(std::string(joined.record.zLabel) == "part");
  // Without a number of blocks, units in front of the point count belong to the preamble.
  CHECK(std::string(Read(part, &PrnType::ReadDX).record.xLabel) == "X");
  const Read none("##BLOCKS=0\n" + two, &PrnType::ReadDX);
  CHECK(none.result == 1);
  CHECK(none.record.allocType == AllocNone);
  CHECK_THROWS_AS(Read("##BLOCKS=2000000000\n" + Block("1 2\n", 2), &PrnType::ReadDX), std::bad_alloc);
  CHECK_THROWS_AS(Read("##BLOCKS=1\n" + Block("1 2\n", -4), &PrnType::ReadDX), std::bad_alloc);
  CHECK_THROWS_AS(Read("##NPOINTS=99999999999\n##XYDATA\n1 2\n", &PrnType::ReadDX), std::bad_alloc);
  LoadDamaged("hurt.jdx", "##TITLE=t\n##BLOCKS=2\n" + two, 150);
}

TEST_CASE("jcamp: factors are told, not applied, and forgotten by the next load") {
  const TempFolder folder;
  const std::string more = "##YFACTOR=1\n" + Block("3 4\n", 1);
  const std::string text = "##TITLE=t\n##XFACTOR= 0.5\n##BLOCKS=2\n##YFACTOR=1E-3\n" + Block("1 2\n", 1) + more;
  CHECK_SAME(XOf(PrnType(folder.Write("a.jdx", text).c_str(), 0)), (Floats{1, 3}));
  CHECK_BITS(ReadXFactor, 0.5f);
  CHECK_BITS(ReadYFactor, 1e-3f);
  CHECK(!PrnType(folder.Write("b.p3d", "").c_str(), 0));
  CHECK_BITS(ReadXFactor, 1);
  CHECK_BITS(ReadYFactor, 1);
}

TEST_CASE("jcamp: real spectra") {
  if (!HaveSamples()) return;
  struct Case {
    std::string name;
    int points;
    float xStart;
    float xEnd;
    double sumX;
    double sumY;
    float yFactor;
  };
  for (const Case& c : {Case{"ethanol_ms", 12, 14, 47, 417, 2254, 1},
                        {"xyinc1_ir", 3601, 400, 4000, 7922200, 22914786, 1e-4f},
                        {"tannic_acid_raman", 1949, 100.595f, 2854.713f, 3294971.47412, 175319.053026, 1},
                        {"tetrachloroethylene_ms", 45, 12, 172, 4494, 55557, 1},
                        {"compound_2blocks", 4148, 3999.691f, 11995.21f, 33173434.0596, 1575642366, 1e-6f}}) {
    CAPTURE(c.name);
    const PrnType r((SampleFolder() + "/jcamp/" + c.name + ".jdx").c_str(), 0);
    REQUIRE(r.nY == c.points);
    CHECK_BITS(r.xArray[0], c.xStart);
    CHECK_BITS(r.xArray[r.nX - 1], c.xEnd);
    CHECK(Sum(XOf(r)) == doctest::Approx(c.sumX).epsilon(1e-11));
    CHECK(Sum(ValuesOf(r)) == doctest::Approx(c.sumY).epsilon(1e-11));
    CHECK_BITS(ReadXFactor, 1);
    CHECK_BITS(ReadYFactor, c.yFactor);
  }
}
