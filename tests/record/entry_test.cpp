#include "support/support.h"

using namespace kem::test;

TEST_CASE("entry: the current record is the last load, failed or not") {
  const TempFolder folder;
  std::string file = folder.Write("a.xyz", "XY\nx\ny\n1\n2\nn\n\n1 2\n3 4\n");
  std::string missing = folder.Path("missing");
  CHECK(prn == nullptr);
  REQUIRE(KemOpenFile(file.data(), 0) == 0);
  REQUIRE(prn != nullptr);
  CHECK(prn->nY == 2);
  REQUIRE(KemOpenFile(prn->fileName, 0) == 0);  // a name inside the record that goes
  CHECK(std::string(prn->fileName) == file);
  PrnType* const before = prn;
  CHECK(KemCloseFile() == 0);
  CHECK(prn == before);
  CHECK(KemOpenFile(missing.data(), 0) == 1);
  CHECK(!*prn);
  CHECK(prn->nY == 0);
  CHECK(fnKemDll() == 42);
  CHECK(nKemDll == 0);
  delete prn;
  prn = nullptr;
}

TEST_CASE("entry: raw storage is cleared as far as asked") {
  PrnType r;
  r.nX = 5;
  r.nY = 6;
  r.__autoclassinit2(offsetof(PrnType, nY));
  CHECK(r.nX == 0);
  CHECK(r.nY == 6);
}
