#include "text/words.h"

#include <algorithm>

#include "text/short_number.h"

namespace kem::text {
namespace {

// Length of the UTF-8 character at the front of a text; 0 where there is none.
std::size_t CharacterLength(std::string_view text) {
  const auto byte = [&text](std::size_t k) { return static_cast<unsigned char>(text[k]); };
  const std::size_t length = byte(0) < 0x80   ? 1
                             : byte(0) < 0xC2 ? 0
                             : byte(0) < 0xE0 ? 2
                             : byte(0) < 0xF0 ? 3
                             : byte(0) < 0xF5 ? 4
                                              : 0;
  if (length > text.size()) return 0;
  for (std::size_t k = 1; k < length; ++k)
    if ((byte(k) & 0xC0) != 0x80) return 0;
  const unsigned second = length > 1 ? byte(1) : 0;
  const bool overlong = (byte(0) == 0xE0 && second < 0xA0) || (byte(0) == 0xF0 && second < 0x90);
  const bool surrogate = byte(0) == 0xED && second >= 0xA0;
  const bool beyond = byte(0) == 0xF4 && second >= 0x90;
  return overlong || surrogate || beyond ? 0 : length;
}

bool IsUtf8(std::string_view text) {
  while (!text.empty()) {
    const std::size_t length = CharacterLength(text);
    if (length == 0) return false;
    text.remove_prefix(length);
  }
  return true;
}

}  // namespace

std::string Lower(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) c = Lower(c);
  return lower;
}

std::string Upper(std::string_view text) {
  std::string upper(text);
  for (char& c : upper) c = Upper(c);
  return upper;
}

bool EqualButCase(std::string_view a, std::string_view b) { return Lower(a) == Lower(b); }

std::string_view Trimmed(std::string_view text, std::string_view blanks) {
  const auto first = text.find_first_not_of(blanks);
  if (first == text.npos) return {};
  return text.substr(first, text.find_last_not_of(blanks) - first + 1);
}

std::optional<double> NumberIn(std::string_view text) {
  if (text.size() > 1 && text[0] == '+' && text[1] != '-') text.remove_prefix(1);
  double value = 0;
  const auto parsed = FromChars(text.data(), text.data() + text.size(), value);
  if (parsed.ec != std::errc() || parsed.ptr != text.data() + text.size()) return std::nullopt;
  return value;
}

std::string Utf8(std::string_view text) {
  if (IsUtf8(text)) return std::string(text);
  std::string utf8;
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte >= 0x80) utf8 += static_cast<char>(0xC0 | (byte >> 6));
    utf8 += static_cast<char>(byte < 0x80 ? byte : 0x80 | (byte & 0x3F));
  }
  return utf8;
}

bool Lines::Next(std::string_view& line) {
  if (rest_.empty()) return false;
  const auto isEnd = [](char c) { return c == '\r' || c == '\n'; };
  const auto end = static_cast<std::size_t>(std::find_if(rest_.begin(), rest_.end(), isEnd) - rest_.begin());
  line = rest_.substr(0, end);
  Leave(end);
  return true;
}

std::string_view TextOf(std::span<const TextRow> table, std::string_view key) {
  const auto row = std::find_if(table.begin(), table.end(), [key](const TextRow& e) { return e.key == key; });
  return row == table.end() ? std::string_view() : row->text;
}

std::vector<std::string> SplitList(std::string_view text, char separator) {
  std::vector<std::string> entries;
  for (;;) {
    text = text.substr(std::min(text.find_first_not_of(" \t"), text.size()));
    // A separator between quotes belongs to the entry; a quote that is never closed is a character like others.
    const auto closed = text.starts_with('\'') ? text.find(std::string("'") + separator, 1) : text.npos;
    const bool quoted =
        closed == text.npos && text.size() > 1 && text.front() == '\'' && Trimmed(text).back() == '\'';
    const auto from = quoted ? text.size() : closed == text.npos ? 0 : closed;
    const auto end = std::min(text.find(separator, from), text.size());
    std::string_view entry = Trimmed(text.substr(0, end));
    if (entry.size() > 1 && entry.front() == '\'' && entry.back() == '\'')
      entry = entry.substr(1, entry.size() - 2);
    entries.emplace_back(Trimmed(entry));
    if (end == text.size()) return entries;
    text.remove_prefix(end + 1);
  }
}

}  // namespace kem::text
