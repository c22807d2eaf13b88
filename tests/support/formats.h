// What the tests of the exchange formats share: bytes to a record and a record to bytes.
#pragma once

#include <string>

#include "support/loads.h"
#include "support/records.h"

namespace kem::test {

// A file read by one of the readers.
struct Read {
  TempFolder folder;
  PrnType record;
  int result = 0;

  template <class... Arguments>
  Read(const std::string& bytes, int (PrnType::*reader)(std::ifstream&, Arguments...), Arguments... arguments) {
    std::ifstream in(folder.Write("in", bytes), std::ios::binary);
    result = (record.*reader)(in, arguments...);
  }
};

// A file written by one of the writers, empty when it was refused; lines of text end in line feeds.
inline std::string Written(const PrnType& record, int (PrnType::*writer)(char*) const) {
  const TempFolder folder;
  std::string path = folder.Path("出力 µ");
  std::string nowhere = folder.Path("no/such/folder");
  const int result = (record.*writer)(path.data());
  CHECK(result == static_cast<int>(std::filesystem::exists(PathOf(path))));
  CHECK((record.*writer)(nowhere.data()) == 0);
  std::string bytes = ReadBytes(path);
  if (bytes.substr(0, 2) != "[B") std::erase(bytes, '\r');
  return bytes;
}

}  // namespace kem::test
