// Bruker ESR, spc/par pair.
#include "record/headers.h"

namespace kem::record {

using Header = BrukerHeaderType;

template <>
constexpr Header PrnType::*kPlaceOf<Header> = &PrnType::bruker;

constexpr KemParameter kParameters[] = {
    Field<&Header::brukerGain>("brukerGain"),
    Field<&Header::brukerPhase>("brukerPhase"),
    Field<&Header::brukerModFrequency>("brukerModFrequency"),
    Field<&Header::brukerModAmplitude>("brukerModAmplitude"),
    Field<&Header::brukerConvTime>("brukerConvTime"),
    Field<&Header::brukerTimeConstant>("brukerTimeConstant"),
    Field<&Header::brukerMode>("brukerMode"),
    Field<&Header::brukerResolution>("brukerResolution"),
    Field<&Header::brukerMwFrequency>("brukerMwFrequency"),
    Field<&Header::brukerMwPower>("brukerMwPower"),
    Field<&Header::brukerCenterField>("brukerCenterField"),
    Field<&Header::brukerSweepWidth>("brukerSweepWidth"),
    Field<&Header::brukerStaticField>("brukerStaticField"),
    Field<&Header::brukerOperator>("brukerOperator"),
    Field<&Header::brukerComment>("brukerComment"),
    Field<&Header::brukerDate>("brukerDate"),
};

constexpr Line kComments[] = {
    {"Operator   = ", Field<&Header::brukerOperator>()},
    {"", Field<&Header::brukerComment>()},
    {"Date       = ", Field<&Header::brukerDate>()},
    {"Gain       = ", Field<&Header::brukerGain>()},
    {"Phase      = ", Field<&Header::brukerPhase>()},
    {"Mod. Freq. = ", Field<&Header::brukerModFrequency>()},
    {"Mod. Amp.  = ", Field<&Header::brukerModAmplitude>()},
    {"Conv. Time = ", Field<&Header::brukerConvTime>()},
    {"Time Cons. = ", Field<&Header::brukerTimeConstant>()},
    {"Resolution = ", Field<&Header::brukerResolution>()},
    {"MicroW Fr. = ", Field<&Header::brukerMwFrequency>()},
    {"MicroW Pw. = ", Field<&Header::brukerMwPower>()},
    {"Cen. Field = ", Field<&Header::brukerCenterField>()},
    {"Sweep Wid. = ", Field<&Header::brukerSweepWidth>()},
};

constexpr Line kReport[] = {
    {"GAIN      (RRG) : ", Field<&Header::brukerGain>()},
    {"PHASE     (RPH) : ", Field<&Header::brukerPhase>()},
    {"MODULFR   (RMF) : ", Field<&Header::brukerModFrequency>()},
    {"MODULAM   (RMA) : ", Field<&Header::brukerModAmplitude>()},
    {"CONVTIME  (RCT) : ", Field<&Header::brukerConvTime>()},
    {"TIMECONS  (RTC) : ", Field<&Header::brukerTimeConstant>()},
    {"MODE            : ", Field<&Header::brukerMode>()},
    {"RESOL     (RES) : ", Field<&Header::brukerResolution>()},
    {"MICROFR   (MF ) : ", Field<&Header::brukerMwFrequency>()},
    {"MICROPOW  (MP ) : ", Field<&Header::brukerMwPower>()},
    {"CENFIELD  (HCF) : ", Field<&Header::brukerCenterField>()},
    {"SWEEPW    (HSW) : ", Field<&Header::brukerSweepWidth>()},
    {"STATFIELD (EMF) : ", Field<&Header::brukerStaticField>()},
    {"OPERATOR  (JON) : ", Field<&Header::brukerOperator>()},
    {"COMMENT   (JCO) : ", Field<&Header::brukerComment>()},
    {"DATE      (JDA) : ", Field<&Header::brukerDate>()},
};

constexpr FileTypeRow kBrukerRow = {
    .name = "Bruker ESR spectrum",
    .dataType = "Bruker ESR",
    .parameters = kParameters,
    .comments = kComments,
    .report = kReport,
    .titles = [](const PrnType&) -> Titles {
      return {"Gauss", "Intensity", ""};
    },
};

}  // namespace kem::record
