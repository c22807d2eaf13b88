// Which reader understands a file: the tables of name and content tests, in the order that decides.
#pragma once

#include <fstream>
#include <span>
#include <string>
#include <string_view>

#include "kem.h"
#include "load/items.h"

namespace kem::host {

struct Format;

// What one load hands from its tests to its reader, and what became of it.
struct LoadState {
  std::string name;
  int index;
  std::ifstream main;
  std::ifstream partner;           // the other file of a pair
  const Format* format = nullptr;  // whose reader loaded the file
  int count = 0;                   // items that the file holds
  bool multi3D = false;
  bool nxy = false;
  bool jcamp = false;
  bool oma = false;
  int pairRole = 0;  // Bruker: 0 when the main stream is the parameter file, 1 when it is the value file
};

enum class Pairing { None, Bruker, Cary45 };

// A format is its name for users, its reader, and the pair it needs.
struct Format {
  const char* name;
  int (*read)(PrnType& record, LoadState& state);
  Pairing pairing = Pairing::None;
  int firstIndex = 0;                                               // of several items
  void (*list)(LoadState& state, load::ItemList& items) = nullptr;  // when they are not all alike
};

// A text that decides for a format, and what else it tells the reader.
struct Test {
  std::string_view text;
  const Format* format;
  void (*set)(LoadState& state) = nullptr;
};

// In their order; the first whose text occurs wins.
std::span<const Test> NameTests();
std::span<const Test> ContentTests();

constexpr const Test* FirstHit(std::span<const Test> tests, std::string_view text) {
  for (const Test& test : tests)
    if (text.find(test.text) != text.npos) return &test;
  return nullptr;
}

// The reader of plain XY columns, for files that are not to be sniffed.
const Format& PlainColumns();

}  // namespace kem::host
