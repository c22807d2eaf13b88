// The file chooser under Windows: the common dialog.
#include <windows.h>

#include <commdlg.h>

#include <cstdlib>
#include <string>
#include <string_view>
#include <vector>

#include "host/dialog_filters.h"
#include "kem.h"

using namespace kem::host;

namespace {

constexpr DWORD kFlags =
    OFN_DONTADDTORECENT | OFN_EXPLORER | OFN_FILEMUSTEXIST | OFN_PATHMUSTEXIST | OFN_ALLOWMULTISELECT;
static_assert(kFlags == 0x2081A00 && sizeof(OPENFILENAMEW) == 152);

// The dialog's texts are plain ASCII.
std::wstring Widen(std::string_view text) { return {text.begin(), text.end()}; }

// Descriptions and patterns in turn, each ended by NUL; the NUL that ends the string ends the list.
std::wstring FilterList() {
  std::wstring list;
  for (const auto& [description, patterns] : kDialogFilters) {
    for (const char* text : {description, patterns}) list += Widen(text) + L'\0';
  }
  return list;
}

}  // namespace

int KemFileName(char* buffer, int size) {
  if (!buffer || size <= 0) return 1;
  const auto capacity = static_cast<std::size_t>(size);
  std::vector<wchar_t> path(capacity);
  const std::wstring filters = FilterList();
  const std::wstring title = Widen(kDialogTitle);
  OPENFILENAMEW dialog = {};
  dialog.lStructSize = sizeof dialog;
  dialog.lpstrFilter = filters.c_str();
  dialog.lpstrFile = path.data();
  dialog.nMaxFile = static_cast<DWORD>(size);
  dialog.lpstrTitle = title.c_str();
  dialog.Flags = kFlags;
  // A path that does not fit was chosen all the same: the caller sees success and an empty name.
  const bool chosen = GetOpenFileNameW(&dialog) != 0;
  if (!chosen && CommDlgExtendedError() != FNERR_BUFFERTOOSMALL) return 1;
  buffer[0] = '\0';
  if (!chosen) return 0;
  // Several chosen files follow their folder after NULs; the conversion ends at the first. It is asked for the
  // length beforehand because the C runtime may end the process when a text does not fit.
  std::size_t needed = 0;
  wcstombs_s(&needed, nullptr, 0, path.data(), 0);
  if (needed <= capacity) wcstombs_s(&needed, buffer, capacity, path.data(), capacity);
  return 0;
}
