// Plain functions for hosts that keep one current record.
#include "kem.h"

#include <memory>

PrnType* prn = nullptr;
int ReadNextFlag = 0;
int WriteFailedFlag = 0;
float ReadXFactor = 1;
float ReadYFactor = 1;
int nKemDll = 0;

CKemDll::CKemDll() = default;
CKemDll& CKemDll::operator=(const CKemDll&) { return *this; }
CKemDll& CKemDll::operator=(CKemDll&&) noexcept { return *this; }

// The name may lie inside the record that is about to go, so it is kept until the new one has been loaded.
int KemOpenFile(char* name, int index) {
  const std::unique_ptr<PrnType> previous(prn);
  if (previous) previous->DeAllocate();
  prn = nullptr;
  auto record = std::make_unique<PrnType>();
  record->__autoclassinit2(sizeof *record);
  record->ReadFile(name, index);
  prn = record.release();
  return !*prn;
}

int KemCloseFile() { return 0; }

int fnKemDll() { return 42; }

const char* KemVersion() { return KEM_VERSION; }
