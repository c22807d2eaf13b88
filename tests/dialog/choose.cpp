// Shows the file dialog with a buffer of the given size and prints what KemFileName returned and stored.
#include <algorithm>
#include <cstdlib>
#include <iostream>
#include <vector>

#include "kem.h"

int main(int count, char** arguments) {
  const int size = count > 1 ? std::atoi(arguments[1]) : 0;
  constexpr std::size_t kGuard = 16;
  std::vector<char> buffer(static_cast<std::size_t>(std::max(size, 0)) + kGuard, '#');
  const int result = KemFileName(buffer.data(), size);
  if (std::count(buffer.end() - kGuard, buffer.end(), '#') != kGuard) {
    std::cout << "wrote past the end" << std::endl;
    return 1;
  }
  buffer.back() = '\0';  // after a cancelled dialog the buffer is as it was
  std::cout << result << ' ' << buffer.data() << std::endl;
}
