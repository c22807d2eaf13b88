// Going through the files of a command line: failures are named one by one and never stop the rest.
#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace kem::tool {

// What is wrong, as the end of a sentence that begins with a file's name; empty when nothing is.
using Problem = std::string;

// Prints a sentence on standard error.
void Complain(std::string_view sentence);

// Names the problem of a file, if there is one, on standard error. Returns whether there is none.
bool NoProblem(std::string_view file, const Problem& problem);

// Runs an action, which tells whether it succeeded, on every file, and once on a pair of files. `done`
// ("converted") asks for a progress bar on a terminal and for a summary of several files. Returns the exit status.
int EachFile(const std::vector<std::string>& given, std::string_view done,
             const std::function<bool(const std::string& file)>& action);

}  // namespace kem::tool
