// Writing records: the options, where results go, and files that appear only when complete.
#pragma once

#include <CLI/CLI.hpp>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>

#include "format.h"
#include "input.h"

namespace kem::tool {

// Where the results of a command go.
struct Output {
  std::string file;    // -o
  std::string folder;  // --dir
  std::string format;  // --to
  bool force = false;
  bool matrix = false;    // --matrix, of csv
  bool header = false;    // --header, of csv
  bool metadata = false;  // --metadata
  bool keepTree = false;  // --keep-tree
  bool update = false;    // --update
  std::string report;     // --report
  std::size_t jobs = 0;   // --jobs; 0 for one on each processor
  struct Made {
    std::mutex mutex;
    std::map<std::filesystem::path, std::string> from;  // files of this run, and what they came from
  };
  std::shared_ptr<Made> made = std::make_shared<Made>();

  bool IsAsked() const { return !(file.empty() && folder.empty() && format.empty()); }
};

// The options of one file, and those of a file or a folder.
CLI::Option* AddOutputFile(CLI::App& app, Output& output);
void AddOutput(CLI::App& app, Output& output);

// The format asked for, by name or by the extension of the output file; null and a sentence on standard error
// when neither tells.
const Format* FormatOf(const CLI::App& app, const Output& output);

// Where what comes from a file goes; `label` is put behind the name.
std::filesystem::path TargetOf(const Output& output, const File& source, const std::string& label,
                               const char* extension);

// Whether a target is there and no file that it comes from is newer.
bool IsUpToDate(const std::filesystem::path& target, const std::string& source);

// The report of what became of files, which --report asks for. An existing file is replaced when --force or
// --update is given.
Problem CannotReport(const Output& output);
Problem WriteReport(const Output& output, std::span<const Turn> turns);

// Writes what came from a file: to the file that was asked for, else beside its source or in the folder asked for.
// `label` is put behind the name. As csv an input whose dataset is still there is written as that, else its record
// is; its axes become what the format can tell.
Problem Save(Input& input, const std::string& label, const Format& format, Output& output);

// Fills a file with a text.
Problem WriteText(const std::string& text, const std::string& name);

// Writes what a function fills an empty file with, and it may tell why it cannot, to the file that was asked for.
Problem SaveFile(const std::function<Problem(const std::string& name)>& write, Output& output);

}  // namespace kem::tool
