// Bruker BES3T, DSC/DTA pair.
#include "record/headers.h"

namespace kem::record {

using Header = BES3THeaderType;

template <>
constexpr Header PrnType::*kPlaceOf<Header> = &PrnType::bes3t;

constexpr KemParameter kParameters[] = {
    Field<&Header::bes3tComment>("bes3tComment"),
    Field<&Header::bes3tExperiment>("bes3tExperiment"),
    Field<&Header::bes3tOrdinateSource>("bes3tOrdinateSource"),
    Field<&Header::bes3tAbscissaSource>("bes3tAbscissaSource"),
    Field<&Header::bes3tSptp>("bes3tSptp"),
    Field<&Header::bes3tMwFrequency>("bes3tMwFrequency"),
    Field<&Header::bes3tMwPower>("bes3tMwPower"),
    Field<&Header::bes3tTimeConstant>("bes3tTimeConstant"),
    Field<&Header::bes3tGain>("bes3tGain"),
    Field<&Header::bes3tPhase>("bes3tPhase"),
    Field<&Header::bes3tHarmonic>("bes3tHarmonic"),
    Field<&Header::bes3tOffset>("bes3tOffset"),
    Field<&Header::bes3tModAmplitude>("bes3tModAmplitude"),
    Field<&Header::bes3tModFrequency>("bes3tModFrequency"),
};

constexpr Line kComments[] = {
    {"", Field<&Header::bes3tComment>()},
    {"Micro. Freq.= ", Field<&Header::bes3tMwFrequency>()},
    {"Micro. Pow. = ", Field<&Header::bes3tMwPower>()},
    {"Rec. TimeCt = ", Field<&Header::bes3tTimeConstant>()},
    {"Modul. Freq. = ", Field<&Header::bes3tModFrequency>()},
    {"Modul. Amp. = ", Field<&Header::bes3tModAmplitude>()},
    {"Rec. Gain = ", Field<&Header::bes3tGain>()},
    {"Rec. Phase = ", Field<&Header::bes3tPhase>()},
    {"Rec. Offset = ", Field<&Header::bes3tOffset>()},
    {"Rec. Harm. = ", Field<&Header::bes3tHarmonic>()},
    {"InTime = ", Field<&Header::bes3tSptp>()},
    {"", Field<&Header::bes3tExperiment>()},
    {"Experiment: ", Field<&Header::bes3tExperiment>()},
    {"Ordinate: ", Field<&Header::bes3tOrdinateSource>()},
    {"Axis: ", Field<&Header::bes3tAbscissaSource>()},
};

constexpr Line kReport[] = {
    {"Title       : ", kLabels[2]},
    {"Experiment  : ", Field<&Header::bes3tExperiment>()},
    {"Ordinate    : ", Field<&Header::bes3tOrdinateSource>()},
    {"Swept Axis  : ", Field<&Header::bes3tAbscissaSource>()},
    {"InTime      : ", Field<&Header::bes3tSptp>()},
    {"Micro. Freq.: ", Field<&Header::bes3tMwFrequency>()},
    {"Micro. Pow. : ", Field<&Header::bes3tMwPower>()},
    {"Rec. TimeCt.: ", Field<&Header::bes3tTimeConstant>()},
    {"Rec. Gain   : ", Field<&Header::bes3tGain>()},
    {"Rec. Phase  : ", Field<&Header::bes3tPhase>()},
    {"Rec. Harm.  : ", Field<&Header::bes3tHarmonic>()},
    {"Rec. Offset : ", Field<&Header::bes3tOffset>()},
    {"Modul. Amp. : ", Field<&Header::bes3tModAmplitude>()},
    {"Modul. Freq.: ", Field<&Header::bes3tModFrequency>()},
};

constexpr FileTypeRow kBES3TRow = {
    .name = "Bruker BES^3T file",
    .dataType = "Bruker BES^3T",
    .parameters = kParameters,
    .texts = kLabels,
    .comments = kComments,
    .report = kReport,
    .titles = LabelsOfCurve,
};

}  // namespace kem::record
