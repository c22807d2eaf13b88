#include "support/datasets.h"
#include "support/loads.h"

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

std::string Loaded(const Oma& o, int index = 0) { return Facts(Load("curve.dat", OmaFile(o), index)); }

}  // namespace

TEST_CASE("oma: curves of every value type, sorted by X") {
  const std::string first = "13 XY 3x3 x 1 3 1: 1 2 3 y 10 30 1 = 10 20 30 | setup|background|Uniform";
  const std::string second = "13 XY 3x3 x 1 3 1: 1 2 3 y 11 31 1 = 11 21 31 | setup|background|Uniform";
  for (const int type : {1, 2, 4, 18, 20, 52, 56})
    for (const int which : {0, 1, 2}) {
      CAPTURE(type);
      CHECK(Loaded({.type = type}, which) == (which < 2 ? first : second));
      CHECK(ReadNextFlag == (which == 2 ? 0 : 1));
    }
  CHECK_BITS(Load("curve.dat", OmaFile({.type = 3, .curves = 1})).yEnd, 0);  // an unknown type has no values
  for (const int which : {3, -1}) CHECK(Loaded({}, which) == "none");
}

TEST_CASE("oma: header, ranges and segments; without a calibration the axis counts pixels") {
  CHECK(Loaded({.active = 0}) ==
        "13 XY 3x3 x 1 3 1: 1 2 3 y 10 30 1 = 10 20 30 | setup|background INACTIVE|Uniform");
  CHECK(HeaderOf(Load("curve.dat", OmaFile())) ==
        "Contiguous|0|0|128|63|0|0|0|0|0|0|0|0|0|0|0|0|0|0|32|64|10|14|20|20|0|0|0|0|0|0|0|0|0|0|0|0|0|0|0|0|0|");
  const auto parameters = [](const std::string& path) { return Parameters(kem::Open(path)); };
  const std::string dataset = WithFiles({{"a", OmaFile()}}, parameters);
  CHECK(dataset.find("RawWord = 0, 0, 32, 64\n[] Range = 10, 14, 20, 20\n") != dataset.npos);
  // Slices stand behind as many entries as there are slices: four.
  CHECK(HeaderOf(Load("curve.dat", OmaFile({.scanMode = 1, .sliceMode = 1}))) ==
        "Random|0|0|128|63|0|0|0|0|0|0|0|0|0|0|0|0|0|0|32|64|10|14|20|20|3|4|0|0|0|1|1|100|102|104|108|110|101|103|"
        "105|109|111|");
  CHECK(Loaded({.calibration = 0}) == "13 XY 3x3 x 0 2 1: 0 1 2 y 10 30 1 = 30 10 20 | setup|background|Uniform");
  CHECK_BITS(Load("curve.dat", OmaFile({.calibration = 0.1f})).xArray[2], 0.1f <= 0.1 ? 2 : 3);
}

TEST_CASE("oma: what a short file lacks is 0") {
  CHECK(Facts(Load("curve.dat", OmaFile().substr(0, 2136 + 400 + 48 + 2))) ==
        "13 XY 3x3 x 0 0 1: 0 0 0 y 0 30 1 = 30 0 0 | setup|background|Uniform");
}
