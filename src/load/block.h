// Binary files: headers as bounded blocks with fields by offset, values as runs of one wire type.
#pragma once

#include <cstdint>
#include <istream>
#include <span>
#include <string_view>
#include <variant>
#include <vector>

#include "text/fields.h"

namespace kem::load {

enum class Order { Little, Big };

// How a value is stored in a file.
enum class Wire { S8, U8, S16, U16, S32, U32, F32, F64 };

constexpr std::size_t SizeOf(Wire wire) {
  switch (wire) {
    case Wire::S8:
    case Wire::U8:
      return 1;
    case Wire::S16:
    case Wire::U16:
      return 2;
    case Wire::F64:
      return 8;
    default:
      return 4;
  }
}

// A text of a fixed size, which a NUL may end earlier.
struct Chars {
  std::size_t size;
  bool padded = false;  // with blanks, which do not count
};

// Bytes of a file, as many of the wanted ones as it holds. A number past their end leaves its target alone.
class Block {
 public:
  // Reads from a position of the file; the stream stands behind the bytes afterwards, without failure.
  Block(std::istream& in, std::streamoff at, std::size_t size, Order order = Order::Little);
  // Reads on from where the stream stands.
  Block(std::istream& in, std::size_t size, Order order = Order::Little);

  std::size_t Size() const { return bytes_.size(); }
  std::span<const unsigned char> Bytes() const { return bytes_; }
  // The bytes of a field, fewer when the block ends inside it.
  std::string_view Text(std::size_t at, std::size_t size) const;

  bool Get(std::size_t at, Wire wire, int& out) const;
  bool Get(std::size_t at, Wire wire, float& out) const;
  // A text, and a number written as one.
  void Get(std::size_t at, Chars chars, text::Text& out) const;
  void Get(std::size_t at, Chars chars, float& out) const;

 private:
  void Read(std::istream& in, std::size_t size);

  std::vector<unsigned char> bytes_;
  Order order_;
};

// One field of a binary header, for tables that are the layout of a file.
template <class Record>
struct BinaryField {
  std::size_t offset;
  std::variant<Wire, Chars> stored;
  std::variant<int Record::*, float Record::*, text::Text Record::*> to;
};

template <class Record>
void Fill(Record& record, const Block& block, std::span<const BinaryField<Record>> layout) {
  for (const auto& field : layout)
    std::visit(
        [&](auto stored, auto member) {
          if constexpr (requires { block.Get(field.offset, stored, record.*member); })
            block.Get(field.offset, stored, record.*member);
        },
        field.stored, field.to);
}

// Converts values to floats; those that `bytes` does not hold leave their target alone. Value number k is taken
// from position k * step.
void Decode(Wire wire, Order order, std::span<const unsigned char> bytes, std::span<float> values,
            std::size_t step = 1);

// Reads values from where the stream stands; values that the file does not hold leave their target alone. Returns
// whether it holds all.
bool ReadValues(std::istream& in, Wire wire, Order order, std::span<float> values);

// Reads an image stored line by line, X running fastest: value number j * nX + i becomes rows[i][j]. In the line in
// which the file ends the rest is 0; lines that the file does not hold leave their targets alone. Each value of the
// image is one of `step` values in the file.
void ReadLines(std::istream& in, Wire wire, Order order, float* const* rows, int nX, int nY, std::size_t step = 1);

// Goes to a position of a file whose end may have been reached. That reading failed is not forgotten.
void SeekTo(std::istream& in, std::streamoff at);

// Number of bytes from where the stream stands to its end. A stream that cannot tell counts as failed reading.
std::size_t BytesLeft(std::istream& in);

}  // namespace kem::load
