// What a dataset is, in words.
#pragma once

#include <limits>
#include <string>

#include "kem/dataset.h"

namespace kem::tool {

// Smallest and largest of the values that are numbers; of complex ones, of their magnitudes.
struct Range {
  double min = std::numeric_limits<double>::quiet_NaN();
  double max = std::numeric_limits<double>::quiet_NaN();

  explicit Range(const Values& values);
};

// "Field (G)", "Field" or "(G)".
std::string Named(const std::string& name, const std::string& unit);

// A number for the eye: ten digits will do, and what single precision holds has fewer.
std::string NumberText(double value);

// The text of a parameter, with its unit unless the text or the key has it.
std::string WithUnit(const Parameter& parameter);

}  // namespace kem::tool
