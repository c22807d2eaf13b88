// Headers in text: which keyword a line holds, and where its value goes.
#pragma once

#include <optional>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <variant>

#include "kem.h"
#include "text/fields.h"

namespace kem::load {

// Where a value goes: to a field of one of some blocks, or to a function that takes the line. By default it is not
// kept.
template <class... Blocks>
using Destination = std::variant<std::monostate, float Blocks::*..., int Blocks::*..., bool Blocks::*...,
                                 text::Text Blocks::*..., void (*)(Blocks&... blocks, std::string_view line)>;

enum class Match { Anywhere, AtStart };

template <class... Blocks>
struct Keyword {
  std::string_view word;
  Destination<Blocks...> to = {};
  Match match = Match::Anywhere;

  constexpr bool IsIn(std::string_view line) const {
    return match == Match::AtStart ? line.starts_with(word) : text::Contains(line, word);
  }
};

// The first keyword of a table that a line holds; null when it holds none. Where it holds several, order decides.
template <class Table>
constexpr auto FirstIn(std::string_view line, const Table& keywords) -> decltype(&keywords[0]) {
  for (const auto& keyword : keywords)
    if (keyword.IsIn(line)) return &keyword;
  return nullptr;
}

// The value in a line, if there is one.
using ValueOf = std::optional<std::string_view> (*)(std::string_view line);

inline std::optional<std::string_view> Whole(std::string_view line) { return line; }

// For formats that put their values behind the keyword.
inline std::optional<std::string_view> SecondWord(std::string_view line) {
  constexpr std::string_view kSpace = " \t\n\v\f\r";
  const auto rest = text::BehindFirstWord(line, kSpace);
  if (rest.empty()) return std::nullopt;
  return rest.substr(0, rest.find_first_of(kSpace));
}

inline void StoreValue(float& number, std::string_view value) { text::ScanLine(value, "%g", {&number}); }
inline void StoreValue(int& number, std::string_view value) { text::ScanLine(value, "%d", {&number}); }
inline void StoreValue(text::Text& text, std::string_view value) { text::CopyText(text, value); }

// Brings a line where it belongs. Without a value in it a field keeps its own; a flag is set by the line itself.
template <class... Blocks>
void Store(const Destination<Blocks...>& to, std::string_view line, ValueOf valueOf, Blocks&... blocks) {
  const auto store = [&]<class Field, class Block>(Field Block::*field) {
    Block& block = std::get<Block&>(std::tie(blocks...));
    if constexpr (std::is_same_v<Field, bool>)
      block.*field = true;
    else if (const auto value = valueOf(line))
      StoreValue(block.*field, *value);
  };
  std::visit(
      [&](auto place) {
        using Place = decltype(place);
        if constexpr (std::is_member_pointer_v<Place>)
          store(place);
        else if constexpr (!std::is_same_v<Place, std::monostate>)
          place(blocks..., line);
      },
      to);
}

}  // namespace kem::load
