#include "text/number_scanner.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <limits>

#include "text/number_text.h"
#include "text/short_number.h"
#include "text/words.h"

namespace kem::text {
namespace {

constexpr std::size_t kBlock = 1 << 16;

// The longest run of characters that the number extraction of a stream consumes: sign, digits with one point,
// then an exponent sign letter with an optional sign once a digit has been seen, and digits.
const char* EndOfToken(const char* at, const char* end) {
  bool digit = false;
  bool point = false;
  bool exponent = false;
  if (at != end && (*at == '+' || *at == '-')) ++at;
  for (; at != end; ++at) {
    if (IsDigit(*at)) {
      digit = true;
    } else if (*at == '.' && !point && !exponent) {
      point = true;
    } else if ((*at == 'e' || *at == 'E') && !exponent && digit) {
      exponent = true;
      if (end - at > 1 && (at[1] == '+' || at[1] == '-')) ++at;
    } else {
      break;
    }
  }
  return at;
}

}  // namespace

NumberScanner::NumberScanner(std::istream& in, std::string_view separators)
    : in_(in), separators_(separators), capacity_(kBlock), buffer_(new char[kBlock]) {
  at_ = end_ = buffer_.get();
}

NumberScanner::~NumberScanner() {
  try {
    GiveBack();
  } catch (...) {  // the stream keeps the failure that it threw
  }
}

void NumberScanner::GiveBack() {
  const std::streamoff ahead = end_ - at_;
  at_ = end_;
  if (ahead != 0) in_.seekg(-ahead, std::ios::cur);
}

void NumberScanner::Report(std::ios::iostate state) {
  if (state == std::ios::goodbit) return;
  GiveBack();
  in_.setstate(state);
}

bool NumberScanner::IsSpace(char c) const {
  return c == ' ' || (c >= '\t' && c <= '\r') || separators_.find(c) != separators_.npos;
}

// Gets more characters behind those that are left, in a larger buffer when a token fills it. The stream throws
// nothing here: its end is reported once the numbers before it are taken.
bool NumberScanner::Refill() {
  if (ended_ != std::ios::goodbit) return false;
  const auto left = static_cast<std::size_t>(end_ - at_);
  if (left > capacity_ / 2) {
    std::unique_ptr<char[]> larger(new char[capacity_ * 2]);
    std::memcpy(larger.get(), at_, left);
    buffer_ = std::move(larger);
    capacity_ *= 2;
  } else {
    std::memmove(buffer_.get(), at_, left);
  }
  const auto exceptions = in_.exceptions();
  in_.exceptions(std::ios::goodbit);
  in_.read(buffer_.get() + left, static_cast<std::streamsize>(capacity_ - left));
  ended_ = in_.rdstate() & (std::ios::eofbit | std::ios::badbit);
  in_.clear();
  in_.exceptions(exceptions);
  at_ = buffer_.get();
  end_ = at_ + left + in_.gcount();
  return in_.gcount() > 0;
}

inline bool NumberScanner::SkipSpace() {
  for (;;) {
    while (at_ != end_ && IsSpace(*at_)) ++at_;
    if (at_ != end_) return true;
    if (!Refill()) return false;
  }
}

// A number that from_chars takes and that ends at white space inside the block is the one that the rule gives.
inline bool NumberScanner::NextPlain(float& value) {
  const char first = *at_ == '-' && end_ - at_ > 1 ? at_[1] : *at_;
  if (!IsDigit(first)) return false;
  float parsed = 0;
  const auto result = FromChars(at_, end_, parsed);
  if (result.ec != std::errc() || result.ptr == end_ || !IsSpace(*result.ptr)) return false;
  value = parsed;
  at_ = result.ptr;
  return true;
}

void NumberScanner::Next(float& value) {
  if (!Good()) return Report(std::ios::failbit);
  if (!SkipSpace()) return Report(ended_ | std::ios::failbit);
  if (!NextPlain(value)) NextByRule(value);
}

void NumberScanner::NextByRule(float& value) {
  std::ptrdiff_t length = 0;  // a refill moves the token
  do length = EndOfToken(at_, end_) - at_;
  while (at_ + length == end_ && Refill());
  const std::string_view token(at_, static_cast<std::size_t>(length));
  at_ += length;
  std::ios::iostate state = at_ == end_ ? ended_ : std::ios::goodbit;
  float parsed = 0;
  const bool isNumber = !token.empty() && ParseLenient(token, parsed) == token.size();
  const bool tooLarge = isNumber && std::isinf(parsed);
  if (!isNumber || tooLarge) state |= std::ios::failbit;
  value = !isNumber ? 0 : tooLarge ? std::copysign(std::numeric_limits<float>::max(), parsed) : parsed;
  Report(state);
}

std::size_t ScanNumbers(std::istream& in, std::span<float> values) {
  NumberScanner scan(in);
  std::size_t left = values.size();
  for (; left > 0 && scan.Good(); --left) scan.Next(values[values.size() - left]);
  return left;
}

}  // namespace kem::text
