// Matrices that are transposed.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstring>

#include "kem.h"

namespace kem::record {

// A row of a block of 4 x 4. Two shuffles, each of the rows' halves, make the rows columns within registers.
using Four [[gnu::vector_size(16)]] = float;
using FourByFour = std::array<Four, 4>;
inline constexpr int kFour = 4;

inline FourByFour Shuffled(const FourByFour& rows) {
  const auto lower = [](Four a, Four b) { return __builtin_shufflevector(a, b, 0, 4, 1, 5); };
  const auto upper = [](Four a, Four b) { return __builtin_shufflevector(a, b, 2, 6, 3, 7); };
  return {lower(rows[0], rows[2]), upper(rows[0], rows[2]), lower(rows[1], rows[3]), upper(rows[1], rows[3])};
}

template <class Rows, class Columns>
void TransposeBlock(int row, int column, Rows from, Columns to) {
  FourByFour block;
  for (int k = 0; k < kFour; ++k) std::memcpy(&block[k], from(row + k) + column, sizeof block[k]);
  block = Shuffled(Shuffled(block));
  for (int k = 0; k < kFour; ++k) std::memcpy(to(column + k) + row, &block[k], sizeof block[k]);
}

// Makes rows columns; from(row) and to(column) point to their values. Goes in tiles of blocks, so that neither side
// leaves the cache between two visits.
template <class Rows, class Columns>
void Transpose(int rows, int columns, Rows from, Columns to) {
  constexpr int kTile = 32;
  const int wholeRows = rows - rows % kFour;
  const int wholeColumns = columns - columns % kFour;
  for (int top = 0; top < wholeRows; top += kTile)
    for (int left = 0; left < wholeColumns; left += kTile)
      for (int column = left; column < std::min(left + kTile, wholeColumns); column += kFour)
        for (int row = top; row < std::min(top + kTile, wholeRows); row += kFour)
          TransposeBlock(row, column, from, to);
  for (int column = 0; column < columns; ++column)
    for (int row = column < wholeColumns ? wholeRows : 0; row < rows; ++row) to(column)[row] = from(row)[column];
}

// The values of a grid, whose rows run along Y, with X as the fastest axis.
inline void CopyGrid(const PrnType& r, float* to) {
  const auto fromRow = [rows = r.zArray](int i) { return rows[i]; };
  Transpose(r.nX, r.nY, fromRow, [=, nX = std::ptrdiff_t{r.nX}](int j) { return to + j * nX; });
}

}  // namespace kem::record
