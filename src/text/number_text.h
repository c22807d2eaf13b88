// Numbers as text, independent of the host's locale.
#pragma once

#include <string>
#include <string_view>

namespace kem::text {

// Parses the longest number at the front of a text as the C library would: an optional sign, then a decimal,
// hexadecimal or infinite value, or NaN. Values too large become infinite (or the largest integer), too
// small 0. Returns the number of characters used, 0 when there is no number.
std::size_t ParseLenient(std::string_view text, float& value);
std::size_t ParseLenient(std::string_view text, int& value);
std::size_t ParseLenient(std::string_view text, unsigned& value);

// Writes the text that a stream gives a number by default: six significant digits, general notation. Returns where
// it ends; in the room for a number, anything may be written behind it.
constexpr std::size_t kNumberRoom = 32;
char* WriteNumber(char* to, float value);

// Appends that text.
void AppendNumber(std::string& text, float value);
void AppendNumber(std::string& text, int value);

}  // namespace kem::text
