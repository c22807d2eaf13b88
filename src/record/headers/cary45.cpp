// Cary 45 (OS/2) absorption.
#include "record/headers.h"
#include "text/fields.h"

namespace kem::record {
using text::TextOf;

using Header = Cary45HeaderType;

template <>
constexpr Header PrnType::*kPlaceOf<Header> = &PrnType::cary45;

constexpr KemParameter kParameters[] = {
    Field<&Header::cary45Comment>("cary45Comment"),
    Field<&Header::cary45IndependentNir>("cary45IndependentNir"),
    Field<&Header::cary45VisSbw>("cary45VisSbw"),
    Field<&Header::cary45NirSbw>("cary45NirSbw"),
    Field<&Header::cary45VisIntTime>("cary45VisIntTime"),
    Field<&Header::cary45NirIntTime>("cary45NirIntTime"),
    Field<&Header::cary45SourceChange>("cary45SourceChange"),
    Field<&Header::cary45DetectorChange>("cary45DetectorChange"),
    Field<&Header::cary45XLabel>("cary45XLabel"),
    Field<&Header::cary45YLabel>("cary45YLabel"),
    Field<&Header::cary45Date>("cary45Date"),
};

// A value that is there when the near infrared has settings of its own, or when it has not.
template <bool independent, auto Member>
constexpr KemParameter kWhen{nullptr, KemParameterKind::Float, 1, [](const PrnType& r) -> const void* {
                               return (r.cary45.cary45IndependentNir != 0) == independent ? &(r.cary45.*Member)
                                                                                          : nullptr;
                             }};

constexpr Line kComments[] = {
    {"", Field<&Header::cary45Comment>()},
    {"SBW : ", kWhen<false, &Header::cary45VisSbw>},
    {"In. Time : ", kWhen<false, &Header::cary45VisIntTime>},
    {"VIS SBW : ", kWhen<true, &Header::cary45VisSbw>},
    {"VIS In. Time : ", kWhen<true, &Header::cary45VisIntTime>},
    {"NIR SBW : ", kWhen<true, &Header::cary45NirSbw>},
    {"NIR In. Time : ", kWhen<true, &Header::cary45NirIntTime>},
    {"Source Change : ", Field<&Header::cary45SourceChange>()},
    {"Detect Change : ", Field<&Header::cary45DetectorChange>()},
    {"Date : ", Field<&Header::cary45Date>()},
};

constexpr Line kReport[] = {
    {"Indep. NIR   : ", Field<&Header::cary45IndependentNir>()},
    {"VIS SBW      : ", Field<&Header::cary45VisSbw>()},
    {"NIR SBW      : ", Field<&Header::cary45NirSbw>()},
    {"VIS In. Time : ", Field<&Header::cary45VisIntTime>()},
    {"NIR In. Time : ", Field<&Header::cary45NirIntTime>()},
    {"SourceChange : ", Field<&Header::cary45SourceChange>()},
    {"DetectChange : ", Field<&Header::cary45DetectorChange>()},
    {"XLabel       : ", Field<&Header::cary45XLabel>()},
    {"YLabel       : ", Field<&Header::cary45YLabel>()},
    {"Comment      : ", Field<&Header::cary45Comment>()},
    {"Date         : ", Field<&Header::cary45Date>()},
};

constexpr FileTypeRow kCary45Row = {
    .name = "Cary OS/2 Absorption",
    .dataType = "Cary 5",
    .parameters = kParameters,
    .comments = kComments,
    .report = kReport,
    .titles = [](const PrnType& r) -> Titles {
      return {TextOf(r.cary45.cary45XLabel), TextOf(r.cary45.cary45YLabel), ""};
    },
};

}  // namespace kem::record
