#include <utility>

#include "support/support.h"

using namespace kem::test;

TEST_CASE("entry: the current record is the last load, failed or not") {
  const TempFolder folder;
  std::string file = folder.Write("a.xyz", "XY\nx\ny\n1\n2\nn\n\n1 2\n3 4\n");
  std::string missing = folder.Path("missing");
  CHECK(prn == nullptr);
  REQUIRE((KemOpenFile(file.data(), 0) == 0 && prn));
  CHECK(prn->nY == 2);
  REQUIRE(KemOpenFile(prn->fileName, 0) == 0);  // a name inside the record that goes
  PrnType* const before = prn;
  CHECK((KemCloseFile() == 0 && prn == before && prn->fileName == file));
  CHECK((KemOpenFile(missing.data(), 0) == 1 && !*prn && prn->nY == 0));
  CHECK((fnKemDll() == 42 && nKemDll == 0));
  delete std::exchange(prn, nullptr);
}

TEST_CASE("entry: a host's objects are made by loads alone and all freed") {
  static int created = 0;
  static int freed = 0;
  ExtensionCreateHook = [](void** e) { *e = &++created; };
  ExtensionFreeHook = [](void**) { ++freed; };
  const TempFolder folder;
  const std::string xy = "XY\nx\ny\n1\n2\nn\n\n1 2\n";
  struct Load {
    std::string file;
    int created, freed;  // by this load: a reader makes an object, so does every load that succeeds
  };
  const Load loads[] = {
      {folder.Write("a.xyz", xy), 2, 0},
      {folder.Path("missing"), 0, 1},  // frees the earlier record's alone
      {folder.Path("missing"), 0, 0},
      {folder.Write("b.crv", "no curve"), 1, 1},  // its reader resets the record and refuses
      {folder.Write("c.crv", xy), 3, 1},          // and leaves it to another
  };
  for (const Load& load : loads) {
    CAPTURE(load.file);
    created = freed = 0;
    std::string name = load.file;
    CHECK(KemOpenFile(name.data(), 0) == (load.created < 2));
    CHECK((created == load.created && freed == load.freed));
    CHECK((prn->extension == nullptr) == !*prn);
  }
  delete std::exchange(prn, nullptr);
  ExtensionCreateHook = nullptr;
  ExtensionFreeHook = nullptr;
}

TEST_CASE("entry: raw storage is cleared as far as asked") {
  PrnType r;
  r.nX = 5;
  r.nY = 6;
  r.__autoclassinit2(offsetof(PrnType, nY));
  CHECK((r.nX == 0 && r.nY == 6));
}
