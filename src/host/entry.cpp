// Plain functions for hosts that keep one current record.
#include "kem.h"

#include <memory>
#include <new>
#include <utility>

PrnType* prn = nullptr;
int ReadNextFlag = 0;
int WriteFailedFlag = 0;
float ReadXFactor = 1;
float ReadYFactor = 1;
int ReadMostMissing = 64 << 20;
double ReadAnnounced = 0;
double ReadFileBytes = 0;
int nKemDll = 0;

namespace {
// What the first load makes the current record before its own: there may be no memory for that. Hosts may delete
// it like any other.
std::unique_ptr<PrnType> empty(new (std::nothrow) PrnType);
}  // namespace

CKemDll::CKemDll() = default;
CKemDll& CKemDll::operator=(const CKemDll&) { return *this; }
CKemDll& CKemDll::operator=(CKemDll&&) noexcept { return *this; }

int KemOpenFile(char* name, int index) {
  if (!prn) prn = empty.release();
  if (prn) prn->DeAllocate();
  // No file has an empty name: this is a record of zero bytes, for which no hook has run. It is the current one
  // from here on, so that a load that throws leaves it empty.
  auto record = std::make_unique<PrnType>("", 0);
  // The name may lie inside the record that goes.
  const std::unique_ptr<PrnType> previous(std::exchange(prn, record.release()));
  prn->ReadFile(name, index);
  return !*prn;
}

int KemCloseFile() { return 0; }

int fnKemDll() { return 42; }

const char* KemVersion() { return KEM_VERSION; }
