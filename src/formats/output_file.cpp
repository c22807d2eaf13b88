#include "formats/output_file.h"

#include <algorithm>

#include "load/files.h"
#include "record/findings.h"
#include "text/number_text.h"

namespace kem::formats {
using namespace text;
namespace {

// More bytes than these are written as they are, fewer together. The larger a piece, the larger the pages in which
// the system keeps it.
constexpr std::size_t kBlock = 1 << 20;

// Behind a full block a line of two numbers still fits.
constexpr std::size_t kRoom = 2 * kNumberRoom;

}  // namespace

OutputFile::OutputFile(const char* name, std::ios::openmode mode)
    : buffer_(new char[kBlock + kRoom]), file_(load::PathOf(name), mode | std::ios::out) {}

OutputFile::~OutputFile() {
  if (!IsOpen()) return;
  Flush();
  file_.close();
  *record::Found().writeFailed = file_.fail();
}

void OutputFile::Flush() {
  file_.write(buffer_.get(), static_cast<std::streamsize>(used_));
  used_ = 0;
}

void OutputFile::Write(const void* bytes, std::size_t count) {
  const auto* from = static_cast<const char*>(bytes);
  if (used_ + count > kBlock) Flush();
  if (count > kBlock) {
    file_.write(from, static_cast<std::streamsize>(count));
  } else {
    std::copy_n(from, count, &buffer_[used_]);
    used_ += count;
  }
}

OutputFile& OutputFile::operator<<(std::string_view text) {
  Write(text.data(), text.size());
  return *this;
}

OutputFile& OutputFile::operator<<(char c) {
  if (used_ > kBlock) Flush();
  buffer_[used_++] = c;
  return *this;
}

OutputFile& OutputFile::operator<<(float value) {
  if (used_ > kBlock) Flush();
  used_ = static_cast<std::size_t>(WriteNumber(&buffer_[used_], value) - buffer_.get());
  return *this;
}

void OutputFile::WritePair(float x, std::string_view between, float y) {
  if (used_ + between.size() > kBlock) Flush();
  char* to = WriteNumber(&buffer_[used_], x);
  to = std::copy(between.begin(), between.end(), to);
  to = WriteNumber(to, y);
  *to++ = '\n';
  used_ = static_cast<std::size_t>(to - buffer_.get());
}

OutputFile& OutputFile::operator<<(int value) {
  std::string text;
  AppendNumber(text, value);
  return *this << text;
}

}  // namespace kem::formats
