// What the tests of the exchange formats share: bytes to a record and a record to bytes.
#pragma once

#include <string>

#include "support/support.h"

namespace kem::test {

// A file read by one of the readers.
struct Read {
  TempFolder folder;
  PrnType record;
  int result = 0;

  Read(const std::string& bytes, int (PrnType::*reader)(std::ifstream&)) {
    std::ifstream in(folder.Write("in", bytes), std::ios::binary);
    result = (record.*reader)(in);
  }
};

// A file written by one of the writers, line ends as line feeds; checks that refusals create nothing.
inline std::string Written(const PrnType& record, int (PrnType::*writer)(char*) const) {
  const TempFolder folder;
  std::string path = folder.Path("out");
  const int result = (record.*writer)(path.data());
  CHECK(result == static_cast<int>(std::filesystem::exists(path)));
  if (result) CHECK(WriteFailedFlag == 0);
  std::string nowhere = folder.Path("no/such/folder");
  CHECK((record.*writer)(nowhere.data()) == 0);
  std::string text = ReadBytes(path);
#ifdef _WIN32
  if (text.substr(0, 2) != "[B") std::erase(text, '\r');
#endif
  return text;
}

// The same text as made by hand under Windows.
inline std::string WithCrLf(const std::string& text) {
  std::string lines;
  for (const char c : text) lines += c == '\n' ? std::string("\r\n") : std::string(1, c);
  return lines;
}

inline bool ThrowsBadAlloc(const std::string& bytes, int (PrnType::*reader)(std::ifstream&)) {
  try {
    const Read file(bytes, reader);
  } catch (const std::bad_alloc&) {
    return true;
  }
  return false;
}

}  // namespace kem::test
