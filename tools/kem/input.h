// Loading files: one item of a file, and why there is none.
#pragma once

#include <CLI/CLI.hpp>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

#include "each_file.h"
#include "kem/dataset.h"

namespace kem::tool {

// How this run of the command reads files.
struct Reading {
  bool classic = false;      // as hosts of the record receive them
  std::optional<Part> part;  // of complex values, where only real ones fit
  bool quiet = false;        // no notes
  std::string xUnit = {};    // that X is converted into; empty for the file's own
  bool gValues = false;      // X as g factors
  double frequency = 0;      // of the microwave in Hz; 0 where the file tells it
};
const Reading& HowToRead();
// Complex values are taken as they are, so that a part need not be chosen.
void TakeComplexValues();
void AddReading(CLI::App& app);
// The options that convert X, for commands that show or use coordinates.
void AddUnits(CLI::App& app);

struct Input {
  std::string file;
  int item = 1;                          // counted from 1
  bool more = false;                     // whether further items follow
  std::string name = {};                 // of the item
  std::unique_ptr<PrnType> record = {};  // null when there is a problem
  std::optional<Dataset> dataset = {};   // what the record was made of; none in the classic reading
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

// The values of an item, or their imaginary parts; where a part of complex values was asked for, that one.
std::vector<double> NumbersOf(const Input& input, bool imaginary);

// Opens one item of a file without making a record of it.
Input OpenItem(const std::string& file, int item);
// Opens the items of a file one after the other; a problem is that of the last one handed over.
void OpenItems(const std::string& file, const std::function<void(Input&)>& take);

// Loads one item of a file, and prints the notes on it that cast doubt on its values.
Input LoadItem(const std::string& file, int item);

// Prints a note about a file on standard error, unless notes are not wanted.
void Tell(std::string_view file, const std::string& note);

// Loads the items of a file one after the other and runs an action, which tells whether it succeeded, on each.
// Returns whether all items were loaded and all actions succeeded.
bool EachItem(const std::string& file, const std::function<bool(Input&)>& action);

}  // namespace kem::tool
