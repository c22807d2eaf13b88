// AT1 camera image. Its texts lie in the labels.
#include "record/headers.h"

namespace kem::record {

constexpr Line kComments[] = {{"", kLabels[0]}, {"", kLabels[1]}, {"", kLabels[2]}};
constexpr Line kReport[] = {
    {"Start Time : ", kLabels[0]}, {"End Time   : ", kLabels[1]}, {"Date       : ", kLabels[2]}};

constexpr FileTypeRow kAT1Row = {
    .name = "Wright CCD Image",
    .dataType = "Wright CCD",
    .texts = kLabels,
    .comments = kComments,
    .report = kReport,
};

}  // namespace kem::record
