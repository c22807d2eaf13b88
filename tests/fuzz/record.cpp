// Loads files as hosts do, and tries one operation on the record.
#include <new>

#include "fuzz/files.h"
#include "kem.h"
#include "support/operations.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
  using namespace kem::test;
  const kem::fuzz::Files files({bytes, size});
  const std::size_t choice = files.Choice();
  ReadMostMissing = 1 << 14;
  try {
    PrnType record;
    record.ReadFile(files.Path().c_str(), static_cast<int>(choice / std::size(kOperations)) - 1);
    KemItems(
        files.Path().c_str(), [](const KemItem&, void*) {}, nullptr);
    if (!!record) kOperations[choice % std::size(kOperations)](record);
  } catch (const std::bad_alloc&) {  // the file announces more than it may
  }
  return 0;
}
