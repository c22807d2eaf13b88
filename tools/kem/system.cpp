#include "system.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <fcntl.h>
#include <spawn.h>
#include <sys/ioctl.h>
#include <sys/wait.h>
#include <unistd.h>
#endif
#ifdef __APPLE__
extern "C" {
extern char** environ;  // elsewhere unistd.h has it
}
#endif

#include <cerrno>
#include <cstdlib>
#include <utility>

namespace kem::tool {
namespace {

namespace fs = std::filesystem;

int NumberOf(const char* variable, int otherwise) {
  const char* text = std::getenv(variable);
  const int number = text ? std::atoi(text) : 0;
  return number > 0 && number < 10000 ? number : otherwise;
}

#ifdef _WIN32

TerminalSize WindowOf(std::FILE* stream) {
  CONSOLE_SCREEN_BUFFER_INFO info;
  if (!GetConsoleScreenBufferInfo(GetStdHandle(stream == stderr ? STD_ERROR_HANDLE : STD_OUTPUT_HANDLE), &info))
    return {0, 0};
  return {info.srWindow.Right - info.srWindow.Left + 1, info.srWindow.Bottom - info.srWindow.Top + 1};
}

#else

TerminalSize WindowOf([[maybe_unused]] std::FILE* stream) {
#ifdef TIOCGWINSZ
  winsize size = {};
  if (ioctl(fileno(stream), TIOCGWINSZ, &size) == 0) return {size.ws_col, size.ws_row};
#endif
  return {0, 0};
}

#endif

}  // namespace

// A name that is not UTF-8 is taken as it is.
fs::path PathOf(const std::string& name) {
  try {
    return std::u8string(name.begin(), name.end());
  } catch (const fs::filesystem_error&) {
    return name;
  }
}

TerminalSize SizeOfTerminal(std::FILE* stream) {
  const TerminalSize window = WindowOf(stream);
  if (window.columns > 0 && window.rows > 0) return window;
  return {NumberOf("COLUMNS", 80), NumberOf("LINES", 24)};
}

#ifdef _WIN32

// The C run time leaves the arguments alone: `*` also multiplies.
extern "C" {
int _dowildcard = 0;
}

namespace {

// A file that another program may use; standard stream `number` of this one where it has no name.
HANDLE Inherited(const std::string& name, DWORD number, bool reads) {
  SECURITY_ATTRIBUTES shared = {sizeof shared, nullptr, TRUE};
  if (name.empty()) return GetStdHandle(number);
  return CreateFileW(PathOf(name).c_str(), reads ? GENERIC_READ : GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                     &shared, OPEN_EXISTING, 0, nullptr);
}

}  // namespace

int RunProgram(const std::string& program, const Streams& streams) {
  STARTUPINFOW start = {};
  start.cb = sizeof start;
  start.dwFlags = STARTF_USESTDHANDLES;
  start.hStdInput = Inherited(streams.in, STD_INPUT_HANDLE, true);
  start.hStdOutput = Inherited(streams.out, STD_OUTPUT_HANDLE, false);
  start.hStdError = Inherited(streams.errors, STD_ERROR_HANDLE, false);
  std::wstring line = PathOf(program).wstring();
  PROCESS_INFORMATION process = {};
  DWORD status = 1;
  const bool started =
      CreateProcessW(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &start, &process) != 0;
  if (started) {
    WaitForSingleObject(process.hProcess, INFINITE);
    GetExitCodeProcess(process.hProcess, &status);
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
  }
  for (const auto& [name, handle] :
       {std::pair(&streams.in, start.hStdInput), std::pair(&streams.out, start.hStdOutput),
        std::pair(&streams.errors, start.hStdError)})
    if (!name->empty()) CloseHandle(handle);
  return started ? static_cast<int>(status) : kNoProgram;
}

std::shared_ptr<void> Utf8Console() {
  const UINT before = GetConsoleOutputCP();
  SetConsoleOutputCP(CP_UTF8);
  return {nullptr, [before](void*) { SetConsoleOutputCP(before); }};
}

#else

int RunProgram(const std::string& program, const Streams& streams) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  const auto open = [&actions](int stream, const std::string& name, int how) {
    if (!name.empty()) posix_spawn_file_actions_addopen(&actions, stream, name.c_str(), how, 0);
  };
  open(STDIN_FILENO, streams.in, O_RDONLY);
  open(STDOUT_FILENO, streams.out, O_WRONLY | O_TRUNC);
  open(STDERR_FILENO, streams.errors, O_WRONLY | O_TRUNC);
  std::string name = program;
  char* const words[] = {name.data(), nullptr};
  pid_t child = 0;
  const int failed = posix_spawnp(&child, name.c_str(), &actions, nullptr, words, environ);
  posix_spawn_file_actions_destroy(&actions);
  if (failed != 0) return kNoProgram;
  int status = 0;
  while (waitpid(child, &status, 0) < 0 && errno == EINTR) {
  }
  return WIFEXITED(status) && WEXITSTATUS(status) != 127 ? WEXITSTATUS(status)
         : WIFEXITED(status)                             ? kNoProgram
                                                         : 128;
}

std::shared_ptr<void> Utf8Console() { return {}; }

#endif

}  // namespace kem::tool
