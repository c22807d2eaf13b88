#include "transform.h"

#include <algorithm>
#include <filesystem>
#include <set>
#include <system_error>
#include <thread>

#include "source.h"
#include "system.h"

namespace kem::tool {

namespace fs = std::filesystem;

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

// Whether a path lies in a folder that is itself inside another one.
bool LiesIn(const fs::path& path, const fs::path& folder, const fs::path& base) {
  std::error_code error;
  const fs::path inner = fs::weakly_canonical(folder, error);
  if (error || inner == fs::weakly_canonical(base, error)) return false;
  const fs::path below = fs::weakly_canonical(path, error).lexically_relative(inner);
  return !below.empty() && *below.begin() != "..";
}

// What files in folders should not become a source again: the results, and what already has the format asked for.
bool IsResult(const Turn& turn, const Output& output, const fs::path& target) {
  if (!turn.file.found) return false;
  const fs::path path = PathOf(turn.file.name);
  std::error_code error;
  if (fs::equivalent(path, target, error)) return true;
  return !output.folder.empty() && LiesIn(path, PathOf(output.folder), PathOf(turn.file.folder));
}

// Whether two files would become one, of which the first has to come first.
bool Collide(const FileList& files, const Output& output, const char* extension) {
  std::set<fs::path> targets;
  for (const File& file : ListOf(files).files)
    if (!targets.insert(TargetOf(output, file, "", extension)).second) return true;
  return false;
}

// The classic reading and standard input are there once.
std::size_t JobsFor(const FileList& files, const Output& output, const char* extension) {
  const std::size_t jobs = output.jobs > 0 ? output.jobs : std::thread::hardware_concurrency();
  const bool alone = HowToRead().classic || jobs < 2 || files.IsOne() ||
                     std::find(files.names.begin(), files.names.end(), kStandard) != files.names.end();
  return alone || Collide(files, output, extension) ? 1 : std::min<std::size_t>(jobs, 64);
}

// Why the options do not go together.
Problem Misuse(const Task& task) {
  if (!task.output.file.empty() && !task.selection.files.IsOne())
    return "--output is for one file, --dir for several";
  return {};
}

Problem Process(Input& input, Task& task, const Operation& operation, const Format& format, bool numbered) {
  if (operation)
    if (Problem problem = operation(input.record); !problem.empty()) return problem;
  if (operation) input.dataset.reset();  // the record is no longer what it says
  if (const auto part = HowToRead().part; part && input.dataset && input.dataset->values.IsComplex())
    input.dataset = input.dataset->Only(*part);
  return Save(input, numbered && input.IsOneOfSeveral() ? LabelOf(input) : "", format, task.output);
}

int Transform(const CLI::App& app, Task& task, const Operation& operation) {
  Output& output = task.output;
  const Selection& selection = task.selection;
  const Format* format = FormatOf(app, output);
  if (!format) return kMisused;
  if (const Problem misuse = Misuse(task); !misuse.empty()) {
    Complain(app.get_name() + ": " + misuse);
    return kMisused;
  }
  if (!NoProblem(app.get_name(), CannotReport(output))) return kFailed;
  if (!operation && std::string_view(format->name) == "csv") TakeComplexValues();
  const bool fromStandard = selection.files.IsOne() && selection.files.names.front() == kStandard;
  if (fromStandard && output.file.empty() && output.folder.empty()) output.file = kStandard;
  const bool numbered = selection.allItems || (selection.item > 0 && output.file.empty());
  Problem unreported;
  Pass pass{.done = "written", .jobs = JobsFor(selection.files, output, format->name)};
  pass.settled = [&](Turn& turn) {
    const fs::path target = TargetOf(output, turn.file, "", format->name);
    if (IsResult(turn, output, target))
      turn.state = Turn::State::Skipped;
    else if (output.update && !numbered && IsUpToDate(target, turn.file.name))
      turn.state = Turn::State::UpToDate;
    return turn.state != Turn::State::Waiting;
  };
  if (!output.report.empty())
    pass.report = [&](std::span<const Turn> turns) { unreported = WriteReport(output, turns); };
  const int status = EachSelected(selection, pass, [&](Input& input) {
    return NoProblem(input, Process(input, task, operation, *format, numbered));
  });
  return NoProblem(app.get_name(), unreported) ? status : kFailed;
}

Run DefineTransform(CLI::App& app, Operation operation) {
  auto task = AddTask(app);
  return [&app, task, operation = std::move(operation)] { return Transform(app, *task, operation); };
}

}  // namespace kem::tool
