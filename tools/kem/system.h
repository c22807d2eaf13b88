// What differs between systems: names of files, and the terminal. kem holds names in UTF-8 everywhere.
#pragma once

#include <cstdio>
#include <filesystem>
#include <memory>
#include <string>

namespace kem::tool {

// A name as the system takes it.
std::filesystem::path PathOf(const std::string& name);

// Characters that a terminal shows.
struct TerminalSize {
  int columns;
  int rows;
};

// The size of the terminal that shows a stream; of another stream COLUMNS and LINES, or 80 x 24.
TerminalSize SizeOfTerminal(std::FILE* stream);

// Files that a program gets as standard input, output and errors; one without a name is that of this program.
struct Streams {
  std::string in;
  std::string out;
  std::string errors;
};

// Runs a program that is found on the PATH, without a shell, and waits for it. Returns its exit status, or that
// there is no such program.
inline constexpr int kNoProgram = -1;
int RunProgram(const std::string& program, const Streams& streams);

// Lets a Windows console show UTF-8 while what it returns lives.
std::shared_ptr<void> Utf8Console();

}  // namespace kem::tool
