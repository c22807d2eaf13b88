// Shows the file dialog with a buffer of the given size and prints what KemFileName returned and stored.
#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <string_view>
#include <vector>

#include "kem.h"

int main(int count, char** arguments) {
  const int size = count > 1 ? std::atoi(arguments[1]) : 0;
  constexpr std::size_t kGuard = 16;
  std::vector<char> buffer(static_cast<std::size_t>(std::max(size, 0)) + kGuard, '#');
  const int result = KemFileName(buffer.data(), size);
  const std::string_view text(buffer.data(), buffer.size());
  const auto end = std::min(text.find('\0'), text.size());
  const bool beyond = text.substr(text.size() - kGuard) != std::string_view("################");
  std::cout << result << ' '
            << (beyond               ? "wrote past the end"
                : end == text.size() ? "untouched"
                                     : text.substr(0, end))
            << std::endl;
}
