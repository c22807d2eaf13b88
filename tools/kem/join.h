// Several spectra in one table: one X and a column for each.
#pragma once

#include "transform.h"

namespace kem::tool {

// Joins the items selected and writes them as csv; returns the exit status. Axes have to agree with the first one,
// or the values are resampled onto it. Nothing is written when one of the files fails.
int Join(const CLI::App& app, Task& task, bool resample);

}  // namespace kem::tool
