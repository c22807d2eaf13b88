#include "system.h"

#ifdef _WIN32
#include <windows.h>
#else
#include <sys/ioctl.h>
#endif

#include <cstdlib>

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

std::shared_ptr<void> Utf8Console() {
  const UINT before = GetConsoleOutputCP();
  SetConsoleOutputCP(CP_UTF8);
  return {nullptr, [before](void*) { SetConsoleOutputCP(before); }};
}

#else

std::shared_ptr<void> Utf8Console() { return {}; }

#endif

}  // namespace kem::tool
