#include "text.h"

#include <charconv>
#include <nlohmann/json.hpp>

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

}  // namespace

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

std::string LowerCase(std::string text) {
  for (char& c : text)
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  return text;
}

std::string CsvText(std::string_view text) {
  if (text.find_first_of(",\"\r\n") == text.npos) return std::string(text);
  std::string quoted = "\"";
  for (const char c : text) quoted.append(c == '"' ? 2 : 1, c);
  return quoted + '"';
}

void AppendShortest(std::string& text, float value) {
  char digits[32];
  text.append(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
}

std::string Shortest(float value) {
  std::string text;
  AppendShortest(text, value);
  return text;
}

}  // namespace kem::tool
