// The pages of the system in which memory comes. Where it tells nothing of them, these do nothing.
#pragma once

#include <cstddef>
#include <span>

namespace kem::record {

// From this size on memory is asked for in large pages: a turn of the system for every small one takes longer than
// writing to it.
constexpr std::size_t kManyPages = std::size_t{4} << 20;

// Has memory that has not been written come in large pages, if there is much of it.
void PreferLargePages(std::span<std::byte> memory);

// Called before a block is taken: has the heap, which grows by some small pages at a time, grow by large ones ahead
// of many blocks of a page or more.
void GrowHeapFor(std::size_t block);

// Puts pages in place that read as 0 and take memory when they are written. Returns whether the system did.
bool DropPages(std::span<std::byte> memory);

}  // namespace kem::record
