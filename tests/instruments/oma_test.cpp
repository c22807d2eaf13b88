#include "support/support.h"

using namespace kem::test;

namespace {

struct Oma {
  float calibration = 1;
  std::uint16_t scanMode = 0, sliceMode = 0, active = 1;
  int type = 2;
  int curves = 2;
};

template <class Value>
void PutValues(Bytes& bytes, int curve) {
  for (const int v : {30, 10, 20}) bytes.Put(static_cast<Value>(v + curve));
}

// Three points a curve, the X values 3, 1, 2.
std::string OmaFile(const Oma& o = {}) {
  using Word = std::uint16_t;
  Bytes bytes;
  bytes.Text("EG&G").PadTo(44).Text("setup").PadTo(125).Put(Word(o.curves)).PadTo(308).Put(o.calibration);
  bytes.PadTo(359).Text("background").PadTo(2135).Put(char{1}).Put(Word(400)).PadTo(2188).Put(2.5f).PadTo(2230);
  bytes.Put(Word(10)).Put(Word(5)).Put(Word(20)).Put(Word(1)).PadTo(2252).Put(o.scanMode).Put(o.sliceMode);
  bytes.PadTo(2260).Put(o.active).Put(Word(3)).Put(Word(4)).PadTo(2270);
  for (Word k = 0; k < 20; ++k) bytes.Put(Word(100 + k));
  std::size_t at = 2136 + 400;
  bytes.PadTo(at);
  for (int c = 0; c < o.curves; ++c) {
    bytes.Put(Word(3)).PadTo(at + 8).Put(Word(o.type)).PadTo(at + 48);
    if (o.type == 1) PutValues<std::uint8_t>(bytes, c);
    if (o.type == 2 || o.type == 18) PutValues<std::uint16_t>(bytes, c);
    if (o.type == 4 || o.type == 20) PutValues<std::int32_t>(bytes, c);
    if (o.type == 52) PutValues<float>(bytes, c);
    if (o.type == 56) PutValues<double>(bytes, c);
    bytes.Put(3.0f).Put(1.0f).Put(2.0f);
    at = std::string(bytes).size();
  }
  return bytes;
}

PrnType Load(const std::string& bytes, int index = 0) {
  const TempFolder folder;
  return PrnType(folder.Write("curve.dat", bytes).c_str(), index);
}

}  // namespace

TEST_CASE("oma: curves of every value type, sorted by X") {
  for (const int type : {1, 2, 4, 18, 20, 52, 56}) {
    for (const int which : {0, 1, 2}) {
      CAPTURE(type);
      CAPTURE(which);
      const PrnType r = Load(OmaFile({.type = type}), which);
      REQUIRE(r.nY == 3);
      CHECK(r.fileType == FileOMA);
      CHECK(r.allocType == AllocXY);
      CHECK_BITS(r.xArray[0], 1);
      CHECK_BITS(r.yArray[0], static_cast<float>(which == 2 ? 11 : 10));
      CHECK_BITS(r.yArray[2], static_cast<float>(which == 2 ? 31 : 30));
      CHECK(ReadNextFlag == (which == 2 ? 0 : 1));
    }
  }
  CHECK_BITS(Load(OmaFile({.type = 3, .curves = 1})).yEnd, 0);  // an unknown type has no values
  CHECK(!Load(OmaFile(), 3));
  CHECK(!Load(OmaFile(), -1));
}

TEST_CASE("oma: header, ranges and segments") {
  const PrnType plain = Load(OmaFile({.active = 0}));
  CHECK(std::string(plain.xLabel) == "setup");
  CHECK(std::string(plain.yLabel) == "background INACTIVE");
  CHECK(std::string(plain.zLabel) == "Uniform");
  CHECK(std::string(plain.oma.omaScanMode) == "Contiguous");
  CHECK(plain.oma.omaTrackCount == 0);
  const int ranges[] = {10, 14, 20, 20};
  for (int k = 0; k < 4; ++k) CHECK(plain.oma.omaRange[k] == ranges[k]);
  const PrnType both = Load(OmaFile({.scanMode = 1, .sliceMode = 1}));
  CHECK(std::string(both.yLabel) == "background");
  const int isSlice[] = {0, 0, 0, 1, 1};
  const int first[] = {100, 102, 104, 108, 110};  // slices behind as many entries as there are slices: four
  for (int k = 0; k < 5; ++k) {
    CHECK(both.oma.omaSegmentIsSlice[k] == isSlice[k]);
    CHECK(both.oma.omaSegmentFirst[k] == first[k]);
    CHECK(both.oma.omaSegmentWidth[k] == first[k] + 1);
  }
}

TEST_CASE("oma: without a calibration the axis counts pixels") {
  const PrnType pixels = Load(OmaFile({.calibration = 0.1f}));
  CHECK(pixels.nY == 3);
  CHECK_BITS(pixels.xArray[2], 0.1f <= 0.1 ? 2 : 3);
  CHECK_BITS(Load(OmaFile({.calibration = 0})).yArray[0], 30);
}

TEST_CASE("oma: short and damaged files") {
  const std::string whole = OmaFile();
  const PrnType cut = Load(whole.substr(0, 2136 + 400 + 48 + 2));
  CHECK(cut.nY == 3);
  CHECK_BITS(cut.yEnd, 30);
  LoadEveryPrefix("cut.dat", whole, 8);
  LoadDamaged("hurt.dat", whole, 300);
}
