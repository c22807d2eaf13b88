// Writing records: the options, where results go, and files that appear only when complete.
#pragma once

#include <CLI/CLI.hpp>
#include <filesystem>
#include <map>
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
  bool matrix = false;                                        // --matrix, of csv
  bool metadata = false;                                      // --metadata
  std::map<std::filesystem::path, std::string> written = {};  // files of this run, and what they came from

  bool IsAsked() const { return !(file.empty() && folder.empty() && format.empty()); }
};

// The options of one file, and those of a file or a folder.
CLI::Option* AddOutputFile(CLI::App& app, Output& output);
void AddOutput(CLI::App& app, Output& output);

// The format asked for, by name or by the extension of the output file; null and a sentence on standard error
// when neither tells.
const Format* FormatOf(const CLI::App& app, const Output& output);

// Writes what came from a file: to the file that was asked for, else beside its source or in the folder asked for.
// `label` is put behind the name. As csv an input whose dataset is still there is written as that, else its record
// is; its axes become what the format can tell.
Problem Save(Input& input, const std::string& label, const Format& format, Output& output);

}  // namespace kem::tool
