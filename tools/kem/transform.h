// Commands that make a new record of each record selected, and write it.
#pragma once

#include <functional>
#include <memory>
#include <string_view>

#include "command.h"
#include "output.h"
#include "selection.h"

namespace kem::tool {

using Record = std::unique_ptr<PrnType>;

// Turns a record into another one, or tells why it cannot.
using Operation = std::function<Problem(Record&)>;

// Puts a result of the library in the record's place; when it holds no samples, `why` is the problem.
Problem Become(Record& record, PrnType& result, std::string_view why);

// What is wrong with a curve when Y is asked for.
inline constexpr const char* kForGrids = "is a curve; only grids have a Y axis";

// Where the records come from and go to.
struct Task {
  Selection selection;
  Output output;
};

std::shared_ptr<Task> AddTask(CLI::App& app);

// Does a task; returns the exit status.
int Transform(const CLI::App& app, Task& task, const Operation& operation);

// All there is to most commands: the options of a task, and an operation.
Run DefineTransform(CLI::App& app, Operation operation);

}  // namespace kem::tool
