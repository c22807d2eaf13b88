// Cary absorption prn.
#include "record/headers.h"
#include "text/fields.h"

namespace kem::record {
using text::TextOf;

using Header = CaryPrnHeaderType;

template <>
constexpr Header PrnType::*kPlaceOf<Header> = &PrnType::caryPrn;

constexpr KemParameter kParameters[] = {
    Field<&Header::caryPrnSample>("caryPrnSample"),   Field<&Header::caryPrnDate>("caryPrnDate"),
    Field<&Header::caryPrnYLabel>("caryPrnYLabel"),   Field<&Header::caryPrnSbw>("caryPrnSbw"),
    Field<&Header::caryPrnIntTime>("caryPrnIntTime"), Field<&Header::caryPrnTemperature>("caryPrnTemperature"),
};

constexpr Line kComments[] = {
    {"Sample : ", Field<&Header::caryPrnSample>()},
    {"Date : ", Field<&Header::caryPrnDate>()},
    {"SBW : ", Field<&Header::caryPrnSbw>()},
    {"Int. Time : ", Field<&Header::caryPrnIntTime>()},
    {"Temperature : ", Field<&Header::caryPrnTemperature>()},
};

constexpr Line kReport[] = {
    {"Sample      : ", Field<&Header::caryPrnSample>()},  {"Date        : ", Field<&Header::caryPrnDate>()},
    {"YLabel      : ", Field<&Header::caryPrnYLabel>()},  {"SBW         : ", Field<&Header::caryPrnSbw>()},
    {"Int. Time   : ", Field<&Header::caryPrnIntTime>()}, {"Temperature : ", Field<&Header::caryPrnTemperature>()},
};

constexpr FileTypeRow kCaryPrnRow = {
    .name = "Cary Absorption .prn",
    .dataType = "Cary 5",
    .parameters = kParameters,
    .comments = kComments,
    .report = kReport,
    .titles = [](const PrnType& r) -> Titles {
      return {"nm", TextOf(r.caryPrn.caryPrnYLabel), ""};
    },
};

}  // namespace kem::record
