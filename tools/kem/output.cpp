#include "output.h"

#include <cerrno>
#include <fstream>
#include <functional>
#include <iostream>
#include <system_error>

#include "csv.h"
#include "describe.h"
#include "document.h"
#include "jcamp.h"
#include "lost.h"
#include "options.h"
#include "pairs.h"
#include "source.h"
#include "system.h"
#include "temporary_file.h"
#include "text.h"

namespace kem::tool {
namespace {

Problem WhyIncomplete() {
  return "cannot be written completely: " + std::generic_category().message(errno != 0 ? errno : EIO);
}

}  // namespace

Problem WriteText(const std::string& text, const std::string& name) {
  std::ofstream out(PathOf(name), std::ios::binary);
  out << text;
  out.close();
  return out ? "" : WhyIncomplete();
}

namespace {

namespace fs = std::filesystem;

// ------------------------------------------------------------ targets

// The file behind a link, by its full path.
fs::path Resolved(const fs::path& target) {
  std::error_code error;
  fs::path resolved = fs::weakly_canonical(target, error);
  return error ? target : resolved;
}

// Why nothing may be written there.
Problem CannotReplace(const fs::path& target, const Output& output) {
  std::error_code error;
  if (!fs::exists(fs::symlink_status(target, error))) return {};
  const fs::file_status status = fs::status(target, error);  // nothing behind a dangling link
  if (fs::exists(status) && !fs::is_regular_file(status)) return target.string() + " is no ordinary file";
  return output.force || output.update ? "" : target.string() + " exists already; --force overwrites it";
}

// Fills an empty file; returns what went wrong.
using Writing = std::function<Problem(const std::string& name)>;

// Writes a file beside its target, which it becomes when it is complete.
Problem Write(const Writing& write, const fs::path& target, bool replace) {
  TemporaryFile file(fs::path(target).remove_filename());
  if (!file.WhyNot().empty()) return target.string() + " cannot be created: " + file.WhyNot();
  if (Problem problem = write(file.Name()); !problem.empty()) return target.string() + ' ' + problem;
  const Problem problem = file.MoveTo(target, replace);
  return problem.empty() ? "" : target.string() + " cannot be written: " + problem;
}

// Standard output gets a file when it is complete.
Problem Print(const Writing& write) {
  TemporaryFile file(TemporaryFolder());
  Problem problem = file.WhyNot().empty() ? write(file.Name()) : file.WhyNot();
  if (!problem.empty()) return "standard output " + problem;
  SetBinary(stdout);
  std::cout << std::ifstream(PathOf(file.Name()), std::ios::binary).rdbuf();
  return {};
}

Problem WriteDocument(const Json& document, const std::string& name) {
  return WriteText(document.dump(2) + '\n', name);
}

// A place that a file of this run has taken, and gives back unless it is kept.
class Claim {
 public:
  Claim(Output::Made& made, fs::path target, const std::string& source) : made_(made), target_(std::move(target)) {
    const std::lock_guard lock(made_.mutex);
    const auto [entry, isNew] = made_.from.emplace(target_, source);
    kept_ = !isNew;
    if (!isNew) problem_ = " has just been made from " + entry->second;
  }
  ~Claim() {
    const std::lock_guard lock(made_.mutex);
    if (!kept_) made_.from.erase(target_);
  }
  Claim(const Claim&) = delete;
  Claim& operator=(const Claim&) = delete;

  const Problem& WhyNot() const { return problem_; }
  void Keep() { kept_ = true; }

 private:
  Output::Made& made_;
  fs::path target_;
  Problem problem_;
  bool kept_ = true;
};

Problem Place(const Writing& write, const std::string& source, const fs::path& target, const Output& output) {
  std::error_code error;
  if (!output.folder.empty()) fs::create_directories(target.parent_path(), error);
  const fs::path resolved = Resolved(target);
  Claim claim(*output.made, resolved, source);
  if (!claim.WhyNot().empty()) return target.string() + claim.WhyNot();
  if (Problem problem = CannotReplace(target, output); !problem.empty()) return problem;
  Problem problem = Write(write, resolved, output.force || output.update);
  if (problem.empty()) claim.Keep();
  return problem;
}

}  // namespace

namespace {

std::string FormatWords() {
  std::string words;
  for (const Format& format : Formats()) words += (words.empty() ? "" : " ") + std::string(format.name);
  return words;
}

}  // namespace

CLI::Option* AddOutputFile(CLI::App& app, Output& output) {
  CLI::Option* file = app.add_option("-o,--output", output.file, "Write to this file, or to standard output as -")
                          ->type_name("FILE");
  app.add_option("-t,--to", output.format, "Format, if the extension of the output does not tell: " + FormatNames())
      ->type_name("FORMAT")
      ->check(CLI::Validator(
                  [](std::string& name) {
                    return FormatNamed(name) ? "" : "no format " + name + ", but there are " + FormatNames();
                  },
                  "")
                  .name(FormatWords()));
  app.add_flag("-f,--force", output.force, "Overwrite existing files");
  return file;
}

void AddOutput(CLI::App& app, Output& output) {
  CLI::Option* file = AddOutputFile(app, output);
  app.add_option("-d,--dir", output.folder, "Write into this folder, which is made if need be")
      ->type_name("DIR")
      ->excludes(file);
  app.add_flag("--keep-tree", output.keepTree, "Keep the folders below the one that was named, in --dir")
      ->needs(app.get_option("--dir"));
  app.add_flag("--update", output.update, "Write only what is missing or older than its source");
  app.add_option("--report", output.report, "Write what became of each file, as JSON")->type_name("FILE");
  app.add_option("--jobs", output.jobs, "Files to work on at a time (default one for each processor)")
      ->type_name("N")
      ->check(WholeNumber(1, 64));
}

const Format* FormatOf(const CLI::App& app, const Output& output) {
  const std::string extension = PathOf(output.file).extension().string();
  const std::string name = !output.format.empty() ? output.format : extension.substr(extension.empty() ? 0 : 1);
  const Format* format = FormatNamed(name);
  if (!format) Complain(app.get_name() + ": name a format by --to or by the extension of the output");
  return format;
}

// Whether a dataset is written as it is, not by way of its record.
bool IsWhole(const Input& input, const Format& format) {
  const std::string_view name = format.name;
  return input.dataset && (name == "csv" || (name == "dx" && input.dataset->axes.size() == 1));
}

Problem WriteWhole(const Dataset& d, const Format& format, const Output& output, const std::string& name) {
  if (std::string_view(format.name) == "csv")
    return WriteCsv(d, name.c_str(), output.matrix, output.header) ? "" : WhyIncomplete();
  return WriteText(JcampOf(d.values.IsComplex() ? d.Only(Part::Real) : d), name);
}

const char* Hint(const std::string& lost, const Format& format, const Output& output) {
  const bool helps = std::string_view(format.name) == "csv" && !output.header && lost.find("left out") != lost.npos;
  return helps ? "; --header keeps that" : "";
}

// Notes what the file that is being written does not hold; a curve as a matrix is not meant to be read back.
void NoteLoss(const Input& input, const Format& format, const Output& output, const std::string& name) {
  Turn* turn = ThisTurn();
  constexpr std::size_t kMostPoints = 1 << 20;
  if (!turn || !input.dataset || (output.matrix && input.dataset->axes.size() == 1) ||
      input.dataset->values.Count() > kMostPoints)
    return;
  const std::string lost = LostIn(name, *input.dataset);
  if (!lost.empty() && turn->lost.empty())
    turn->lost = std::string(format.name) + " does not keep all of it: " + lost + Hint(lost, format, output);
}

Problem Save(Input& input, const std::string& label, const Format& format, Output& output) {
  if (output.matrix && input.dataset && input.dataset->values.IsComplex())
    return "a matrix takes real values; --part picks them";
  if (std::string_view(format.name) != "csv" || !input.dataset)
    if (Problem problem = CannotHold(format, *input.record); !problem.empty()) return problem;
  if (input.dataset) NameByTitle(*input.record, format, input.dataset->title);
  const Writing write = [&](const std::string& name) -> Problem {
    Problem problem = IsWhole(input, format) ? WriteWhole(*input.dataset, format, output, name)
                                             : WriteRecord(*input.record, format, name);
    if (problem.empty()) NoteLoss(input, format, output, name);
    return problem;
  };
  if (output.file == kStandard) return label.empty() ? Print(write) : "standard output takes one item only";
  Turn* turn = ThisTurn();
  const fs::path target = TargetOf(output, turn ? turn->file : File{input.file}, label, format.name);
  if (output.update && IsUpToDate(target, input.file)) {
    if (turn) ++turn->upToDate;
    return {};
  }
  Turn::Output made{input.item, input.name, target.string()};
  if (turn) turn->outputs.reserve(turn->outputs.size() + 1);  // memory runs out here, not when the file is there
  Problem problem = Place(write, input.file, target, output);
  if (problem.empty() && output.metadata)
    problem = Place([&](const std::string& name) { return WriteDocument(Describe(input), name); }, input.file,
                    fs::path(target).replace_extension("json"), output);
  if (turn && problem.empty()) turn->outputs.push_back(std::move(made));
  return problem;
}

Problem SaveFile(const Writing& write, Output& output) {
  return output.file == kStandard ? Print(write) : Place(write, output.file, PathOf(output.file), output);
}

fs::path TargetOf(const Output& output, const File& source, const std::string& label, const char* extension) {
  fs::path target = PathOf(output.file);
  if (output.file.empty()) {
    const fs::path path = PathOf(source.name == kStandard ? "stdin" : source.name);
    target = path;
    if (!output.folder.empty()) {
      target = PathOf(output.folder);
      if (output.keepTree) target /= path.parent_path().lexically_relative(PathOf(source.folder));
      target /= path.filename();
    }
    target.replace_extension(extension);
  }
  if (!label.empty()) target.replace_filename(PathOf(target.stem().string() + label + target.extension().string()));
  return output.keepTree ? target.lexically_normal() : target;
}

bool IsUpToDate(const fs::path& target, const std::string& source) {
  std::error_code error;
  const auto made = fs::last_write_time(target, error);
  if (error) return false;
  for (const std::string& file : {source, PartnerOf(source).file}) {
    const auto changed = fs::last_write_time(PathOf(file), error);
    if (!error && changed > made) return false;
  }
  return true;
}

Problem CannotReport(const Output& output) {
  return output.report.empty() ? "" : CannotReplace(PathOf(output.report), output);
}

Problem WriteReport(const Output& output, std::span<const Turn> turns) {
  constexpr const char* kStates[] = {"not reached", "written", "up to date", "left out", "failed"};
  Json document = Json::array();
  for (const Turn& turn : turns) {
    Json outputs = Json::array();
    for (const auto& [item, name, file] : turn.outputs)
      outputs.push_back({{"item", item}, {"name", name}, {"output", Utf8(file)}});
    Json one = {{"file", Utf8(turn.file.name)}, {"state", kStates[static_cast<std::size_t>(turn.state)]}};
    one["outputs"] = std::move(outputs);
    for (const auto& [key, texts] : {std::pair("notes", &turn.notes), std::pair("errors", &turn.errors)}) {
      one[key] = Json::array();
      for (const std::string& text : *texts) one[key].push_back(Utf8(text));
    }
    document.push_back(std::move(one));
  }
  return Write([&](const std::string& name) { return WriteDocument(document, name); }, PathOf(output.report),
               output.force || output.update);
}

}  // namespace kem::tool
