// ICCD camera, curves and images. Copies carry neither header, reports show neither.
#include "record/headers.h"

namespace kem::record {

using CurveHeader = IccdCurveHeaderType;
using ImageHeader = IccdImageHeaderType;

template <>
constexpr CurveHeader PrnType::*kPlaceOf<CurveHeader> = &PrnType::iccdCurve;
template <>
constexpr ImageHeader PrnType::*kPlaceOf<ImageHeader> = &PrnType::iccdImage;

constexpr KemParameter kCurveParameters[] = {Field<&CurveHeader::iccdCurveExtra>("iccdCurveExtra")};
constexpr KemParameter kImageParameters[] = {Field<&ImageHeader::iccdImageHeader>("iccdImageHeader")};

template <int index>
constexpr KemParameter kExtra = NumbersIn<&CurveHeader::iccdCurveExtra, KemParameterKind::Int, 4 * index>();
template <int index>
constexpr KemParameter kWord = NumbersIn<&ImageHeader::iccdImageHeader, KemParameterKind::Int, 4 * index>();

constexpr Line kCurveComments[] = {{"lmin : ", kExtra<0>}, {"lmax : ", kExtra<1>}};
constexpr Line kImageComments[] = {
    {"nrowOffset : ", kWord<0>}, {"ncolOffset : ", kWord<1>},  {"nrows : ", kWord<2>},
    {"ncols : ", kWord<3>},      {"nrowgrpsize : ", kWord<4>}, {"ncolgrpsize : ", kWord<5>},
};

constexpr FileTypeRow kIccdCurveRow = {.parameters = kCurveParameters, .comments = kCurveComments, .copied = false};
constexpr FileTypeRow kIccdImageRow = {.parameters = kImageParameters, .comments = kImageComments, .copied = false};

}  // namespace kem::record
