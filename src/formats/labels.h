// What the P3D, P2D, B3D and B2D files have in common.
#pragma once

#include "formats/output_file.h"
#include "kem.h"
#include "text/number_text.h"

namespace kem::formats {

// Writes the axis titles, one a line (three of a grid, two of a curve), then the comment block and a line feed.
void WriteLabels(OutputFile& out, const PrnType& record);

}  // namespace kem::formats
