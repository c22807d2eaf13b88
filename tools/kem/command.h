// A command of kem is one row of the table in commands.cpp, and one function that declares its options.
#pragma once

#include <CLI/CLI.hpp>
#include <functional>
#include <span>
#include <string>
#include <string_view>

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
inline constexpr int kDamaged = 4;        // of kem check
inline constexpr int kInterrupted = 130;  // by Ctrl-C, after what was begun

Run DefineInfo(CLI::App& app);
Run DefineItems(CLI::App& app);
Run DefineCheck(CLI::App& app);
Run DefineIdentify(CLI::App& app);
Run DefineFormats(CLI::App& app);
Run DefineConvert(CLI::App& app);
Run DefinePlot(CLI::App& app);
Run DefineSlice(CLI::App& app);
Run DefineCut(CLI::App& app);
Run DefineReduce(CLI::App& app);
Run DefineResample(CLI::App& app);
Run DefineAxis(CLI::App& app);
Run DefineSwap(CLI::App& app);
Run DefineSort(CLI::App& app);
Run DefineCalc(CLI::App& app);
Run DefineMedian(CLI::App& app);
Run DefineSmooth(CLI::App& app);
Run DefineDiff(CLI::App& app);
Run DefineBaseline(CLI::App& app);
Run DefineSlant(CLI::App& app);
Run DefineValue(CLI::App& app);
Run DefineIntegrate(CLI::App& app);
Run DefineStats(CLI::App& app);
Run DefineHistogram(CLI::App& app);
Run DefineHelp(CLI::App& app);

// All commands, in the order in which the help lists them.
std::span<const Command> Commands();

// The help of all commands or of one, in the width of the terminal.
std::string HelpText(const CLI::App& app);

// A sentence about a command that there is not, with one that may have been meant.
std::string NoCommand(std::string_view name);

}  // namespace kem::tool
