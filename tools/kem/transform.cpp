#include "transform.h"

#include "source.h"

namespace kem::tool {

Problem Become(Record& record, PrnType& result, std::string_view why) {
  Record owned(&result);
  if (!result || result.nX < 1 || result.nY < 1) return Problem(why);
  record = std::move(owned);
  return {};
}

std::shared_ptr<Task> AddTask(CLI::App& app) {
  auto task = std::make_shared<Task>();
  AddSelection(app, task->selection);
  AddOutput(app, task->output);
  return task;
}

int Transform(const CLI::App& app, Task& task, const Operation& operation) {
  Output& output = task.output;
  const Selection& selection = task.selection;
  const Format* format = FormatOf(app, output);
  if (!format) return kMisused;
  if (!output.file.empty() && selection.files.size() > 1) {
    Complain(app.get_name() + ": --output is for one file, --dir for several");
    return kMisused;
  }
  const bool fromStandard = selection.files.size() == 1 && selection.files.front() == kStandard;
  if (fromStandard && output.file.empty() && output.folder.empty()) output.file = kStandard;
  const bool numbered = selection.allItems || (selection.item > 0 && output.file.empty());
  return EachSelected(selection, "written", [&](Input& input) {
    Problem problem = operation(input.record);
    const int number = numbered && input.IsOneOfSeveral() ? input.item : 0;
    if (problem.empty()) problem = Save(*input.record, input.file, number, *format, output);
    return NoProblem(input, problem);
  });
}

Run DefineTransform(CLI::App& app, Operation operation) {
  auto task = AddTask(app);
  return [&app, task, operation = std::move(operation)] { return Transform(app, *task, operation); };
}

}  // namespace kem::tool
