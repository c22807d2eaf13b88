// Curves and grids of the exchange formats.
#include "record/headers.h"
#include "text/fields.h"

namespace kem::record {

constexpr Line kCvtReport[] = {{"X-axis : ", kLabels[0]}, {"Y-axis : ", kLabels[1]}};

// The Y title of an XY record stands under the Z prefix: hosts read the ordinate's title from there.
constexpr Line kXYReport[] = {{"X-axis : ", kLabels[0]}, {"Z-axis : ", kLabels[1]}, {"", kLabels[2]}};
constexpr Line kXYComments[] = {{"", kLabels[2]}};

constexpr Line kP3DReport[] = {{"X-axis : ", kLabels[0]},
                               {"Y-axis : ", kLabels[1]},
                               {"Z-axis : ", kLabels[2]},
                               {"", Field<&PrnType::commentLines>()}};
constexpr Line kP3DComments[] = {{"", Field<&PrnType::commentLines>()}};

Titles LabelsOfCurve(const PrnType& r) { return {text::TextOf(r.xLabel), text::TextOf(r.yLabel), ""}; }

constexpr FileTypeRow kCvtRow = {
    .name = ".cvt file",
    .dataType = "Cvt",
    .texts = std::span(kLabels).first<2>(),
    .report = kCvtReport,
    .titles = LabelsOfCurve,
};

constexpr FileTypeRow kXYRow = {
    .name = "XY .prn file",
    .dataType = "XY .prn",
    .texts = kLabels,
    .comments = kXYComments,
    .report = kXYReport,
    .titles = LabelsOfCurve,
};

constexpr FileTypeRow kP3DRow = {
    .name = ".p3d or .b3d file",
    .dataType = "P3D",
    .texts = kLabelsAndComments,
    .comments = kP3DComments,
    .report = kP3DReport,
    .titles = [](const PrnType& r) -> Titles {
      return {text::TextOf(r.xLabel), text::TextOf(r.yLabel), text::TextOf(r.zLabel)};
    },
};

}  // namespace kem::record
