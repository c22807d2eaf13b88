// The compressed ordinates of JCAMP-DX (McDonald and Wilks, Applied Spectroscopy 42 (1988) 151).
#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

namespace kem::formats {

struct Ordinates {
  std::vector<double> values;      // as they are written, not yet multiplied by a factor; "?" is not a number
  std::size_t failedChecks = 0;    // lines whose first ordinate does not repeat the last one before
  std::size_t unknownSymbols = 0;  // characters that mean nothing
  bool absurd = false;             // duplicates ask for too many values, at which decoding ended
};

// Decodes a table of lines "abscissa ordinates": plain numbers, packed ones (the sign separates), and the squeezed,
// difference and duplicate forms. The abscissae are passed over. Duplicates that ask for more values than
// record::Aside::kMostMissing beyond 16 times the length of the text end it. `announced` values save taking memory
// in steps.
Ordinates DecodeOrdinates(std::string_view text, bool decimalComma, double announced = 0);

}  // namespace kem::formats
