// Memory that runs out where no exception can pass: before main, and in functions of other libraries that must not
// throw. Elsewhere it is caught.
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <new>

namespace {

[[noreturn]] void End() {
  try {
    if (const std::exception_ptr error = std::current_exception()) std::rethrow_exception(error);
  } catch (const std::bad_alloc&) {
    std::fputs("kem: there is not enough memory\n", stderr);
    std::_Exit(1);
  } catch (...) {  // is none of its business
  }
  std::abort();
}

// Ahead of all other constructors of the program.
[[gnu::constructor(101)]] void Install() { std::set_terminate(End); }

}  // namespace
