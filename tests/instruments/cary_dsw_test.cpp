#include "support/loads.h"

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

}  // namespace

TEST_CASE("cary_dsw: the pair with the stop value ends the curve, texts follow") {
  const std::string bytes = WithTexts(Spectrum(798, {800, 0.1f, 799, 0.2f, 798, 0.3f}));
  CHECK(Facts(Load("a.dsw", bytes)) ==
        "16 XY 2x2 x 799 800 1: 800 799 y 0.100000001 0.200000003 1 = 0.100000001 0.200000003 | nm|Abs units|");
  CHECK(HeaderOf(Load("a.dsw", bytes)) == "nm|Abs units|ten|eleven|a | b| c |last|");
}

TEST_CASE("cary_dsw: long curves, curves without an end, long texts") {
  Bytes pairs = Spectrum(-1, {});
  for (int k = 0; k < 1500; ++k) pairs.Put(static_cast<float>(k)).Put(static_cast<float>(2 * k));
  const PrnType endless = Load("a.dsw", Bytes(pairs).Put(-1.0f));  // half a pair
  CHECK(Facts(endless) ==
        "16 XY 1500x1500 x 0 1499 1: 0 1 2 3 4 5 6 7 ... y 0 2998 1 = 0 2 4 6 8 10 12 14 ... | ||");
  CHECK(HeaderOf(Load("a.dsw", WithTexts(pairs.Put(-1.0f).Put(0.0f)))) ==
        HeaderOf(Load("a.dsw", WithTexts(Spectrum(1, {1, 1})))));

  Bytes texts = Spectrum(1, {1, 1});
  texts.Text("\xc8xyz").Text(std::string(200, 'l')).Text(std::string("\3xyz\0bc", 7));
  const PrnType cut = Load("a.dsw", texts.Text(std::string(std::size_t{7} * 4, '\0')).Text("\3xyzten"));
  CHECK(cut.nY == 0);
  CHECK(HeaderOf(cut) == std::string(131, 'l') + "||ten||||||");
}
