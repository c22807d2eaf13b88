#include "load/number_text.h"

#include <limits>
#include <sstream>

#include "support/support.h"

using namespace kem::test;
using kem::load::AppendNumber;

namespace {

// Counts the values whose text is not that of a stream, and shows the first.
class Comparison {
 public:
  void Add(float value) {
    stream_.str("");
    stream_ << value;
    text_.clear();
    AppendNumber(text_, value);
    if (text_ != stream_.str() && wrong_++ == 0) MESSAGE(stream_.str() << " was written " << text_);
  }

  // With its negative, and the floats around both.
  void AddAround(float value) {
    const float most = std::numeric_limits<float>::infinity();
    for (const float v : {std::nextafter(value, -most), value, std::nextafter(value, most)}) {
      Add(v);
      Add(-v);
    }
  }

  int Wrong() const { return wrong_; }

 private:
  std::ostringstream stream_;
  std::string text_;
  int wrong_ = 0;
};

}  // namespace

TEST_CASE("number text: the text of any float is that of a stream") {
  Comparison compare;
  for (const unsigned bits : {0x00000000u, 0x80000000u, 0x7f800000u, 0xff800000u, 0x7fc00000u, 0xffc00000u,
                              0x00000001u, 0x807fffffu, 0x7f7fffffu})
    compare.Add(std::bit_cast<float>(bits));
  // Powers of ten and of two, where the number of digits or the notation changes.
  for (int k = -45; k <= 38; ++k) compare.AddAround(static_cast<float>(std::pow(10.0, k)));
  for (int k = -149; k <= 127; ++k) compare.AddAround(std::ldexp(1.0f, k));
  Rng rng(kSeed);
  CAPTURE(kSeed);
  for (int k = 0; k < 300000; ++k) compare.Add(std::bit_cast<float>(static_cast<std::uint32_t>(rng())));
  CHECK(compare.Wrong() == 0);
}

TEST_CASE("number text: values halfway between two texts") {
  Comparison compare;
  Rng rng(kSeed);
  CAPTURE(kSeed);
  for (int k = 0; k < 100000; ++k) {
    const float sixDigits = 100000 + static_cast<float>(rng() % 900000);
    compare.AddAround(sixDigits + 0.5f);
    compare.AddAround(std::ldexp(sixDigits * 2 + 1, -static_cast<int>(rng() % 40)));
    compare.AddAround((sixDigits * 10 + 5) * static_cast<float>(std::pow(10.0, rng() % 8)));
  }
  CHECK(compare.Wrong() == 0);
}

TEST_CASE("number text: a file that cannot be stored is told by the flag, and by the next one not") {
#ifdef __linux__
  kem::load::OutputFile("/dev/full", {}) << 1.5f;
  CHECK(WriteFailedFlag == 1);
#endif
  const TempFolder folder;
  const std::string path = folder.Path("out");
  kem::load::OutputFile(path.c_str(), {}) << "a" << ' ' << -3 << 2.5f;
  CHECK(WriteFailedFlag == 0);
  CHECK(ReadBytes(path) == "a -32.5");
}
