// Words and lines of any length.
#pragma once

#include <algorithm>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace kem::text {

// Digits, and letters without accents in one case, whatever the host's locale.
constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }
constexpr bool IsLower(char c) { return c >= 'a' && c <= 'z'; }
constexpr bool IsUpper(char c) { return c >= 'A' && c <= 'Z'; }
constexpr char Lower(char c) { return IsUpper(c) ? static_cast<char>(c - 'A' + 'a') : c; }
constexpr char Upper(char c) { return IsLower(c) ? static_cast<char>(c - 'a' + 'A') : c; }
std::string Lower(std::string_view text);
std::string Upper(std::string_view text);
bool EqualButCase(std::string_view a, std::string_view b);

// The text without blanks, tabs and line ends around it, or other characters.
std::string_view Trimmed(std::string_view text, std::string_view blanks = " \t\r\n");

// The number that a text is, from its first character to its last, with a sign or none.
std::optional<double> NumberIn(std::string_view text);

// The text as UTF-8: what is not is taken for Latin-1.
std::string Utf8(std::string_view text);

// Takes the lines of a text one by one; they end in CR, LF or CR LF, the last one perhaps in nothing.
class Lines {
 public:
  explicit Lines(std::string_view text) : rest_(text) {}
  // False at the end of the text.
  bool Next(std::string_view& line);
  // Takes a line of which is known that it ends before this character of the rest.
  void Leave(std::size_t end) {
    const bool pair = rest_.substr(end, 2) == "\r\n";
    rest_.remove_prefix(std::min(end + (pair ? 2 : 1), rest_.size()));
  }
  // What has not been taken yet.
  std::string_view Rest() const { return rest_; }

 private:
  std::string_view rest_;
};

// A row of a table of texts: the unit of a parameter, what an axis of a unit shows.
struct TextRow {
  std::string_view key;
  std::string_view text;
};

// The text of a key; empty when the table has none.
std::string_view TextOf(std::span<const TextRow> table, std::string_view key);

// The entries of a list, quotes of the kind ' taken off.
std::vector<std::string> SplitList(std::string_view text, char separator = ',');

}  // namespace kem::text
