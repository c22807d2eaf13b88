// A number of these tables is told by its first character:
//
//   1 + - .        plain, with an exponent only as E+ or E- and digits
//   @ A..I a..i    squeezed: 0, 1..9, -1..-9 as the leading digit
//   % J..R j..r    difference to the ordinate before: 0, 1..9, -1..-9 as the leading digit
//   S..Z s         duplicate: 1..8, 9 as the leading digit of how often the item before stands there
//   ?              a missing ordinate
//
// After a line that ends in a difference the next line repeats the last ordinate as a check.
#include "formats/asdf.h"
#include "text/short_number.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <limits>
#include <string>

#include "record/findings.h"
#include "text/words.h"

namespace kem::formats {

using text::FromChars;
using text::IsDigit;

namespace {

enum class Form : unsigned char {
  Unknown,
  Separator,
  LineEnd,
  Plain,
  Squeezed,
  Difference,
  Duplicate,
  Missing,
  Comment
};

struct Symbol {
  Form form = Form::Unknown;
  signed char digit = 0;  // the leading one, with its sign
};

constexpr std::array<Symbol, 256> MakeSymbols() {
  std::array<Symbol, 256> symbols{};
  const auto set = [&symbols](char c, Form form, int digit = 0) {
    symbols[static_cast<unsigned char>(c)] = {form, static_cast<signed char>(digit)};
  };
  for (const char c : {' ', '\t', ',', ';'}) set(c, Form::Separator);
  for (const char c : {'\r', '\n'}) set(c, Form::LineEnd);
  for (const char c : {'+', '-', '.', '0', '1', '2', '3', '4', '5', '6', '7', '8', '9'}) set(c, Form::Plain);
  set('@', Form::Squeezed);
  set('%', Form::Difference);
  set('s', Form::Duplicate, 9);
  set('?', Form::Missing);
  set('$', Form::Comment);
  for (int k = 0; k < 9; ++k) {
    set(static_cast<char>('A' + k), Form::Squeezed, k + 1);
    set(static_cast<char>('a' + k), Form::Squeezed, -k - 1);
    set(static_cast<char>('J' + k), Form::Difference, k + 1);
    set(static_cast<char>('j' + k), Form::Difference, -k - 1);
    if (k < 8) set(static_cast<char>('S' + k), Form::Duplicate, k + 1);
  }
  return symbols;
}
constexpr auto kSymbols = MakeSymbols();

Symbol SymbolOf(char c) { return kSymbols[static_cast<unsigned char>(c)]; }

class Decoder {
 public:
  Decoder(std::string_view text, bool decimalComma)
      : at_(text.data()),
        end_(text.data() + text.size()),
        most_(std::size_t{record::Aside::kMostMissing} + 16 * text.size()),
        decimalComma_(decimalComma) {}

  Ordinates Decode(double announced) {
    const auto characters = static_cast<double>(end_ - at_);  // seldom fewer than values
    result_.values.reserve(
        static_cast<std::size_t>(announced > 0 ? std::min(announced, characters) : characters / 4));
    while (at_ != end_) Line();
    return std::move(result_);
  }

 private:
  bool InLine() const { return at_ != end_ && SymbolOf(*at_).form != Form::LineEnd; }

  void Line() {
    while (at_ != end_ && (SymbolOf(*at_).form == Form::LineEnd || *at_ == ' ' || *at_ == '\t')) ++at_;
    if (at_ == end_) return;
    if (SymbolOf(*at_).form == Form::Plain) (void)Number(0);
    const bool check = form_ == Form::Difference;
    for (bool first = true; InLine();) {
      first = Item(first && check) && first;
      if (!first && form_ == Form::Difference) Differences();
    }
  }

  // Takes differences of up to four digits, of which most tables are made. Their lengths follow no rule that a
  // processor could guess, so every character is weighed and none decides where to go on.
  void Differences() {
    constexpr int kDigits = 4;
    const char* at = at_;
    double last = last_;
    for (; end_ - at > kDigits && SymbolOf(*at).form == Form::Difference; last = result_.values.back()) {
      int value = SymbolOf(*at).digit;
      const int sign = value < 0 ? -1 : 1;
      int length = 1;
      bool going = true;
      for (int k = 1; k < kDigits; ++k) {
        const int digit = at[k] - '0';
        going &= IsDigit(at[k]);
        value = going ? 10 * value + sign * digit : value;
        length += going ? 1 : 0;
      }
      if (!EndsDifference(at[length])) break;
      difference_ = value;
      result_.values.push_back(last + difference_);
      at += length;
    }
    at_ = at;
    last_ = last;
  }

  // Takes what stands here; whether the first ordinate of the line is still to come.
  bool Item(bool isCheck) {
    const Symbol symbol = SymbolOf(*at_);
    switch (symbol.form) {
      case Form::Separator:
        ++at_;
        return true;
      case Form::Comment:
        while (InLine()) ++at_;
        return true;
      case Form::Plain:
      case Form::Squeezed:
        Absolute(Number(symbol.digit), isCheck);
        return false;
      case Form::Difference:
        form_ = Form::Difference;
        difference_ = IsAlone() ? (++at_, symbol.digit) : Number(symbol.digit);
        Push(last_ + difference_);
        return false;
      case Form::Duplicate:
        Repeat(Number(symbol.digit));
        return false;
      case Form::Missing:
        ++at_;
        form_ = Form::Plain;
        Push(std::numeric_limits<double>::quiet_NaN());
        return false;
      default:
        ++at_;
        ++result_.unknownSymbols;
        return true;
    }
  }

  void Absolute(double value, bool isCheck) {
    form_ = Form::Plain;
    if (isCheck) {
      result_.failedChecks += value != last_ ? 1 : 0;
      last_ = value;
    } else {
      Push(value);
    }
  }

  void Push(double value) {
    last_ = value;
    result_.values.push_back(value);
  }

  // The count includes the item that is there already.
  void Repeat(double count) {
    if (!(count <= static_cast<double>(most_ - std::min(most_, result_.values.size())))) {
      result_.absurd = true;
      at_ = end_;
      return;
    }
    const double step = form_ == Form::Difference ? difference_ : 0;
    for (auto left = static_cast<std::int64_t>(count) - 1; left > 0; --left) Push(last_ + step);
  }

  // Takes a number whose leading digit, unless it is 0, stands for the character here.
  double Number(int leading) {
    const char* const begin = at_;
    const bool coded = SymbolOf(*at_).form != Form::Plain;
    const bool negative = coded ? leading < 0 : *at_ == '-';
    if (coded || *at_ == '+' || *at_ == '-') ++at_;
    constexpr std::int64_t kMost = 100'000'000'000'000'000;
    std::int64_t digits = leading < 0 ? -leading : leading;
    while (at_ != end_ && IsDigit(*at_) && digits < kMost) digits = 10 * digits + (*at_++ - '0');
    if (at_ != end_ && !IsEndOfInteger()) return Exact(begin, coded, leading);
    return static_cast<double>(negative ? -digits : digits);
  }

  // Whether a character that stands for a digit is a whole number: what follows begins another one.
  bool IsAlone() const { return end_ - at_ < 2 || EndsDifference(at_[1]); }

  static bool EndsDifference(char next) {
    const Form form = SymbolOf(next).form;
    return form == Form::Difference || form == Form::Duplicate || form == Form::LineEnd;
  }

  bool IsPoint() const {
    return *at_ == '.' || (decimalComma_ && *at_ == ',' && end_ - at_ > 1 && IsDigit(at_[1]));
  }
  bool IsExponent() const {
    return (*at_ == 'E' || *at_ == 'e') && end_ - at_ > 2 && (at_[1] == '+' || at_[1] == '-') && IsDigit(at_[2]);
  }
  bool IsEndOfInteger() const { return !IsDigit(*at_) && !IsPoint() && !IsExponent(); }

  // A number with a fraction, an exponent, or more digits than an integer holds.
  double Exact(const char* begin, bool coded, int leading) {
    std::string text;
    if (coded) text = std::to_string(leading);
    at_ = begin + (coded || *begin == '+' ? 1 : 0);
    if (at_ != end_ && *at_ == '-') text += *at_++;
    while (at_ != end_ && IsDigit(*at_)) text += *at_++;
    if (at_ != end_ && IsPoint()) {
      text += '.';
      for (++at_; at_ != end_ && IsDigit(*at_);) text += *at_++;
    }
    if (at_ != end_ && IsExponent()) {
      text.append(at_, 3);
      for (at_ += 3; at_ != end_ && IsDigit(*at_);) text += *at_++;
    }
    double value = 0;
    FromChars(text.data(), text.data() + text.size(), value);
    return value;
  }

  const char* at_;
  const char* end_;
  std::size_t most_;
  bool decimalComma_;
  Ordinates result_;
  Form form_ = Form::Plain;  // of the last ordinate
  double last_ = 0;
  double difference_ = 0;
};

}  // namespace

Ordinates DecodeOrdinates(std::string_view text, bool decimalComma, double announced) {
  return Decoder(text, decimalComma).Decode(announced);
}

}  // namespace kem::formats
