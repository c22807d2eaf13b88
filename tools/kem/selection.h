// Records that a command works on: the files of its command line, and which items of them.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>

#include "input.h"

namespace kem::tool {

struct Selection {
  FileList files;
  int item = 0;  // 0: the first, because none was asked for
  bool allItems = false;
};

void AddSelection(CLI::App& app, Selection& selection);

// Names the problem of a file, and of which of its items, on standard error. Returns whether there is none.
bool NoProblem(const Input& input, const Problem& problem);

// Runs an action, which tells whether it succeeded, on every record selected. Returns the exit status.
int EachSelected(const Selection& selection, const Pass& pass, const std::function<bool(Input&)>& action);

}  // namespace kem::tool
