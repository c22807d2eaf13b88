#include "load/block.h"

#include <cstring>
#include <sstream>

#include "support/support.h"

using namespace kem::load;
using namespace kem::test;

namespace {

// The literal form: value number j * nX + i, each on its own.
float ValueAt(const std::string& bytes, Wire wire, Order order, std::size_t index) {
  std::string value = index * SizeOf(wire) < bytes.size() ? bytes.substr(index * SizeOf(wire), SizeOf(wire)) : "";
  if (value.size() < SizeOf(wire)) return 0;
  if ((order == Order::Little) != (std::endian::native == std::endian::little))
    value = std::string(value.rbegin(), value.rend());
  const auto as = [&value](auto number) {
    std::memcpy(&number, value.data(), sizeof number);
    return static_cast<float>(number);
  };
  switch (wire) {
    case Wire::S8:
      return as(std::int8_t{});
    case Wire::U8:
      return as(std::uint8_t{});
    case Wire::S16:
      return as(std::int16_t{});
    case Wire::U16:
      return as(std::uint16_t{});
    case Wire::S32:
      return as(std::int32_t{});
    case Wire::U32:
      return as(std::uint32_t{});
    case Wire::F32:
      return as(float{});
    default:
      return as(double{});
  }
}

}  // namespace

TEST_CASE("block: lines become rows bit for bit, whatever the size, and what the file lacks is 0") {
  constexpr Wire kWires[] = {Wire::S8, Wire::U8, Wire::S16, Wire::U16, Wire::S32, Wire::U32, Wire::F32, Wire::F64};
  Rng rng(kSeed);
  CAPTURE(kSeed);
  for (int round = 0; round < 400; ++round) {
    const Wire wire = kWires[round % 8];
    const Order order = rng() % 2 ? Order::Little : Order::Big;
    const bool large = round % 50 == 0;  // more than one read
    const int nX = static_cast<int>(large ? 900 + rng() % 99 : 1 + rng() % 140);
    const int nY = static_cast<int>(large ? 150 + rng() % 50 : 1 + rng() % 40);
    const std::size_t step = 1 + rng() % 2;
    std::string bytes(static_cast<std::size_t>(nX) * static_cast<std::size_t>(nY) * step * SizeOf(wire), '\0');
    for (char& c : bytes) c = static_cast<char>(rng());
    if (rng() % 3 == 0) bytes.resize(rng() % (bytes.size() + 1));
    std::vector<std::vector<float>> rows(static_cast<std::size_t>(nX),
                                         std::vector<float>(static_cast<std::size_t>(nY), -1));
    std::vector<float*> table;
    for (auto& row : rows) table.push_back(row.data());
    std::istringstream in(bytes);
    ReadLines(in, wire, order, table.data(), nX, nY, step);
    int wrong = 0;
    for (std::size_t i = 0; i < rows.size(); ++i)
      for (std::size_t j = 0; j < rows[i].size(); ++j)
        wrong += !SameBits(rows[i][j], ValueAt(bytes, wire, order, (j * rows.size() + i) * step));
    CAPTURE(round);
    CHECK(wrong == 0);
  }
}
