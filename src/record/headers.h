// What there is to know about a file type besides its reader: one row per type, in the source of its header.
#pragma once

#include <span>
#include <string_view>
#include <type_traits>

#include "kem.h"

namespace kem::record {

// Where a block lies in the record; the source of each header says it of its own.
template <class Block>
constexpr Block PrnType::*kPlaceOf = nullptr;

template <class Block, class Type>
constexpr const Type& FieldOf(const PrnType& record, Type Block::*member) {
  if constexpr (std::is_same_v<Block, PrnType>)
    return record.*member;
  else
    return record.*kPlaceOf<Block>.*member;
}

template <class Type>
constexpr KemParameterKind KindOf() {
  if constexpr (std::is_array_v<Type>) {
    if (std::is_same_v<Type, char[kTextSize]>) return KemParameterKind::Text;
    return KindOf<std::remove_extent_t<Type>>();
  }
  if (std::is_same_v<Type, int>) return KemParameterKind::Int;
  if (std::is_same_v<Type, float>) return KemParameterKind::Float;
  return KemParameterKind::Bytes;
}

// A field of the header area: Field<&BrukerHeaderType::brukerGain>("brukerGain").
template <auto Member>
constexpr KemParameter Field(const char* name = nullptr) {
  using Type = std::remove_cvref_t<decltype(FieldOf(std::declval<const PrnType&>(), Member))>;
  constexpr auto kind = KindOf<Type>();
  constexpr std::size_t unit = kind == KemParameterKind::Text ? kTextSize : sizeof(std::remove_all_extents_t<Type>);
  return {name, kind, static_cast<int>(sizeof(Type) / unit),
          [](const PrnType& record) -> const void* { return &FieldOf(record, Member); }};
}

// Numbers that lie in a field of bytes or integers, from one of its bytes on.
template <auto Member, KemParameterKind kind, std::size_t at = 0, int count = 1>
constexpr KemParameter NumbersIn() {
  return {nullptr, kind, count, [](const PrnType& record) -> const void* {
            return reinterpret_cast<const char*>(&FieldOf(record, Member)) + at;
          }};
}

// A line of a report or of a comment block: its label, the value, and a unit. A value without an address has no
// line, a field of several texts has one for each.
struct Line {
  const char* label;
  KemParameter value;
  const char* unit = "";
};

struct Titles {
  std::string_view x = "X";  // without data: the caller's title stays
  std::string_view y = "Y";
  std::string_view z = "Z";
};

struct FileTypeRow {
  const char* name = nullptr;                     // in reports; null: none
  const char* dataType = "";                      // in JCAMP-DX files
  std::span<const KemParameter> parameters = {};  // the block
  std::span<const KemParameter> texts = {};       // labels and comment lines
  std::span<const Line> comments = {};
  std::span<const Line> report = {};
  Titles (*titles)(const PrnType& record) = [](const PrnType&) { return Titles(); };
  bool copied = true;    // parameters and texts are carried by copies of a record
  bool trimmed = false;  // texts of the comment block stand there without the blanks around them
};

// An empty row for a type that there is not.
const FileTypeRow& RowOf(int fileType);

extern const FileTypeRow kCvtRow, kXYRow, kP3DRow, kHamaRow, kAT1Row, kBrukerRow, kDilorRow, kCaryPrnRow, kNPicoRow,
    kCary45Row, kP2DRow, kOMARow, kBES3TRow, kHPDTARow, kCaryDSWRow, kIccdCurveRow, kIccdImageRow;

// The labels of a record, of which CVT curves use two.
inline constexpr KemParameter kLabels[] = {Field<&PrnType::xLabel>(), Field<&PrnType::yLabel>(),
                                           Field<&PrnType::zLabel>()};
inline constexpr KemParameter kLabelsAndComments[] = {kLabels[0], kLabels[1], kLabels[2],
                                                      Field<&PrnType::commentLines>()};
// Their titles, for curves.
Titles LabelsOfCurve(const PrnType& record);

// Time span in ns of a Hamamatsu raw image by its sweep-range code; 0 for a code outside 1 to 16.
const float& SweepSpan(int code);

}  // namespace kem::record
