// Going through the files of a command line: failures are named one by one and never stop the rest.
#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "files.h"
#include "problem.h"

namespace kem::tool {

// A file whose turn it is, and what is told about it.
struct Turn {
  enum class State { Waiting, Done, UpToDate, Skipped, Failed };
  struct Output {
    int item;
    std::string name;  // of the item
    std::string file;
  };

  File file;
  State state = State::Waiting;
  bool keepsMessages = false;  // for the thread that prints those of all files in their order
  std::string messages = {};
  std::string lost = {};  // what the outputs do not hold of the file; said once for all files
  std::vector<std::string> notes = {};
  std::vector<std::string> errors = {};
  std::vector<Output> outputs = {};  // made now
  std::size_t upToDate = 0;          // outputs that need not be made
};

// The turn that this thread works on; null outside of EachFile.
Turn* ThisTurn();

// Prints a sentence on standard error.
void Complain(std::string_view sentence);

// Names the problem of a file, if there is one, on standard error. Returns whether there is none.
bool NoProblem(std::string_view file, const Problem& problem);

// How to go through files.
struct Pass {
  std::string_view done =
      {};                // "written": asks for a progress bar on a terminal and for a summary of several files
  std::size_t jobs = 1;  // how many are worked on at a time
  std::function<bool(Turn&)> settled = {};  // sets the state of a file that nothing has to be done for
  std::function<void(std::span<const Turn>)> report = {};  // gets all of them in the end
};

// Runs an action, which tells whether it succeeded, on every file, and once on a pair of files. Files in folders
// that no format recognises are left out. Returns the exit status.
int EachFile(const FileList& files, const Pass& pass, const std::function<bool(const std::string& file)>& action);

}  // namespace kem::tool
