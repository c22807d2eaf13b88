// Loops compiled twice: for every processor, and for the wider vectors that most have. No source but this one knows
// about processors, and results do not depend on them: sums keep their order, and only neighbours share a vector.
#pragma once

namespace kem::record {

#if defined(__x86_64__) && defined(__GNUC__) && !defined(_WIN32)  // under Windows GCC does not align wide vectors

// Whether loops take the wide vectors; tests turn them off.
inline bool wideVectors = __builtin_cpu_supports("avx2");

template <class Loop>
[[gnu::target("avx2"), gnu::flatten, gnu::noinline]] void RunWide(const Loop& captured) {
  // Its own, which nothing that the loop writes can change. As a parameter the caller would copy it, in smaller
  // pieces than are read here, and reading would wait for them.
  const Loop loop = captured;
  loop();
}

#else

inline bool wideVectors = false;

template <class Loop>
void RunWide(const Loop&) {}

#endif

// Runs a lambda of loops; what it calls is compiled into it.
template <class Loop>
void WithVectors(Loop loop) {
  if (wideVectors)
    RunWide(loop);
  else
    loop();
}

}  // namespace kem::record
