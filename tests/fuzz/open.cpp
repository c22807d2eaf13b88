// kem::Open of every item of any file, and the record made of it: errors are kem::Error.
#include <new>

#include "fuzz/input.h"
#include "kem/dataset.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const kem::fuzz::Folder folder;
  ReadMostMissing = 1 << 16;
  const auto file = folder.Write({data, size});
  constexpr int kMostItems = 3;
  try {
    (void)kem::Identify(file);
    for (const kem::ItemInfo& item : kem::Items(file)) {
      if (item.number > kMostItems) break;
      const kem::Dataset dataset = kem::Open(file, item.number);
      for (const kem::Axis& axis : dataset.axes) (void)axis.End();
      (void)dataset.ToRecord(kem::Part::Magnitude);
    }
  } catch (const kem::Error&) {
  } catch (const std::bad_alloc&) {
  }
  return 0;
}
