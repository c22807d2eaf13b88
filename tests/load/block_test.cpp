#include "load/block.h"

#include <sstream>

#include "support/support.h"

using namespace kem::load;
using namespace kem::test;

namespace {

// The literal form: one value on its own, 0 when the bytes end inside it.
template <class Number>
float ValueAt(std::string_view bytes, Order order, std::size_t index) {
  if (bytes.size() < (index + 1) * sizeof(Number)) return 0;
  std::string value(bytes.substr(index * sizeof(Number), sizeof(Number)));
  if ((order == Order::Little) != (std::endian::native == std::endian::little))
    value = {value.rbegin(), value.rend()};
  Number number;
  std::copy(value.begin(), value.end(), reinterpret_cast<char*>(&number));
  return static_cast<float>(number);
}

}  // namespace

TEST_CASE_TEMPLATE("block: lines become rows bit for bit, whatever the size, and what the file lacks is 0", Number,
                   std::int8_t, std::uint8_t, std::int16_t, std::uint16_t, std::int32_t, std::uint32_t, float,
                   double) {
  constexpr bool kSigned = std::is_signed_v<Number>;
  constexpr Wire kWholes[] = {Wire::U8, Wire::S8, Wire::U16, Wire::S16, Wire::U32, Wire::S32};
  constexpr Wire kWire = std::is_same_v<Number, double>  ? Wire::F64
                         : std::is_same_v<Number, float> ? Wire::F32
                                                         : kWholes[(sizeof(Number) / 2 * 2 + kSigned) % 6];
  Rng rng(kSeed);
  CAPTURE(kSeed);
  for (int round = 0; round < 50; ++round) {
    const Order order = rng() % 2 ? Order::Little : Order::Big;
    const std::size_t most = round == 0 ? 900 : 100;  // 900: more than one read
    const std::size_t nX = 1 + rng() % most, nY = 1 + rng() % most, step = 1 + rng() % 2;
    std::string bytes(nX * nY * step * sizeof(Number), '\0');
    for (char& c : bytes) c = static_cast<char>(rng());
    if (rng() % 3 == 0) bytes.resize(rng() % bytes.size());
    std::vector<float> values(nX * nY);
    std::vector<float*> rows(nX);
    for (std::size_t i = 0; i < nX; ++i) rows[i] = values.data() + i * nY;
    std::istringstream in(bytes);
    ReadLines(in, kWire, order, rows.data(), static_cast<int>(nX), static_cast<int>(nY), step);
    int wrong = 0;
    for (std::size_t i = 0; i < nX; ++i)
      for (std::size_t j = 0; j < nY; ++j)
        wrong += !SameBits(rows[i][j], ValueAt<Number>(bytes, order, (j * nX + i) * step));
    CAPTURE(round);
    CHECK(wrong == 0);
  }
}
