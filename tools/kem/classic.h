// The classic reading: records as their hosts receive them.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "input.h"

namespace kem::tool {

// Loads one item of a file.
Input LoadClassic(const std::string& file, int item);

// The items of a file, which is read once, and why there are none or fewer than it announces.
struct ClassicItems {
  std::vector<KemItem> held;
  Problem problem;
};
ClassicItems ListClassic(const std::string& file);

// See EachItem.
bool EachClassic(const std::string& file, const std::function<bool(Input&)>& action);

}  // namespace kem::tool
