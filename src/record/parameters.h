// Describes a field of the header area by its member pointer, so that one table per instrument serves copying,
// reports and hosts.
#pragma once

#include <type_traits>

#include "kem.h"

namespace kem::record {

inline const PrnType& BlockOf(const PrnType& r, const PrnType*) { return r; }
inline const HamaHeaderType& BlockOf(const PrnType& r, const HamaHeaderType*) { return r.hama; }
inline const BrukerHeaderType& BlockOf(const PrnType& r, const BrukerHeaderType*) { return r.bruker; }
inline const DilorHeaderType& BlockOf(const PrnType& r, const DilorHeaderType*) { return r.dilor; }
inline const CaryPrnHeaderType& BlockOf(const PrnType& r, const CaryPrnHeaderType*) { return r.caryPrn; }
inline const NPicoHeaderType& BlockOf(const PrnType& r, const NPicoHeaderType*) { return r.npico; }
inline const Cary45HeaderType& BlockOf(const PrnType& r, const Cary45HeaderType*) { return r.cary45; }
inline const OMAHeaderType& BlockOf(const PrnType& r, const OMAHeaderType*) { return r.oma; }
inline const BES3THeaderType& BlockOf(const PrnType& r, const BES3THeaderType*) { return r.bes3t; }
inline const HPDTAHeaderType& BlockOf(const PrnType& r, const HPDTAHeaderType*) { return r.hpdta; }
inline const CaryDSWHeaderType& BlockOf(const PrnType& r, const CaryDSWHeaderType*) { return r.dsw; }
inline const IccdCurveHeaderType& BlockOf(const PrnType& r, const IccdCurveHeaderType*) { return r.iccdCurve; }
inline const IccdImageHeaderType& BlockOf(const PrnType& r, const IccdImageHeaderType*) { return r.iccdImage; }

template <class T>
struct MemberOf;
template <class Block, class Field>
struct MemberOf<Field Block::*> {
  using BlockType = Block;
  using FieldType = Field;
};

template <class Field>
constexpr KemParameterKind KindOf() {
  if constexpr (std::is_array_v<Field>) {
    if (std::is_same_v<Field, char[kTextSize]>) return KemParameterKind::Text;
    return KindOf<std::remove_extent_t<Field>>();
  }
  if (std::is_same_v<Field, int>) return KemParameterKind::Int;
  if (std::is_same_v<Field, float>) return KemParameterKind::Float;
  return KemParameterKind::Bytes;
}

// Field<&BrukerHeaderType::brukerGain>("brukerGain")
template <auto Member>
constexpr KemParameter Field(const char* name = nullptr) {
  using Block = typename MemberOf<decltype(Member)>::BlockType;
  using Type = typename MemberOf<decltype(Member)>::FieldType;
  using Element = std::remove_all_extents_t<Type>;
  constexpr auto kind = KindOf<Type>();
  constexpr std::size_t unit = kind == KemParameterKind::Text ? kTextSize : sizeof(Element);
  return {name, kind, static_cast<int>(sizeof(Type) / unit), [](const PrnType& record) -> const void* {
            return &(BlockOf(record, static_cast<const Block*>(nullptr)).*Member);
          }};
}

// Time span in ns of a Hamamatsu raw image by its sweep-range code; 0 for a code outside 1 to 16.
const float& SweepSpan(int code);

}  // namespace kem::record
