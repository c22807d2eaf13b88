#include "text.h"

#include <nlohmann/json.hpp>
#include <ostream>
#include <utility>

#include "portable.h"

namespace kem::tool {
namespace {

bool IsUtf8(const std::string& text) {
  try {
    (void)nlohmann::json(text).dump();
    return true;
  } catch (const nlohmann::json::type_error&) {
    return false;
  }
}

// Text with the letters that begin at `from` replaced by those that begin at `to`.
std::string WithLetters(std::string text, char from, char to) {
  for (char& c : text)
    if (c >= from && c < from + 26) c = static_cast<char>(c - from + to);
  return text;
}

// How many bytes from a place on are one control character, and which it is; those of Latin-1 are two in UTF-8.
std::size_t ControlAt(std::string_view text, unsigned char& code) {
  const auto at = [text](std::size_t k) { return static_cast<unsigned char>(k < text.size() ? text[k] : ' '); };
  code = at(0);
  if (code < 0x20 || code == 0x7F) return 1;
  if (code != 0xC2 || at(1) < 0x80 || at(1) >= 0xA0) return 0;
  code = at(1);
  return 2;
}

}  // namespace

std::string LowerCase(std::string text) { return WithLetters(std::move(text), 'A', 'a'); }
std::string UpperCase(std::string text) { return WithLetters(std::move(text), 'a', 'A'); }

std::string Utf8(std::string_view text) {
  std::string plain(text);
  if (IsUtf8(plain)) return plain;
  std::string utf8;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x80) {
      utf8 += c;
    } else {
      utf8 += static_cast<char>(0xC0 | (byte >> 6));
      utf8 += static_cast<char>(0x80 | (byte & 0x3F));
    }
  }
  return utf8;
}

std::ostream& operator<<(std::ostream& out, Printable printable) {
  constexpr const char* kDigits = "0123456789abcdef";
  std::string_view rest = printable.text;
  while (!rest.empty()) {
    std::size_t plain = 0;
    std::size_t control = 0;
    unsigned char code = 0;
    while (plain < rest.size() && (control = ControlAt(rest.substr(plain), code)) == 0) ++plain;
    out << rest.substr(0, plain);
    rest.remove_prefix(plain + control);
    if (control > 0) out << "\\x" << kDigits[code >> 4] << kDigits[code & 15];
  }
  return out;
}

std::string CsvText(std::string_view text) {
  if (text.find_first_of(",\"\r\n") == text.npos) return std::string(text);
  std::string quoted = "\"";
  for (const char c : text) quoted.append(c == '"' ? 2 : 1, c);
  return quoted + '"';
}

std::string Shortest(float value) {
  std::string text;
  portable::AppendShortest(text, value);
  return text;
}

}  // namespace kem::tool
