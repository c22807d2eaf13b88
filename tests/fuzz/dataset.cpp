// Opens the items of files as they were meant, and makes records of them.
#include <new>

#include "fuzz/files.h"
#include "kem/dataset.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  const kem::fuzz::Files files({bytes, size});
  try {
    (void)kem::Identify(files.Path());
    const std::size_t items = kem::Items(files.Path()).size();
    const std::size_t item = 1 + files.Choice() % std::max<std::size_t>(items, 1);
    const kem::Dataset dataset = kem::Open(files.Path(), static_cast<int>(item));
    (void)dataset.ToRecord();
  } catch (const kem::Error&) {      // it is no such file, or damaged
  } catch (const std::bad_alloc&) {  // it announces more than it may
  }
  return 0;
}
