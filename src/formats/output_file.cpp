#include "formats/output_file.h"

#include "load/files.h"
#include "record/findings.h"
#include "text/number_text.h"

namespace kem::formats {
using namespace text;
namespace {

// From this size on bytes are written as they are, smaller ones together.
constexpr std::size_t kBlock = 1 << 16;

}  // namespace

OutputFile::OutputFile(const char* name, std::ios::openmode mode)
    : file_(load::PathOf(name), mode | std::ios::out) {}

OutputFile::~OutputFile() {
  if (!IsOpen()) return;
  Flush();
  file_.close();
  *record::Found().writeFailed = file_.fail();
}

void OutputFile::Flush() {
  file_.write(buffer_.data(), static_cast<std::streamsize>(buffer_.size()));
  buffer_.clear();
}

void OutputFile::FlushIfFull() {
  if (buffer_.size() >= kBlock) Flush();
}

void OutputFile::Write(const void* bytes, std::size_t count) {
  const auto* from = static_cast<const char*>(bytes);
  if (count < kBlock) {
    buffer_.append(from, count);
    return FlushIfFull();
  }
  Flush();
  file_.write(from, static_cast<std::streamsize>(count));
}

OutputFile& OutputFile::operator<<(std::string_view text) {
  buffer_ += text;
  return *this;
}

OutputFile& OutputFile::operator<<(char c) {
  buffer_ += c;
  return *this;
}

OutputFile& OutputFile::operator<<(float value) {
  text::AppendNumber(buffer_, value);
  FlushIfFull();
  return *this;
}

OutputFile& OutputFile::operator<<(int value) {
  text::AppendNumber(buffer_, value);
  return *this;
}

}  // namespace kem::formats
