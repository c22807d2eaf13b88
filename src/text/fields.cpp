#include "text/fields.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <limits>
#include <optional>
#include <string>

#include "text/number_text.h"

namespace kem::text {
namespace {

bool IsSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

// Takes characters from the front of a line.
class Cursor {
 public:
  explicit Cursor(std::string_view text) : text_(text) {}

  bool AtEnd() const { return text_.empty(); }
  char Front() const { return text_.front(); }
  void Skip(std::size_t count) { text_.remove_prefix(count); }
  void SkipSpace() {
    while (!AtEnd() && IsSpace(Front())) Skip(1);
  }

  template <class Test>
  std::string_view TakeWhile(std::size_t most, Test test) {
    const auto end = std::find_if_not(text_.begin(), text_.begin() + Clamp(most), test);
    return Take(static_cast<std::size_t>(end - text_.begin()));
  }

  std::string_view Take(std::size_t count) {
    const auto taken = text_.substr(0, count);
    text_.remove_prefix(taken.size());
    return taken;
  }

  template <class Number>
  std::optional<Number> TakeNumber(std::size_t most) {
    const std::string_view field = text_.substr(0, most);
    Number value{};
    const std::size_t used = ParseLenient(field, value);
    if (used == 0) return std::nullopt;
    Skip(used);
    return value;
  }

 private:
  std::ptrdiff_t Clamp(std::size_t most) const { return static_cast<std::ptrdiff_t>(std::min(most, text_.size())); }

  std::string_view text_;
};

// One conversion of a format: %[*][width]letter, with the characters of a set.
struct Conversion {
  bool suppressed = false;
  std::size_t width = std::numeric_limits<std::size_t>::max();
  char letter = 0;
  std::string_view set;
};

Conversion TakeConversion(Cursor& format) {
  Conversion c;
  format.Skip(1);
  if (format.Front() == '*') {
    c.suppressed = true;
    format.Skip(1);
  }
  const auto digits = format.TakeWhile(2, [](char d) { return d >= '0' && d <= '9'; });
  if (!digits.empty()) std::from_chars(digits.data(), digits.data() + digits.size(), c.width);
  c.letter = format.Front();
  format.Skip(1);
  if (c.letter == '[') {
    c.set = format.TakeWhile(kTextSize, [](char s) { return s != ']'; });
    format.Skip(1);
  }
  return c;
}

template <class Number>
bool StoreNumber(Cursor& line, const Conversion& c, const ScanTarget* target) {
  const auto value = line.TakeNumber<Number>(c.width);
  if (value && target) *std::get<Number*>(*target) = *value;
  return value.has_value();
}

bool StoreText(std::string_view text, const ScanTarget* target) {
  if (text.empty()) return false;
  if (target) CopyText(std::get<char*>(*target), text);
  return true;
}

bool Convert(Cursor& line, const Conversion& c, const ScanTarget* target) {
  if (c.letter != 'c' && c.letter != '[') line.SkipSpace();
  switch (c.letter) {
    case 'd':
      return StoreNumber<int>(line, c, target);
    case 'u':
      return StoreNumber<unsigned>(line, c, target);
    case 'g':
      return StoreNumber<float>(line, c, target);
    case 's':
      return StoreText(line.TakeWhile(c.width, [](char s) { return !IsSpace(s); }), target);
    case 'c':
      return StoreText(line.Take(1), target);
    case '[':
      return StoreText(line.TakeWhile(c.width, [&c](char s) { return Contains(c.set, {&s, 1}); }), target);
    default:
      return false;
  }
}

}  // namespace

void CopyText(char* field, std::string_view text) {
  const std::size_t length = std::min<std::size_t>(text.size(), kTextSize - 1);
  std::char_traits<char>::move(field, text.data(), length);
  std::memset(field + length, 0, kTextSize - length);
}

std::string_view TextOfField(const char* field) { return {field, strnlen(field, kTextSize - 1)}; }

std::istream& ReadLine(std::istream& in, Text& line) { return in.getline(line, kTextSize); }

void TrimTrailing(char* line) {
  std::size_t length = std::strlen(line);
  while (length > 0 && (line[length - 1] == '\r' || line[length - 1] == '\n')) line[--length] = '\0';
}

std::istream& ReadTrimmedLine(std::istream& in, Text& line) {
  ReadLine(in, line);
  TrimTrailing(line);
  return in;
}

std::istream& ReadStartOfLine(std::istream& in, Text& line) {
  ReadLine(in, line);
  if (in.rdstate() == std::ios::failbit && in.gcount() > 0) {
    in.clear();
    in.ignore(std::numeric_limits<std::streamsize>::max(), '\n');
  }
  return in;
}

std::string_view BehindFirstWord(std::string_view line, std::string_view blanks) {
  const auto skip = [&line](std::size_t count) { line.remove_prefix(std::min(count, line.size())); };
  skip(line.find_first_not_of(blanks));
  skip(line.find_first_of(blanks));
  skip(line.find_first_not_of(blanks));
  return line;
}

int ScanLine(std::string_view text, std::string_view pattern, std::initializer_list<ScanTarget> targets) {
  Cursor line(text);
  Cursor format(pattern);
  int stored = 0;
  const auto* target = targets.begin();
  while (!format.AtEnd()) {
    if (IsSpace(format.Front())) {
      format.SkipSpace();
      line.SkipSpace();
    } else if (format.Front() == '%') {
      const Conversion c = TakeConversion(format);
      if (!Convert(line, c, c.suppressed ? nullptr : target)) break;
      if (!c.suppressed) {
        ++target;
        ++stored;
      }
    } else {
      if (line.AtEnd() || line.Front() != format.Front()) break;
      line.Skip(1);
      format.Skip(1);
    }
  }
  return stored;
}

void MakeNumberedFileName(Text& name, int number) {
  std::string text(TextOf(name));
  const bool oneDigit = number >= 0 && number < 10;
  const std::string suffix = (oneDigit ? "_0" : "_") + std::to_string(number);
  text.insert(std::min(text.find('.'), text.size()), suffix);
  CopyText(name, text);
}

}  // namespace kem::text
