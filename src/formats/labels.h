// What the P3D, P2D, B3D and B2D files have in common.
#pragma once

#include "kem.h"
#include "load/number_text.h"

namespace kem::formats {

// Writes the axis titles, one a line (three of a grid, two of a curve), then the comment block and a line feed.
void WriteLabels(load::OutputFile& out, const PrnType& record);

}  // namespace kem::formats
