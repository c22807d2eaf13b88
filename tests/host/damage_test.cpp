// Files of every format, cut, damaged, or hard to read. That loads stay inside of them is seen under sanitizers.
#include "support/files.h"

using namespace kem::test;

namespace {

void LoadQuietly(const std::string& path) try {
  const PrnType record(path.c_str(), 0);
} catch (const std::bad_alloc&) {  // an absurd count may ask for more than there is
}

// Loads a file after all that may happen to it or to its partner.
void LoadHurt(const std::string& path, const TempFolder& folder, const std::string& name,
              const std::string& bytes) {
  for (const std::size_t length : Prefixes(bytes.size(), 150)) {
    folder.Write(name, bytes.substr(0, length));
    LoadQuietly(path);
  }
  Rng rng(kSeed);
  for (int round = 0; round < 100 && !bytes.empty(); ++round) {
    std::string damaged = bytes;
    for (int k = 0; k < 3; ++k) damaged[rng() % damaged.size()] = static_cast<char>(rng());
    folder.Write(name, damaged);
    LoadQuietly(path);
  }
  folder.Write(name, bytes);
}

}  // namespace

TEST_CASE("damage: no load is hurt by what its file lacks or has wrong, nor takes a read error for an end") {
  for (const SmallFile& file : SmallFiles()) {
    CAPTURE(file.name);
    const TempFolder folder;
    const std::string path = folder.Write(file.name, file.bytes);
    if (!file.partner.empty()) folder.Write(file.partner, file.partnerBytes);
    const std::string messages = Printed([&] {
      LoadWithReadErrors(path);
      LoadHurt(path, folder, file.name, file.bytes);
      if (!file.partner.empty()) LoadHurt(path, folder, file.partner, file.partnerBytes);
    });
    const PrnType whole(path.c_str(), 0);
    CHECK(!!whole);
  }
}
