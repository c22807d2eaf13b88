// A command of kem is one row of the table in commands.cpp, and one function that declares its options.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <span>
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

// Make one of two options required; the second refuses both together.
void RequireAny(CLI::App& app, const CLI::Option* first, const CLI::Option* second);
void RequireOne(CLI::App& app, CLI::Option* first, CLI::Option* second);

Run DefineInfo(CLI::App& app);
Run DefineItems(CLI::App& app);
Run DefineConvert(CLI::App& app);
Run DefineSlice(CLI::App& app);
Run DefineCut(CLI::App& app);
Run DefineReduce(CLI::App& app);
Run DefineResample(CLI::App& app);
Run DefineSwap(CLI::App& app);
Run DefineSort(CLI::App& app);
Run DefineCalc(CLI::App& app);
Run DefineMedian(CLI::App& app);
Run DefineSmooth(CLI::App& app);
Run DefineDiff(CLI::App& app);
Run DefineBaseline(CLI::App& app);
Run DefineSlant(CLI::App& app);
Run DefineIntegrate(CLI::App& app);
Run DefineStats(CLI::App& app);
Run DefineHistogram(CLI::App& app);
Run DefineHelp(CLI::App& app);

// All commands, in the order in which the help lists them.
std::span<const Command> Commands();

}  // namespace kem::tool
