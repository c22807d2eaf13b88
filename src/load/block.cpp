#include "load/block.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "portable.h"
#include "record/findings.h"

namespace kem::load {
namespace {

// The unsigned integer that has the size of a stored value.
template <class Stored>
using Bits =
    std::conditional_t<sizeof(Stored) == 1, std::uint8_t,
                       std::conditional_t<sizeof(Stored) == 2, std::uint16_t,
                                          std::conditional_t<sizeof(Stored) == 4, std::uint32_t, std::uint64_t>>>;

template <class Stored, Order order>
Stored Load(const unsigned char* bytes) {
  std::uint64_t bits = 0;
  constexpr std::size_t size = sizeof(Stored);
  for (std::size_t k = 0; k < size; ++k)
    bits |= std::uint64_t{bytes[order == Order::Little ? k : size - 1 - k]} << (8 * k);
  return portable::bit_cast<Stored>(static_cast<Bits<Stored>>(bits));
}

template <class Stored, Order order>
float ValueOf(Bits<Stored> bits) {
  if constexpr ((order == Order::Big) == (std::endian::native == std::endian::little)) {
    Bits<Stored> swapped = 0;
    for (std::size_t k = 0; k < sizeof bits; ++k)
      swapped = static_cast<Bits<Stored>>(swapped | ((bits >> (8 * k)) & 0xff) << (8 * (sizeof bits - 1 - k)));
    bits = swapped;
  }
  return static_cast<float>(portable::bit_cast<Stored>(bits));
}

// Calls a generic function with a value of the type that a wire type stands for.
template <class Function>
auto WithType(Wire wire, Function function) {
  switch (wire) {
    case Wire::S8:
      return function(std::int8_t{});
    case Wire::U8:
      return function(std::uint8_t{});
    case Wire::S16:
      return function(std::int16_t{});
    case Wire::U16:
      return function(std::uint16_t{});
    case Wire::S32:
      return function(std::int32_t{});
    case Wire::U32:
      return function(std::uint32_t{});
    case Wire::F64:
      return function(double{});
    default:
      return function(float{});
  }
}

template <class Stored, Order order>
void DecodeAs(const unsigned char* bytes, std::size_t stride, std::span<float> values) {
  for (std::size_t k = 0; k < values.size(); ++k)
    values[k] = static_cast<float>(Load<Stored, order>(bytes + k * stride));
}

// A read that ends early is no failure here: the caller sees by the count what there was.
std::size_t ReadBytes(std::istream& in, unsigned char* to, std::size_t size) {
  if (in.fail()) return 0;
  in.read(reinterpret_cast<char*>(to), static_cast<std::streamsize>(size));
  const auto count = static_cast<std::size_t>(in.gcount());
  if (!in.bad()) in.clear();
  return count;
}

constexpr std::size_t kBand = 16;

// Stores a band of lines into the rows of a grid from column j on. Values change places as they are in the file,
// a few columns at a time, and become floats on their way to their row: both loops run in vectors where the number
// of lines is a constant.
template <class Stored, Order order>
void StoreBand(const Bits<Stored>* lines, std::size_t width, std::size_t step, float* const* rows, std::size_t j,
               auto count) {
  constexpr std::size_t kColumns = 64;
  std::array<Bits<Stored>, kColumns * kBand> turned;
  for (std::size_t first = 0; first < width; first += kColumns) {
    const std::size_t columns = std::min(kColumns, width - first);
    const Bits<Stored>* from = lines + first * step;
    for (std::size_t i = 0; i < columns; ++i)
      for (std::size_t k = 0; k < count; ++k) turned[i * kBand + k] = from[k * width * step + i * step];
    for (std::size_t i = 0; i < columns; ++i) {
      float* row = rows[first + i] + j;
      const Bits<Stored>* values = turned.data() + i * kBand;
      for (std::size_t k = 0; k < count; ++k) row[k] = ValueOf<Stored, order>(values[k]);
    }
  }
}

// Lines of which the file holds a value, at most as many as the image has.
std::size_t LinesHeld(std::istream& in, std::size_t lineBytes, std::size_t height) {
  const std::size_t left = BytesLeft(in);
  return std::min(height, left / lineBytes + (left % lineBytes != 0 ? 1 : 0));
}

template <class Stored, Order order>
void ReadLinesAs(std::istream& in, float* const* rows, std::size_t width, std::size_t height, std::size_t step) {
  constexpr std::size_t kChunk = std::size_t{1} << 17;
  const std::size_t lineLength = width * step;
  const std::size_t held = LinesHeld(in, lineLength * sizeof(Stored), height);
  const std::size_t bands = std::max<std::size_t>(1, kChunk / (lineLength * kBand * sizeof(Stored)));
  const std::size_t most = std::min(bands * kBand, held);
  std::vector<Bits<Stored>> lines(lineLength * most);
  std::size_t read = 0;
  for (std::size_t j = 0; j < held; j += most) {
    const std::size_t count = std::min(most, held - j);
    auto* bytes = reinterpret_cast<unsigned char*>(lines.data());
    const std::size_t values = ReadBytes(in, bytes, count * lineLength * sizeof(Stored)) / sizeof(Stored);
    std::fill(lines.begin() + static_cast<std::ptrdiff_t>(values), lines.end(), Bits<Stored>{0});
    read += values;
    for (std::size_t k = 0; k < count; k += kBand) {
      const Bits<Stored>* band = lines.data() + k * lineLength;
      if (count - k >= kBand)
        StoreBand<Stored, order>(band, width, step, rows, j + k, std::integral_constant<std::size_t, kBand>());
      else
        StoreBand<Stored, order>(band, width, step, rows, j + k, count - k);
    }
  }
  record::Miss((lineLength * height - std::min(read, lineLength * height)) / step);
}

}  // namespace

Block::Block(std::istream& in, std::streamoff at, std::size_t size, Order order) : order_(order) {
  SeekTo(in, at);
  Read(in, size);
}

Block::Block(std::istream& in, std::size_t size, Order order) : order_(order) { Read(in, size); }

void Block::Read(std::istream& in, std::size_t size) {
  bytes_.resize(std::min(size, BytesLeft(in)));
  bytes_.resize(ReadBytes(in, bytes_.data(), bytes_.size()));
}

std::string_view Block::Text(std::size_t at, std::size_t size) const {
  const std::size_t first = std::min(at, bytes_.size());
  return {reinterpret_cast<const char*>(bytes_.data()) + first, std::min(size, bytes_.size() - first)};
}

bool Block::Get(std::size_t at, Wire wire, float& out) const {
  if (at > bytes_.size() || bytes_.size() - at < SizeOf(wire)) return false;
  Decode(wire, order_, std::span(bytes_).subspan(at), {&out, 1});
  return true;
}

bool Block::Get(std::size_t at, Wire wire, int& out) const {
  if (at > bytes_.size() || bytes_.size() - at < SizeOf(wire)) return false;
  out = WithType(wire, [&](auto stored) {
    using Stored = decltype(stored);
    const unsigned char* bytes = bytes_.data() + at;
    return static_cast<int>(order_ == Order::Little ? Load<Stored, Order::Little>(bytes)
                                                    : Load<Stored, Order::Big>(bytes));
  });
  return true;
}

void Block::Get(std::size_t at, Chars chars, text::Text& out) const {
  auto text = Text(at, chars.size);
  if (chars.padded) {
    text = text.substr(0, text.find('\0'));
    text = text.substr(0, text.find_last_not_of(' ') + 1);
  }
  text::CopyText(out, text);
}

void Block::Get(std::size_t at, Chars chars, float& out) const {
  text::ScanLine(Text(at, chars.size), "%g", {&out});
}

void Decode(Wire wire, Order order, std::span<const unsigned char> bytes, std::span<float> values,
            std::size_t step) {
  const std::size_t size = SizeOf(wire);
  const std::size_t stride = size * step;
  const std::size_t held = bytes.size() < size ? 0 : (bytes.size() - size) / stride + 1;
  const auto wanted = values.first(std::min(held, values.size()));
  WithType(wire, [&](auto stored) {
    using Stored = decltype(stored);
    if (order == Order::Little)
      DecodeAs<Stored, Order::Little>(bytes.data(), stride, wanted);
    else
      DecodeAs<Stored, Order::Big>(bytes.data(), stride, wanted);
  });
}

bool ReadValues(std::istream& in, Wire wire, Order order, std::span<float> values) {
  constexpr std::size_t kChunk = 1 << 14;
  std::vector<unsigned char> bytes(std::min(kChunk, values.size()) * SizeOf(wire));
  while (!values.empty()) {
    const auto chunk = values.first(std::min(kChunk, values.size()));
    const std::size_t wanted = chunk.size() * SizeOf(wire);
    const std::size_t held = ReadBytes(in, bytes.data(), wanted);
    Decode(wire, order, std::span(bytes).first(held), chunk);
    if (held < wanted) {
      record::Miss(values.size() - held / SizeOf(wire));
      return false;
    }
    values = values.subspan(chunk.size());
  }
  return true;
}

void ReadLines(std::istream& in, Wire wire, Order order, float* const* rows, int nX, int nY, std::size_t step) {
  if (nX <= 0 || nY <= 0) return;
  const auto width = static_cast<std::size_t>(nX);
  const auto height = static_cast<std::size_t>(nY);
  WithType(wire, [&](auto stored) {
    using Stored = decltype(stored);
    if (order == Order::Little)
      ReadLinesAs<Stored, Order::Little>(in, rows, width, height, step);
    else
      ReadLinesAs<Stored, Order::Big>(in, rows, width, height, step);
  });
}

void SeekTo(std::istream& in, std::streamoff at) {
  in.clear(in.rdstate() & std::ios::badbit);
  in.seekg(at);
}

std::size_t BytesLeft(std::istream& in) {
  if (!in.good()) return 0;
  const auto here = in.tellg();
  in.seekg(0, std::ios::end);
  const auto end = in.tellg();
  in.seekg(here);
  if (in.fail()) in.setstate(std::ios::badbit);
  return in.fail() || end < here ? 0 : static_cast<std::size_t>(end - here);
}

}  // namespace kem::load
