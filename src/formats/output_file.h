// A file on its way to the disk.
#pragma once

#include <fstream>
#include <memory>
#include <string_view>

namespace kem::formats {

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
  // A line of two numbers, which most lines of a curve are.
  void WritePair(float x, std::string_view between, float y);

 private:
  void Flush();

  std::unique_ptr<char[]> buffer_;  // first, so that no file is made where there is no memory
  std::size_t used_ = 0;
  std::ofstream file_;
};

}  // namespace kem::formats
