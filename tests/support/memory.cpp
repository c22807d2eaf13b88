#include "support/memory.h"

#include <cstdio>
#include <cstdlib>
#include <new>

namespace kem::test {

constinit Memory memory;

namespace {

struct FromEnvironment {
  FromEnvironment() {
    if (const char* count = std::getenv("KEM_ALLOCATIONS")) memory.left = std::atol(count);
  }
  ~FromEnvironment() {
    const char* path = std::getenv("KEM_ALLOCATIONS_LEFT");
    std::FILE* file = path ? std::fopen(path, "w") : nullptr;
    if (!file) return;
    std::fprintf(file, "%ld", memory.left);
    std::fclose(file);
  }
} fromEnvironment;

}  // namespace
}  // namespace kem::test

using kem::test::memory;

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  const bool fails = memory.left >= 0 && memory.left-- == 0;
  void* const bytes = fails ? nullptr : std::malloc(size + 1);
  if (bytes) ++memory.live;
  return bytes;
}

void* operator new(std::size_t size) {
  void* const bytes = operator new(size, std::nothrow);
  if (!bytes) throw std::bad_alloc();
  return bytes;
}

void operator delete(void* bytes) noexcept {
  if (bytes) --memory.live;
  std::free(bytes);
}

void operator delete(void* bytes, std::size_t) noexcept { operator delete(bytes); }
