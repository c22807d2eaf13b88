// Loading files: what readers say, why a load failed, and the items of a file that holds several.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "each_file.h"
#include "kem.h"

namespace kem::tool {

struct Input {
  std::string file;
  int item = 1;                     // counted from 1, whatever the format counts from
  bool more = false;                // whether further items follow
  std::unique_ptr<PrnType> record;  // null when there is a problem
  Problem problem = {};

  bool IsOneOfSeveral() const { return item > 1 || more; }
};

// What a name in an expression stands for: "scan.DSC#2" is the second item of scan.DSC, unless there is a file of
// just that name.
struct NamedItem {
  std::string file;
  int item = 0;  // 0: the first, because none was asked for
};

NamedItem ItemNamed(const std::string& name);

// Loads one item of a file.
Input LoadItem(const std::string& file, int item);

// The items of a file, which is read once, and why there are none or fewer than it announces.
struct Items {
  std::vector<KemItem> held;
  Problem problem;
};
Items ListItems(const std::string& file);

// Loads the items of a file one after the other and runs an action, which tells whether it succeeded, on each.
// Returns whether all items were loaded and all actions succeeded.
bool EachItem(const std::string& file, const std::function<bool(Input&)>& action);

}  // namespace kem::tool
