#include "each_file.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <new>

#include "command.h"

namespace kem::tool {
namespace {

constexpr std::size_t kTerminalWidth = 78;
constexpr std::size_t kBarWidth = 30;

// One line of a terminal that is written over and over, and cleared before anything else is said.
bool barIsShown = false;

void ClearProgress() {
  if (barIsShown) std::cerr << '\r' << std::string(kTerminalWidth, ' ') << '\r' << std::flush;
  barIsShown = false;
}

void ShowProgress(std::size_t done, std::size_t count, const std::string& file) {
  const std::size_t filled = kBarWidth * done / count;
  std::string line = '[' + std::string(filled, '#') + std::string(kBarWidth - filled, '.') + "] ";
  line += std::to_string(done) + '/' + std::to_string(count) + ' ' + file;
  line.resize(kTerminalWidth, ' ');
  std::cerr << '\r' << line << std::flush;
  barIsShown = true;
}

bool Succeeds(const std::string& file, const std::function<bool(const std::string&)>& action) {
  try {
    return action(file);
  } catch (const std::bad_alloc&) {
    return NoProblem(file, "there is not enough memory for it");
  }
}

}  // namespace

void Complain(std::string_view sentence) {
  ClearProgress();
  std::cerr << "kem: " << sentence << std::endl;
}

bool NoProblem(std::string_view file, const Problem& problem) {
  if (!problem.empty()) Complain(std::string(file) + ": " + problem);
  return problem.empty();
}

int EachFile(const std::vector<std::string>& files, std::string_view done,
             const std::function<bool(const std::string& file)>& action) {
  const bool several = !done.empty() && files.size() > 1;
  const bool withBar = several && isatty(fileno(stderr)) != 0;
  std::size_t succeeded = 0;
  for (std::size_t k = 0; k < files.size(); ++k) {
    if (withBar) ShowProgress(k, files.size(), files[k]);
    if (Succeeds(files[k], action)) ++succeeded;
  }
  ClearProgress();
  if (several)
    Complain(std::to_string(succeeded) + " of " + std::to_string(files.size()) + " files " + std::string(done));
  return succeeded == files.size() ? 0 : kFailed;
}

}  // namespace kem::tool
