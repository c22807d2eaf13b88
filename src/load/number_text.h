// Numbers as text, independent of the host's locale, and text files made of them.
#pragma once

#include <fstream>
#include <string>
#include <string_view>

namespace kem::load {

// Parses the longest number at the front of a text as the C library would: an optional sign, then a decimal,
// hexadecimal, infinite or not-a-number value. Values too large become infinite (or the largest integer), too
// small 0. Returns the number of characters used, 0 when there is no number.
std::size_t ParseLenient(std::string_view text, float& value);
std::size_t ParseLenient(std::string_view text, int& value);
std::size_t ParseLenient(std::string_view text, unsigned& value);

// Appends the text that a stream gives a number by default: six significant digits, general notation.
void AppendNumber(std::string& text, float value);
void AppendNumber(std::string& text, int value);

// A file that is written as text or bytes. Closing it sets WriteFailedFlag.
class OutputFile {
 public:
  OutputFile(const char* name, std::ios::openmode mode);
  ~OutputFile();
  OutputFile(const OutputFile&) = delete;
  OutputFile& operator=(const OutputFile&) = delete;

  bool IsOpen() const { return file_.is_open(); }
  void Write(const void* bytes, std::size_t count);

  OutputFile& operator<<(std::string_view text);
  OutputFile& operator<<(char c);
  OutputFile& operator<<(float value);
  OutputFile& operator<<(int value);

 private:
  void Flush();
  void FlushIfFull();

  std::ofstream file_;
  std::string buffer_;
};

}  // namespace kem::load
