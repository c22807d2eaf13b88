// Writing records: the formats there are, what each can hold, and files that appear only when complete.
#pragma once

#include <CLI/CLI.hpp>
#include <filesystem>
#include <map>
#include <span>
#include <string>

#include "input.h"

namespace kem::tool {

// A format that records can be written in.
struct Format {
  const char* name;  // the extension of its files
  const char* what;
  bool curves;
  bool grids;
  int mostPoints;                                     // along an axis; 0 for any number
  bool (*write)(const PrnType& record, char* const);  // whether the file is complete
};

std::span<const Format> Formats();

// Where the results of a command go.
struct Output {
  std::string file;    // -o
  std::string folder;  // --dir
  std::string format;  // --to
  bool force = false;
  std::map<std::filesystem::path, std::string> written = {};  // files of this run, and what they came from

  bool IsAsked() const { return !(file.empty() && folder.empty() && format.empty()); }
};

// The options of one file, and those of a file or a folder.
CLI::Option* AddOutputFile(CLI::App& app, Output& output);
void AddOutput(CLI::App& app, Output& output);

// The format asked for, by name or by the extension of the output file; null and a sentence on standard error
// when neither tells.
const Format* FormatOf(const CLI::App& app, const Output& output);

// Writes a record that came from a file: to the file that was asked for, else beside its source or in the folder
// asked for. `number` is put behind the name; 0 for none.
Problem Save(const PrnType& record, const std::string& source, int number, const Format& format, Output& output);

// Removes an unfinished file when the program is interrupted.
void HandleInterrupts();

}  // namespace kem::tool
