// Hamamatsu streak camera, raw image.
#include "record/headers.h"

#include <iterator>

namespace kem::record {

using Header = HamaHeaderType;

template <>
constexpr Header PrnType::*kPlaceOf<Header> = &PrnType::hama;

constexpr KemParameter kParameters[] = {
    Field<&Header::hamaIntegrationTime>("hamaIntegrationTime"),
    Field<&Header::hamaSweepCondition>("hamaSweepCondition"),
    Field<&Header::hamaSweepRange>("hamaSweepRange"),
    Field<&Header::hamaCenterWavelength>("hamaCenterWavelength"),
    Field<&Header::hamaDispersion>("hamaDispersion"),
    Field<&Header::hamaCcdCenter>("hamaCcdCenter"),
};

constexpr float kSweepSpans[] = {0,   1.17f, 1.97f, 5.32f, 9.94f, 20.1f, 49.9f, 99.8f, 199,
                                 500, 1000,  2000,  5000,  10000, 20000, 50000, 100000};

// The table entry behind the sweep-range code, not the code.
constexpr KemParameter kSweepRange{nullptr, KemParameterKind::Float, 1, [](const PrnType& r) -> const void* {
                                     return &SweepSpan(r.hama.hamaSweepRange);
                                   }};

constexpr Line kComments[] = {
    {"Integration Time: ", Field<&Header::hamaIntegrationTime>()},
    {"Sweep Condition: ", Field<&Header::hamaSweepCondition>()},
    {"Sweep Range: ", kSweepRange},
    {"Center Wavelength: ", Field<&Header::hamaCenterWavelength>()},
    {"Dispersion: ", Field<&Header::hamaDispersion>()},
    {"CCD Center: ", Field<&Header::hamaCcdCenter>()},
};

constexpr Line kReport[] = {
    {"Integration Time  : ", Field<&Header::hamaIntegrationTime>()},
    {"Sweep Condition   : ", Field<&Header::hamaSweepCondition>()},
    {"Sweep Range       : ", kSweepRange},
    {"Center Wavelength : ", Field<&Header::hamaCenterWavelength>()},
    {"Dispersion        : ", Field<&Header::hamaDispersion>()},
};

const float& SweepSpan(int code) {
  const auto row = static_cast<unsigned>(code);
  return kSweepSpans[row < std::size(kSweepSpans) ? row : 0];
}

constexpr FileTypeRow kHamaRow = {
    .name = "Hamamatsu Raw file",
    .dataType = "Hamamatsu Raw",
    .parameters = kParameters,
    .comments = kComments,
    .report = kReport,
    .titles = [](const PrnType&) -> Titles {
      return {"Wavelength (nm)", "Time (ns)", "Intensity"};
    },
};

}  // namespace kem::record
