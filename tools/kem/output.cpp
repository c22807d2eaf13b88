#include "output.h"

#include <cerrno>
#include <fstream>
#include <functional>
#include <iostream>
#include <system_error>

#include "csv.h"
#include "describe.h"
#include "source.h"
#include "system.h"
#include "temporary_file.h"

namespace kem::tool {
namespace {

namespace fs = std::filesystem;

// ------------------------------------------------------------ targets

fs::path TargetOf(const Output& output, const std::string& source, const std::string& label,
                  const char* extension) {
  fs::path target = PathOf(output.file);
  if (output.file.empty()) {
    target = PathOf(source == kStandard ? "stdin" : source);
    if (!output.folder.empty()) target = PathOf(output.folder) / target.filename();
    target.replace_extension(extension);
  }
  if (!label.empty()) target.replace_filename(PathOf(target.stem().string() + label + target.extension().string()));
  return target;
}

// The file behind a link, by its full path.
fs::path Resolved(const fs::path& target) {
  std::error_code error;
  fs::path resolved = fs::weakly_canonical(target, error);
  return error ? target : resolved;
}

// Why nothing may be written there.
Problem CannotReplace(const fs::path& target, const Output& output) {
  const auto earlier = output.written.find(Resolved(target));
  if (earlier != output.written.end()) return target.string() + " has just been made from " + earlier->second;
  std::error_code error;
  if (!fs::exists(fs::symlink_status(target, error))) return {};
  const fs::file_status status = fs::status(target, error);  // nothing behind a dangling link
  if (fs::exists(status) && !fs::is_regular_file(status)) return target.string() + " is no ordinary file";
  return output.force ? "" : target.string() + " exists already; --force overwrites it";
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

Problem WhyIncomplete() {
  return "cannot be written completely: " + std::generic_category().message(errno != 0 ? errno : EIO);
}

Problem WriteDocument(const Json& document, const std::string& name) {
  std::ofstream out(PathOf(name), std::ios::binary);
  out << document.dump(2) << '\n';
  out.close();
  return out ? "" : WhyIncomplete();
}

Problem Place(const Writing& write, const std::string& source, const std::string& label, const char* extension,
              Output& output) {
  std::error_code error;
  if (!output.folder.empty()) fs::create_directories(PathOf(output.folder), error);
  fs::path target = TargetOf(output, source, label, extension);
  if (Problem problem = CannotReplace(target, output); !problem.empty()) return problem;
  target = Resolved(target);
  decltype(output.written) made = {{target, source}};  // memory runs out here, not when the file is there
  Problem problem = Write(write, target, output.force);
  if (problem.empty()) output.written.merge(made);
  return problem;
}

}  // namespace

CLI::Option* AddOutputFile(CLI::App& app, Output& output) {
  CLI::Option* file = app.add_option("-o,--output", output.file, "Write to this file, or to standard output as -")
                          ->type_name("FILE");
  app.add_option("-t,--to", output.format, "Format, if the extension of the output does not tell: " + FormatNames())
      ->type_name("FORMAT")
      ->check([](const std::string& name) {
        return FormatNamed(name) ? "" : "no format " + name + ", but there are " + FormatNames();
      });
  app.add_flag("-f,--force", output.force, "Overwrite existing files");
  return file;
}

void AddOutput(CLI::App& app, Output& output) {
  CLI::Option* file = AddOutputFile(app, output);
  app.add_option("-d,--dir", output.folder, "Write into this folder, which is made if need be")
      ->type_name("DIR")
      ->excludes(file);
}

const Format* FormatOf(const CLI::App& app, const Output& output) {
  const std::string extension = PathOf(output.file).extension().string();
  const std::string name = !output.format.empty() ? output.format : extension.substr(extension.empty() ? 0 : 1);
  const Format* format = FormatNamed(name);
  if (!format) Complain(app.get_name() + ": name a format by --to or by the extension of the output");
  return format;
}

Problem Save(Input& input, const std::string& label, const Format& format, Output& output) {
  const bool whole = input.dataset && std::string_view(format.name) == "csv";
  if (output.matrix && input.dataset && input.dataset->values.IsComplex())
    return "a matrix takes real values; --part picks them";
  if (!whole)
    if (Problem problem = CannotHold(format, *input.record); !problem.empty()) return problem;
  const Writing write = [&](const std::string& name) -> Problem {
    if (!whole) return WriteRecord(*input.record, format, name);
    return WriteCsv(*input.dataset, name.c_str(), output.matrix) ? "" : WhyIncomplete();
  };
  if (output.file == kStandard) return label.empty() ? Print(write) : "standard output takes one item only";
  Problem problem = Place(write, input.file, label, format.name, output);
  if (!problem.empty() || !output.metadata) return problem;
  Output beside = output;
  if (!output.file.empty()) beside.file = PathOf(output.file).replace_extension("json").string();
  return Place([&](const std::string& name) { return WriteDocument(Describe(input), name); }, input.file, label,
               "json", beside);
}

}  // namespace kem::tool
