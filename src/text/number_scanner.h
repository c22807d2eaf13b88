// Takes numbers from a stream exactly as `stream >> value` does with the classic locale, but out of large
// blocks.
#pragma once

#include <istream>
#include <memory>
#include <span>
#include <string_view>

namespace kem::text {

// The same tokens, the same values, the same stopping point and the same state of the stream: a token is the
// longest run that looks like a number; one that is none ("1e", ".") is consumed, gives 0 and fails the stream;
// one that is too large gives the largest float and fails it. The stream, opened in binary mode, gets back what
// was read ahead with the first condition or when the scanner goes. A stream whose exceptions are switched on
// throws out of Next; the scanner itself goes without one.
class NumberScanner {
 public:
  // Characters of `separators` count as white space between numbers.
  explicit NumberScanner(std::istream& in, std::string_view separators = {});
  ~NumberScanner();
  NumberScanner(const NumberScanner&) = delete;
  NumberScanner& operator=(const NumberScanner&) = delete;

  // Scans the next number. At the end of the stream `value` keeps its value.
  void Next(float& value);

  // Whether the stream would report no condition now.
  bool Good() const { return in_.good(); }
  // Whether it would report a failure; the last number may also end with the stream.
  bool Failed() const { return in_.fail(); }

 private:
  bool SkipSpace();
  bool Refill();
  bool NextPlain(float& value);
  void NextByRule(float& value);
  bool IsSpace(char c) const;
  void GiveBack();
  void Report(std::ios::iostate state);

  std::istream& in_;
  std::string_view separators_;
  std::ios::iostate ended_ = std::ios::goodbit;  // why the stream has nothing more to give
  std::size_t capacity_;
  std::unique_ptr<char[]> buffer_;
  const char* at_;
  const char* end_;
};

// Scans numbers until all values are there or the stream reports a condition; the other values stay. Returns how
// many stay.
std::size_t ScanNumbers(std::istream& in, std::span<float> values);

}  // namespace kem::text
