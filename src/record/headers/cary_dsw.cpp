// Cary DSW.
#include "record/headers.h"
#include "text/fields.h"

namespace kem::record {
using text::TextOf;

using Header = CaryDSWHeaderType;

template <>
constexpr Header PrnType::*kPlaceOf<Header> = &PrnType::dsw;

constexpr KemParameter kParameters[] = {
    Field<&Header::dswXTitle>("dswXTitle"), Field<&Header::dswYTitle>("dswYTitle"),
    Field<&Header::dswText10>("dswText10"), Field<&Header::dswText11>("dswText11"),
    Field<&Header::dswText13>("dswText13"), Field<&Header::dswText14>("dswText14"),
    Field<&Header::dswText15>("dswText15"), Field<&Header::dswText26>("dswText26"),
};

// 15 before 14: the order in which the instrument's own report lists them.
constexpr Line kComments[] = {
    {"", Field<&Header::dswXTitle>()}, {"", Field<&Header::dswYTitle>()}, {"", Field<&Header::dswText13>()},
    {"", Field<&Header::dswText15>()}, {"", Field<&Header::dswText14>()}, {"", Field<&Header::dswText26>()},
};

constexpr Line kReport[] = {
    {"Sample    : ", Field<&Header::dswXTitle>()}, {"Y Title   : ", Field<&Header::dswYTitle>()},
    {"Text 10   : ", Field<&Header::dswText10>()}, {"Text 11   : ", Field<&Header::dswText11>()},
    {"Text 13   : ", Field<&Header::dswText13>()}, {"Text 14   : ", Field<&Header::dswText14>()},
    {"Text 15   : ", Field<&Header::dswText15>()}, {"Text 26   : ", Field<&Header::dswText26>()},
};

constexpr FileTypeRow kCaryDSWRow = {
    .name = "Cary DSW file",
    .dataType = "Cary DSW",
    .parameters = kParameters,
    .comments = kComments,
    .report = kReport,
    .titles = [](const PrnType& r) -> Titles {
      return {TextOf(r.dsw.dswXTitle), TextOf(r.dsw.dswYTitle), ""};
    },
};

}  // namespace kem::record
