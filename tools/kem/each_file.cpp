#include "each_file.h"

#ifndef _WIN32
#include <sys/ioctl.h>
#endif
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <iostream>
#include <new>

#include "command.h"
#include "pairs.h"
#include "text.h"

namespace kem::tool {
namespace {

// Columns of the terminal that shows standard error.
std::size_t TerminalWidth() {
#ifdef TIOCGWINSZ
  winsize size = {};
  if (ioctl(fileno(stderr), TIOCGWINSZ, &size) == 0 && size.ws_col > 0) return size.ws_col;
#endif
  const char* columns = std::getenv("COLUMNS");
  const int width = columns ? std::atoi(columns) : 0;
  return width > 0 ? static_cast<std::size_t>(width) : 80;
}

// As many whole characters of a text in UTF-8 as surely fit: those of East Asia take two columns.
std::string Fitting(std::string_view text, std::size_t columns) {
  std::string fitting;
  for (std::size_t at = 0, next = 0; at < text.size(); at = next) {
    for (next = at + 1; next < text.size() && (text[next] & 0xC0) == 0x80;) ++next;
    const std::size_t width = static_cast<unsigned char>(text[at]) >= 0xE1 ? 2 : 1;
    if (width > columns) break;
    columns -= width;
    const bool control = static_cast<unsigned char>(text[at]) < ' ' || text[at] == 0x7F;
    fitting += control ? "?" : text.substr(at, next - at);
  }
  return fitting;
}

// One line of a terminal that is written over and over, and cleared before anything else is said.
bool barIsShown = false;

void ClearProgress() {
  if (barIsShown) std::cerr << '\r' << std::string(TerminalWidth() - 1, ' ') << '\r' << std::flush;
  barIsShown = false;
}

void ShowProgress(std::size_t done, std::size_t count, const std::string& file) {
  ClearProgress();
  const std::size_t width = TerminalWidth();
  const std::size_t bar = std::min<std::size_t>(width / 3, 30);
  const std::size_t filled = bar * done / count;
  std::string line = '[' + std::string(filled, '#') + std::string(bar - filled, '.') + "] ";
  line += std::to_string(done) + '/' + std::to_string(count) + ' ' + file;
  std::cerr << Fitting(line, width - 1) << std::flush;
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
  std::cerr << "kem: " << Printable{sentence} << std::endl;
}

bool NoProblem(std::string_view file, const Problem& problem) {
  if (!problem.empty()) Complain(std::string(file) + ": " + problem);
  return problem.empty();
}

int EachFile(const std::vector<std::string>& given, std::string_view done,
             const std::function<bool(const std::string& file)>& action) {
  const std::vector<std::string> files = EachPairOnce(given);
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
