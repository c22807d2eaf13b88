// EG&G OMA detector. The 2-D exchange files carry the lines of its header, so both types share one layout.
#include "record/headers.h"

namespace kem::record {

using Header = OMAHeaderType;

template <>
constexpr Header PrnType::*kPlaceOf<Header> = &PrnType::oma;

constexpr KemParameter kParameters[] = {
    Field<&Header::omaScanMode>("omaScanMode"),
    Field<&Header::omaCalibration>("omaCalibration"),
    Field<&Header::omaRawWord>("omaRawWord"),
    Field<&Header::omaRange>("omaRange"),
    Field<&Header::omaTrackCount>("omaTrackCount"),
    Field<&Header::omaSliceCount>("omaSliceCount"),
    Field<&Header::omaSegmentIsSlice>("omaSegmentIsSlice"),
    Field<&Header::omaSegmentFirst>("omaSegmentFirst"),
    Field<&Header::omaSegmentWidth>("omaSegmentWidth"),
};

// Raw bytes, shown as the numbers that they hold.
constexpr KemParameter kTime = NumbersIn<&Header::omaRawWord, KemParameterKind::Float>();
constexpr KemParameter kCalibration = NumbersIn<&Header::omaCalibration, KemParameterKind::Float>();
constexpr KemParameter kXRange = NumbersIn<&Header::omaRange, KemParameterKind::Int, 0, 2>();
constexpr KemParameter kYRange = NumbersIn<&Header::omaRange, KemParameterKind::Int, 8, 2>();

constexpr Line kComments[] = {
    {"Setup  : ", kLabels[0]},
    {"InTime : ", kTime, " s"},
    {"Backgr : ", kLabels[1]},
    {"Slice  : ", kLabels[2]},
    {"Track  : ", Field<&Header::omaScanMode>()},
};

constexpr Line kReport[] = {
    {"Setup:    ", kLabels[0]},
    {"Backgr:   ", kLabels[1]},
    {"Slice:    ", kLabels[2]},
    {"Track:    ", Field<&Header::omaScanMode>()},
    {"InTime:   ", kTime},
    {"CalX:     ", kCalibration},
    {"X1, X2:   ", kXRange},
    {"Y1, Y2:   ", kYRange},
    {"OMAX_Gr:  ", Field<&Header::omaTrackCount>()},
    {"OMAY_Gr:  ", Field<&Header::omaSliceCount>()},
    {"OMAGr_Ty: ", Field<&Header::omaSegmentIsSlice>()},
    {"OMAGr_St: ", Field<&Header::omaSegmentFirst>()},
    {"OMAGr_Le: ", Field<&Header::omaSegmentWidth>()},
};

constexpr FileTypeRow kOMARow = {
    .name = "EG&G OMA",
    .dataType = "EG&G OMA",
    .parameters = kParameters,
    .texts = kLabels,
    .comments = kComments,
    .report = kReport,
    .trimmed = true,
};

constexpr FileTypeRow kP2DRow = {
    .name = ".p2d or .b2d file",
    .dataType = "P2D",
    .texts = kLabelsAndComments,
    .comments = kComments,
    .report = kReport,
    .titles = LabelsOfCurve,
    .trimmed = true,
};

}  // namespace kem::record
