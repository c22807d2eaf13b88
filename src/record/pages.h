// The pages of the system in which memory comes. Where it tells nothing of them, these do nothing.
#pragma once

#include <cstddef>
#include <span>

namespace kem::record {

// Has memory that has not been written come in large pages, if there is much of it.
void PreferLargePages(std::span<std::byte> memory);

// Called before memory is taken in one block or many: has the heap, which grows by some small pages at a time, grow
// by large ones ahead of them.
void GrowHeapFor(std::size_t size);

// Puts pages in place that read as 0 and take memory when they are written. Returns whether the system did.
bool DropPages(std::span<std::byte> memory);

}  // namespace kem::record
