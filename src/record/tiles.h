// Matrices that are transposed.
#pragma once

#include <algorithm>
#include <cstddef>

#include "kem.h"

namespace kem::record {

// Visits each (row, column), in tiles, so that neither side of a transposition leaves the cache between two visits.
// Rows change fastest: they are the neighbours of what is written.
template <class Visit>
void ForTiles(int rows, int columns, Visit visit) {
  constexpr int kTile = 64;
  for (int top = 0; top < rows; top += kTile)
    for (int left = 0; left < columns; left += kTile)
      for (int column = left; column < std::min(left + kTile, columns); ++column)
        for (int row = top; row < std::min(top + kTile, rows); ++row) visit(row, column);
}

// The values of a grid, whose rows run along Y, with X as the fastest axis.
inline void CopyGrid(const PrnType& r, float* to) {
  const std::ptrdiff_t nX = r.nX;
  ForTiles(r.nX, r.nY, [=, rows = r.zArray](int i, int j) { to[j * nX + i] = rows[i][j]; });
}

}  // namespace kem::record
