// Memory that runs out at will. memory.cpp replaces the global operators of a program that it is linked with, or
// loaded into before all others; the latter reads KEM_ALLOCATIONS, and writes what is left of it to the file that
// KEM_ALLOCATIONS_LEFT names.
#pragma once

namespace kem::test {

struct Memory {
  long live = 0;   // allocations that have not been released
  long left = -1;  // allocations until one fails; none does when negative
};
extern Memory memory;

}  // namespace kem::test
