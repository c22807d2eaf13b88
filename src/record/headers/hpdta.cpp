// HPDTA (HiPic) streak or CCD camera image.
#include "record/headers.h"
#include "text/fields.h"

namespace kem::record {
using text::TextOf;

using Header = HPDTAHeaderType;

template <>
constexpr Header PrnType::*kPlaceOf<Header> = &PrnType::hpdta;

constexpr KemParameter kParameters[] = {
    Field<&Header::hpdtaDataType>("hpdtaDataType"),
    Field<&Header::hpdtaDate>("hpdtaDate"),
    Field<&Header::hpdtaAcqMode>("hpdtaAcqMode"),
    Field<&Header::hpdtaAcqTime>("hpdtaAcqTime"),
    Field<&Header::hpdtaAcqNumber>("hpdtaAcqNumber"),
    Field<&Header::hpdtaExposures>("hpdtaExposures"),
    Field<&Header::hpdtaXUnit>("hpdtaXUnit"),
    Field<&Header::hpdtaYUnit>("hpdtaYUnit"),
    Field<&Header::hpdtaXScale>("hpdtaXScale"),
    Field<&Header::hpdtaReserved>("hpdtaReserved"),
    Field<&Header::hpdtaYScale>("hpdtaYScale"),
    Field<&Header::hpdtaXScalingType>("hpdtaXScalingType"),
    Field<&Header::hpdtaYScalingType>("hpdtaYScalingType"),
    Field<&Header::hpdtaXTablePos>("hpdtaXTablePos"),
    Field<&Header::hpdtaYTablePos>("hpdtaYTablePos"),
    Field<&Header::hpdtaGain>("hpdtaGain"),
    Field<&Header::hpdtaComment>("hpdtaComment"),
};

constexpr Line kComments[] = {
    {"Date      : ", Field<&Header::hpdtaDate>()},      {"Gain      : ", Field<&Header::hpdtaGain>()},
    {"Acq. Mode : ", Field<&Header::hpdtaAcqMode>()},   {"Acq. Time : ", Field<&Header::hpdtaAcqTime>()},
    {"Acq. No   : ", Field<&Header::hpdtaAcqNumber>()}, {"Exposures : ", Field<&Header::hpdtaExposures>()},
};

constexpr Line kReport[] = {
    {"Comment   : ", Field<&Header::hpdtaComment>()},      {"Date      : ", Field<&Header::hpdtaDate>()},
    {"Acq. Mode : ", Field<&Header::hpdtaAcqMode>()},      {"Acq. Time : ", Field<&Header::hpdtaAcqTime>()},
    {"Acq. No.  : ", Field<&Header::hpdtaAcqNumber>()},    {"Exposures : ", Field<&Header::hpdtaExposures>()},
    {"MCP Gain  : ", Field<&Header::hpdtaGain>()},         {"X Unit    : ", Field<&Header::hpdtaXUnit>()},
    {"X Mode    : ", Field<&Header::hpdtaXScalingType>()}, {"X Scale   : ", Field<&Header::hpdtaXScale>()},
    {"Y Unit    : ", Field<&Header::hpdtaYUnit>()},        {"Y Mode    : ", Field<&Header::hpdtaYScalingType>()},
    {"Y Scale   : ", Field<&Header::hpdtaYScale>()},       {"Format    : ", Field<&Header::hpdtaDataType>()},
};

constexpr FileTypeRow kHPDTARow = {
    .name = "HPDTA File",
    .dataType = "HPDTA",
    .parameters = kParameters,
    .comments = kComments,
    .report = kReport,
    .titles = [](const PrnType& r) -> Titles {
      return {TextOf(r.hpdta.hpdtaXUnit), TextOf(r.hpdta.hpdtaYUnit), "Intensity (arb. units)"};
    },
};

}  // namespace kem::record
