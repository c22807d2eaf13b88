// The file chooser under Linux: zenity or kdialog, whichever the desktop has, as a program of its own.
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "host/dialog_filters.h"
#include "kem.h"
#include "text/words.h"

using namespace kem::host;
using namespace kem::text;

namespace {

using Arguments = std::vector<std::string>;

// Under Windows neither case matters nor does "*.*" ask for a dot.
std::string Widened(std::string_view pattern) {
  std::string wide;
  for (const char c : pattern == "*.*" ? "*" : pattern) {
    if (IsLower(c) || IsUpper(c))
      wide += {'[', Lower(c), Upper(c), ']'};
    else
      wide += c;
  }
  return wide;
}

// "*.spc;\t\t*.b3d" becomes "*.[sS][pP][cC] *.[bB]3[dD]".
std::string Patterns(std::string_view list) {
  std::string patterns;
  while (!list.empty()) {
    const auto end = std::min(list.find(';'), list.size());
    if (!patterns.empty()) patterns += ' ';
    patterns += Widened(Trimmed(list.substr(0, end)));
    list.remove_prefix(std::min(end + 1, list.size()));
  }
  return patterns;
}

std::string Description(const DialogFilter& filter) { return std::string(Trimmed(filter.description)); }

Arguments Zenity() {
  Arguments arguments = {"zenity", "--file-selection", std::string("--title=") + kDialogTitle};
  for (const DialogFilter& filter : kDialogFilters) {
    arguments.push_back("--file-filter=" + Description(filter) + " | " + Patterns(filter.patterns));
  }
  return arguments;
}

Arguments KDialog() {
  std::string filters;
  for (const DialogFilter& filter : kDialogFilters) {
    if (!filters.empty()) filters += " | ";
    filters += Description(filter) + " (" + Patterns(filter.patterns) + ")";
  }
  return {"kdialog", "--title", kDialogTitle, "--getopenfilename", ".", filters};
}

// Runs a program found on PATH, without a shell, and keeps what it prints; false when it cannot be started.
bool Run(const Arguments& arguments, std::string& printed, int& status) {
  std::vector<char*> argv;
  for (const std::string& argument : arguments) argv.push_back(const_cast<char*>(argument.c_str()));
  argv.push_back(nullptr);

  int ends[2];
  if (pipe2(ends, O_CLOEXEC) != 0) return false;
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, ends[1], STDOUT_FILENO);
  posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
  pid_t child = 0;
  const bool started = posix_spawnp(&child, argv[0], &actions, nullptr, argv.data(), environ) == 0;
  posix_spawn_file_actions_destroy(&actions);
  close(ends[1]);
  if (started) {
    char part[4096];
    for (ssize_t count; (count = read(ends[0], part, sizeof part)) > 0 || (count < 0 && errno == EINTR);) {
      if (count > 0) printed.append(part, static_cast<std::size_t>(count));
    }
    // A host that ignores SIGCHLD learns no status; there it stays 0 and the printed name decides.
    while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
    }
  }
  close(ends[0]);
  return started;
}

bool IsKde() {
  const char* desktop = std::getenv("XDG_CURRENT_DESKTOP");
  return desktop && std::string_view(desktop).find("KDE") != std::string_view::npos;
}

}  // namespace

int KemFileName(char* buffer, int size) {
  if (!buffer || size <= 0) return 1;
  Arguments choosers[] = {Zenity(), KDialog()};
  if (IsKde()) std::swap(choosers[0], choosers[1]);
  std::string path;
  int status = 0;
  if (!Run(choosers[0], path, status) && !Run(choosers[1], path, status)) return 1;
  if (path.ends_with('\n')) path.pop_back();
  if (status != 0 || path.empty()) return 1;
  const bool fits = path.size() < static_cast<std::size_t>(size);
  buffer[fits ? path.copy(buffer, path.size()) : 0] = '\0';
  return 0;
}
