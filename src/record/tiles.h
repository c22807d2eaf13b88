// Matrices that are transposed.
#pragma once

#include <algorithm>

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

}  // namespace kem::record
