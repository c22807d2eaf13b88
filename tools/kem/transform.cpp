#include "transform.h"

#include <algorithm>

#include "source.h"

namespace kem::tool {

Problem Become(Record& record, PrnType& result, std::string_view why) {
  Record owned(&result);
  if (!result || result.nX < 1 || result.nY < 1) return Problem(why);
  record = std::move(owned);
  return {};
}

// What tells the items of a file apart in names of files: "_02_green".
std::string LabelOf(const Input& input) {
  constexpr std::size_t kLongest = 40;
  std::size_t length = std::min(kLongest, input.name.size());
  while (length < input.name.size() && (input.name[length] & 0xC0) == 0x80) --length;  // within a character
  std::string label = (input.item < 10 ? "_0" : "_") + std::to_string(input.item);
  if (length > 0) label += '_' + input.name.substr(0, length);
  constexpr std::string_view kNotInNames = " /\\:*?\"<>|%'";
  for (char& c : label)
    if (kNotInNames.find(c) != kNotInNames.npos || (c >= 0 && c < ' ') || c == 0x7F) c = '-';
  return label;
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
  if (!operation && std::string_view(format->name) == "csv") TakeComplexValues();
  const bool fromStandard = selection.files.size() == 1 && selection.files.front() == kStandard;
  if (fromStandard && output.file.empty() && output.folder.empty()) output.file = kStandard;
  const bool numbered = selection.allItems || (selection.item > 0 && output.file.empty());
  return EachSelected(selection, "written", [&](Input& input) {
    Problem problem = operation ? operation(input.record) : Problem();
    if (operation || HowToRead().part) input.dataset.reset();  // the record is no longer what it says
    const std::string label = numbered && input.IsOneOfSeveral() ? LabelOf(input) : "";
    if (problem.empty()) problem = Save(input, label, *format, output);
    return NoProblem(input, problem);
  });
}

Run DefineTransform(CLI::App& app, Operation operation) {
  auto task = AddTask(app);
  return [&app, task, operation = std::move(operation)] { return Transform(app, *task, operation); };
}

}  // namespace kem::tool
