#include "support/support.h"

using namespace kem::test;

namespace {

constexpr const char* kTexts[26] = {"nm", "Abs   units", "", "", "", "", "", "", "", "ten", "eleven", "", "a ",
                                    " b", "  c  ",       "", "", "", "", "", "", "", "",    "",       "", "last"};

Bytes Spectrum(float stop, std::initializer_list<float> pairs) {
  Bytes bytes;
  bytes.Text("\x11Varian UV-VIS-NIR").PadTo(93).Put(stop).Put(1.0f).PadTo(1113);
  for (const float v : pairs) bytes.Put(v);
  return bytes;
}

std::string WithTexts(Bytes bytes) {
  for (const std::string_view text : kTexts)
    bytes.Put(static_cast<std::uint8_t>(text.size())).Text("xyz").Text(text);
  return bytes;
}

PrnType Loaded(const std::string& bytes) { return {TempFolder().Write("scan.dsw", bytes).c_str(), 0}; }

}  // namespace

TEST_CASE("cary_dsw: the pair with the stop value ends the curve, texts follow") {
  const std::string bytes = WithTexts(Spectrum(798, {800, 0.1f, 799, 0.2f, 798, 0.3f}));
  const PrnType r = Loaded(bytes);
  REQUIRE(r.allocType == AllocXY);
  CHECK(r.fileType == FileCaryDSW);
  CHECK(r.active == 1);
  REQUIRE(r.nY == 2);
  CHECK(r.nX == 2);
  CHECK_BITS(r.yArray[1], 0.2f);
  CHECK_BITS(r.xStart, 799);
  CHECK_BITS(r.xEnd, 800);
  char kept[kTextSize * 8] = {};
  r.CommentBlock(kept, sizeof kept);
  CHECK(std::string(kept) == "nm\nAbs units\na \n c \n b\nlast\n");
  CHECK(std::string(r.dsw.dswText10) + r.dsw.dswText11 == "teneleven");
  LoadEveryPrefix("cut.dsw", bytes, 60);
  LoadDamaged("hurt.dsw", bytes, 100);
}

TEST_CASE("cary_dsw: long curves, curves without an end, long texts") {
  Bytes pairs = Spectrum(-1, {});
  for (int k = 0; k < 1500; ++k) pairs.Put(static_cast<float>(k)).Put(static_cast<float>(2 * k));
  const PrnType endless = Loaded(Bytes(pairs).Put(-1.0f));  // half a pair
  REQUIRE(endless.nY == 1500);
  CHECK_BITS(endless.yArray[1499], 2998);
  const PrnType ended = Loaded(WithTexts(pairs.Put(-1.0f).Put(0.0f)));
  CHECK(ended.nY == 1500);
  CHECK(std::string(ended.dsw.dswText26) == "last");

  Bytes texts = Spectrum(1, {1, 1});
  texts.Text("\xc8xyz").Text(std::string(200, 'l')).Text(std::string("\3xyz\0bc", 7));
  const PrnType cut = Loaded(texts.Text(std::string(std::size_t{7} * 4, '\0')).Text("\3xyzten"));
  CHECK(cut.nY == 0);
  CHECK(std::string(cut.dsw.dswXTitle) == std::string(131, 'l'));
  CHECK(std::string(cut.dsw.dswYTitle).empty());
  CHECK(std::string(cut.dsw.dswText10) == "ten");
}

TEST_CASE("cary_dsw: a real spectrum, recognised by its content") {
  if (!HaveSamples()) return;
  const PrnType r((SampleFolder() + "/cary_dsw/R_white_nm.BSW").c_str(), 0);
  REQUIRE(r.nY == 1600);
  CHECK_BITS(r.xArray[0], 1800);
  CHECK_BITS(r.xArray[1599], 201);
  CHECK(Sum({r.yArray, 1600}) == doctest::Approx(54443.265852));
  CHECK(std::string(r.dsw.dswYTitle) == "Collection Time: 7/27/2017 11:45:26 AM");
}
