#include "output.h"

#include <fstream>
#include <iostream>
#include <system_error>

#include "source.h"
#include "system.h"
#include "temporary_file.h"

namespace kem::tool {
namespace {

namespace fs = std::filesystem;

// ------------------------------------------------------------ targets

std::string Numbered(const fs::path& name, int number) {
  const std::string digits = std::to_string(number);
  return name.stem().string() + (digits.size() < 2 ? "_0" : "_") + digits + name.extension().string();
}

fs::path TargetOf(const Output& output, const std::string& source, int number, const Format& format) {
  fs::path target = PathOf(output.file);
  if (output.file.empty()) {
    target = PathOf(source == kStandard ? "stdin" : source);
    if (!output.folder.empty()) target = PathOf(output.folder) / target.filename();
    target.replace_extension(format.name);
  }
  if (number > 0) target.replace_filename(PathOf(Numbered(target.filename(), number)));
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

// Writes a file beside its target, which it becomes when it is complete.
Problem Write(PrnType& record, const Format& format, const fs::path& target, bool replace) {
  TemporaryFile file(fs::path(target).remove_filename());
  if (!file.WhyNot().empty()) return target.string() + " cannot be created: " + file.WhyNot();
  if (Problem problem = WriteRecord(record, format, file.Name()); !problem.empty())
    return target.string() + ' ' + problem;
  const Problem problem = file.MoveTo(target, replace);
  return problem.empty() ? "" : target.string() + " cannot be written: " + problem;
}

// Standard output gets a file when it is complete.
Problem Print(PrnType& record, const Format& format) {
  TemporaryFile file(TemporaryFolder());
  Problem problem = file.WhyNot().empty() ? WriteRecord(record, format, file.Name()) : file.WhyNot();
  if (!problem.empty()) return "standard output " + problem;
  SetBinary(stdout);
  std::cout << std::ifstream(PathOf(file.Name()), std::ios::binary).rdbuf();
  return {};
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

Problem Save(PrnType& record, const std::string& source, int number, const Format& format, Output& output) {
  if (Problem problem = CannotHold(format, record); !problem.empty()) return problem;
  if (output.file == kStandard) return number > 0 ? "standard output takes one item only" : Print(record, format);
  std::error_code error;
  if (!output.folder.empty()) fs::create_directories(PathOf(output.folder), error);
  fs::path target = TargetOf(output, source, number, format);
  if (Problem problem = CannotReplace(target, output); !problem.empty()) return problem;
  target = Resolved(target);
  decltype(output.written) made = {{target, source}};  // memory runs out here, not when the file is there
  Problem problem = Write(record, format, target, output.force);
  if (problem.empty()) output.written.merge(made);
  return problem;
}

}  // namespace kem::tool
