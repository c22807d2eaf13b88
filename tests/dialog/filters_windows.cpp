// Compares the filter list of the open file dialog, wherever it runs, with the one that it was to show.
#include "host/dialog_filters.h"

#include <windows.h>

#include <dlgs.h>

#include <iostream>
#include <iterator>
#include <string>
#include <string_view>

using kem::host::kDialogFilters;

int main() {
  HWND list = nullptr;
  EnumChildWindows(
      FindWindowA(nullptr, kem::host::kDialogTitle),
      [](HWND child, LPARAM found) {
        if (GetDlgCtrlID(child) == cmb1) *reinterpret_cast<HWND*>(found) = child;
        return TRUE;
      },
      reinterpret_cast<LPARAM>(&list));
  const auto count = SendMessageA(list, CB_GETCOUNT, 0, 0);
  if (count != std::ssize(kDialogFilters)) {
    std::cout << count << " filters" << std::endl;
    return 1;
  }
  for (WPARAM k = 0; k < std::size(kDialogFilters); ++k) {
    wchar_t text[256] = {};
    SendMessageW(list, CB_GETLBTEXT, k, reinterpret_cast<LPARAM>(text));
    const std::string_view expected = kDialogFilters[k].description;
    if (std::wstring(expected.begin(), expected.end()) == text) continue;
    std::cout << "filter " << k << " is not \"" << expected << '"' << std::endl;
    return 1;
  }
}
