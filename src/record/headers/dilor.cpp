// Dilor Raman spectrometer.
#include "record/headers.h"
#include "text/fields.h"

namespace kem::record {
using text::TextOf;

using Header = DilorHeaderType;

template <>
constexpr Header PrnType::*kPlaceOf<Header> = &PrnType::dilor;

constexpr KemParameter kParameters[] = {
    Field<&Header::dilorIntTime>("dilorIntTime"),     Field<&Header::dilorRepeat>("dilorRepeat"),
    Field<&Header::dilorPower>("dilorPower"),         Field<&Header::dilorOperator>("dilorOperator"),
    Field<&Header::dilorSample>("dilorSample"),       Field<&Header::dilorDetector>("dilorDetector"),
    Field<&Header::dilorGrating>("dilorGrating"),     Field<&Header::dilorFilter>("dilorFilter"),
    Field<&Header::dilorXLabel>("dilorXLabel"),       Field<&Header::dilorYLabel>("dilorYLabel"),
    Field<&Header::dilorExcLine>("dilorExcLine"),     Field<&Header::dilorForemono>("dilorForemono"),
    Field<&Header::dilorSpectro>("dilorSpectro"),     Field<&Header::dilorSlitWidth>("dilorSlitWidth"),
    Field<&Header::dilorSpecWidth>("dilorSpecWidth"), Field<&Header::dilorDate>("dilorDate"),
    Field<&Header::dilorComment>("dilorComment"),
};

constexpr Line kComments[] = {
    {"Sample : ", Field<&Header::dilorSample>()},      {"Exc. Line : ", Field<&Header::dilorExcLine>()},
    {"Power : ", Field<&Header::dilorPower>()},        {"Int. Time : ", Field<&Header::dilorIntTime>()},
    {"Repeat : ", Field<&Header::dilorRepeat>()},      {"Slit W. : ", Field<&Header::dilorSlitWidth>()},
    {"Foremono. : ", Field<&Header::dilorForemono>()}, {"Spectro. : ", Field<&Header::dilorSpectro>()},
    {"Spec. W. : ", Field<&Header::dilorSpecWidth>()}, {"Operator : ", Field<&Header::dilorOperator>()},
    {"Detector : ", Field<&Header::dilorDetector>()},  {"Grating : ", Field<&Header::dilorGrating>()},
    {"Filter : ", Field<&Header::dilorFilter>()},      {"Date : ", Field<&Header::dilorDate>()},
};

constexpr Line kReport[] = {
    {"Int. Time : ", Field<&Header::dilorIntTime>()},   {"Repeat    : ", Field<&Header::dilorRepeat>()},
    {"Power     : ", Field<&Header::dilorPower>()},     {"Operator  : ", Field<&Header::dilorOperator>()},
    {"Sample    : ", Field<&Header::dilorSample>()},    {"Detector  : ", Field<&Header::dilorDetector>()},
    {"Grating   : ", Field<&Header::dilorGrating>()},   {"Filter    : ", Field<&Header::dilorFilter>()},
    {"XLabel    : ", Field<&Header::dilorXLabel>()},    {"YLabel    : ", Field<&Header::dilorYLabel>()},
    {"Exc. Line : ", Field<&Header::dilorExcLine>()},   {"Foremono. : ", Field<&Header::dilorForemono>()},
    {"Spectro.  : ", Field<&Header::dilorSpectro>()},   {"Slit W.   : ", Field<&Header::dilorSlitWidth>()},
    {"Spec. W.  : ", Field<&Header::dilorSpecWidth>()}, {"Date      : ", Field<&Header::dilorDate>()},
    {"Comment   : ", Field<&Header::dilorComment>()},
};

constexpr FileTypeRow kDilorRow = {
    .name = "Dilor Raman spectrum",
    .dataType = "Dilor",
    .parameters = kParameters,
    .comments = kComments,
    .report = kReport,
    .titles = [](const PrnType& r) -> Titles {
      return {TextOf(r.dilor.dilorXLabel), TextOf(r.dilor.dilorYLabel), ""};
    },
};

}  // namespace kem::record
