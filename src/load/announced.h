// What a file announces, against what it has.
#pragma once

#include <istream>

namespace kem::load {

// Bytes of a whole file, wherever its stream stands and whatever its state.
std::streamoff FileSize(std::istream& in);

// A count of values that a file announces. One that is negative, NaN, too large for an int, or absurd
// (more than ReadMostMissing values beyond 16 times the bytes of the file) ends in std::bad_alloc; ReadAnnounced
// and ReadFileBytes tell why.
int CheckedCount(std::istream& in, double count);

// The counts of a grid, likewise. As rows take memory of their own, there may be a tenth as many of them. A count
// of 0 in one direction makes both 0.
void CheckGrid(std::istream& in, int& rows, int& columns);

}  // namespace kem::load
