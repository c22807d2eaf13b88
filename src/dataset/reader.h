// What a format's full reader consists of, and what readers share.
#pragma once

#include <span>
#include <string>
#include <vector>

#include "dataset/source.h"
#include "kem/dataset.h"

namespace kem::dataset {

// A format that kem::Open knows. A file belongs to the first one that recognises it.
struct Reader {
  const char* format;
  const char* extensions;  // separated by blanks
  // What tells that the file has this format, as "name ends in .DSC, first line begins with #DESC"; empty when it
  // has another one.
  std::string (*recognise)(Source& source);
  // The names of the items; empty ones where the file gives none.
  std::vector<std::string> (*items)(Source& source);
  // Reads an item, counted from 1 and known to exist. The caller sets format, file, item and its name.
  Dataset (*open)(Source& source, int item);
  bool pair = false;            // the first extension is that of parameters, the second that of values
  const char* companions = "";  // extensions of files beside them that are read along
};

// "begins with HPK8TMAP", or nothing when the file does not.
std::string Begins(Source& source, std::string_view mark);

// For formats whose files hold one item without a name.
std::vector<std::string> OneItem(Source& source);

// What a title names, and its unit: "Intensity (counts)", "Field [G]".
struct NamedUnit {
  std::string name;
  std::string unit;
};
NamedUnit SplitTitle(std::string_view title);

// Adds a parameter. Its number is the text, where that is one; "3516.00 G" and the key "Start (nm)" name a unit,
// too.
void AddParameter(Dataset& dataset, std::string_view section, std::string_view key, std::string_view text,
                  std::string_view unit = {});

// Keeps the slices of the slowest axis that the file holds completely and says so; "values file" names the place.
// Returns the number of values that are left.
std::size_t FitToFile(Dataset& dataset, std::uint64_t held, std::string_view place);

// The number of values that the axes span; 0 when one is empty. Throws std::bad_alloc for more than memory can
// address.
std::uint64_t CountOf(std::span<const Axis> axes);

// The readers of single families.
extern const Reader kAT1Reader;
extern const Reader kB2DReader;
extern const Reader kB3DReader;
extern const Reader kBES3TReader;
extern const Reader kBrukerReader;
extern const Reader kCaryReader;
extern const Reader kColumnsReader;
extern const Reader kCvtReader;
extern const Reader kDilorReader;
extern const Reader kDilorSeriesReader;
extern const Reader kHPDTAReader;
extern const Reader kHamaReader;
extern const Reader kIccdCurveReader;
extern const Reader kIccdImageReader;
extern const Reader kJcampReader;
extern const Reader kNPicoReader;
extern const Reader kOMAReader;
extern const Reader kP2DReader;
extern const Reader kP3DReader;

}  // namespace kem::dataset
