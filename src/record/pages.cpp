#include "record/pages.h"

#ifdef __linux__
#include <sys/mman.h>
#include <unistd.h>

#include <algorithm>
#include <memory>
#include <new>

namespace kem::record {
namespace {

// From this size on memory is asked for in large pages: a turn of the system for every small one takes longer than
// writing to it.
constexpr std::size_t kManyPages = std::size_t{4} << 20;

// Those that lie in memory as a whole.
std::span<std::byte> PagesIn(std::span<std::byte> memory) {
  const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
  void* first = memory.data();
  std::size_t left = memory.size();
  if (!std::align(page, page, first, left)) return {};
  return {static_cast<std::byte*>(first), left / page * page};
}

// By a block that is taken and given back. The first of its size is none of the heap's, the second is.
void GrowHeap(std::size_t size) {
  constexpr std::size_t kLargePage = std::size_t{2} << 20;  // the last one is needed as a whole
  for (int k = 0; k < 2; ++k) {
    auto* const block = static_cast<std::byte*>(::operator new(size + kLargePage, std::nothrow));
    if (block) PreferLargePages({block, size + kLargePage});
    ::operator delete(block);
  }
}

}  // namespace

void PreferLargePages(std::span<std::byte> memory) {
  if (memory.size() < kManyPages) return;
  const auto pages = PagesIn(memory);
  madvise(pages.data(), pages.size(), MADV_HUGEPAGE);
}

void GrowHeapFor(std::size_t size) {
  constexpr std::size_t kAhead = std::size_t{16} << 20;
  thread_local std::size_t left = std::size_t{1} << 20;  // a process that takes less keeps its small pages
  // For much memory always: what was ahead the heap may have given back meanwhile.
  if (size > left || size >= kManyPages) {
    GrowHeap(kAhead);
    left = kAhead;
  }
  left -= std::min(size, left);
}

bool DropPages(std::span<std::byte> memory) {
  const auto pages = PagesIn(memory);
  if (pages.empty()) return false;
  std::byte& mark = pages.front();
  mark = std::byte{1};  // stays in memory of a kind that keeps its content
  if (madvise(pages.data(), pages.size(), MADV_DONTNEED) != 0 || mark != std::byte{0}) return false;
  std::fill(memory.data(), pages.data(), std::byte{0});
  std::fill(pages.data() + pages.size(), memory.data() + memory.size(), std::byte{0});
  return true;
}

}  // namespace kem::record

#else

namespace kem::record {
void PreferLargePages(std::span<std::byte>) {}
void GrowHeapFor(std::size_t) {}
bool DropPages(std::span<std::byte>) { return false; }
}  // namespace kem::record

#endif
