// A command of kem is one row of the table in main.cpp, and one function that declares its options.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <string>
#include <vector>

namespace kem::tool {

// What is left to do once the options are parsed; returns the exit status.
using Run = std::function<int()>;

struct Command {
  const char* name;
  const char* summary;  // one line
  const char* details;  // what the options do not say; indented lines are kept as they are
  Run (*define)(CLI::App& app);
};

// Exit status: 0 when everything asked for was done.
inline constexpr int kFailed = 1;
inline constexpr int kMisused = 2;

// Ends a sentence about a command that there is not.
inline constexpr const char* kSeeHelp = "; kem --help lists the commands";

// The options that commands share.
void AddFiles(CLI::App& app, std::vector<std::string>& files);
CLI::Option* AddItem(CLI::App& app, int& item);

Run DefineInfo(CLI::App& app);
Run DefineItems(CLI::App& app);
Run DefineConvert(CLI::App& app);
Run DefineHelp(CLI::App& app);

}  // namespace kem::tool
