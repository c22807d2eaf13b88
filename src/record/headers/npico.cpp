// NPico pump-probe scan.
#include "record/headers.h"

#include <iterator>

namespace kem::record {

using Header = NPicoHeaderType;

template <>
constexpr Header PrnType::*kPlaceOf<Header> = &PrnType::npico;

constexpr KemParameter kParameters[] = {
    Field<&Header::npicoScanType>("npicoScanType"),   Field<&Header::npicoOffset>("npicoOffset"),
    Field<&Header::npicoInput>("npicoInput"),         Field<&Header::npicoComments>("npicoComments"),
    Field<&Header::npicoLaserLine>("npicoLaserLine"), Field<&Header::npicoIntTime>("npicoIntTime"),
    Field<&Header::npicoRepeat>("npicoRepeat"),       Field<&Header::npicoBackScans>("npicoBackScans"),
};

struct ScanKind {
  const char* name = nullptr;
  std::string_view xTitle;
};
constexpr ScanKind kScanKinds[] = {{"Delay Scan", "Delay Time (ps)"},
                                   {"Time Scan", "Time (s)"},
                                   {"Excitation Scan", "Wavelength (nm)"},
                                   {"Monochromator Scan", "Wavelength (nm)"},
                                   {"DcDelay Scan", "Delay Time (ps)"}};

static ScanKind KindOf(const PrnType& r) {
  const auto kind = static_cast<unsigned>(r.npico.npicoScanType);
  return kind < std::size(kScanKinds) ? kScanKinds[kind] : ScanKind();
}
constexpr KemParameter kScanKind{nullptr, KemParameterKind::Text, 1,
                                 [](const PrnType& r) -> const void* { return KindOf(r).name; }};

constexpr Line kComments[] = {
    {"Offset : ", Field<&Header::npicoOffset>()},   {"Input : ", Field<&Header::npicoInput>()},
    {"Laser : ", Field<&Header::npicoLaserLine>()}, {"In. Time : ", Field<&Header::npicoIntTime>()},
    {"Repeat : ", Field<&Header::npicoRepeat>()},   {"BackScan : ", Field<&Header::npicoBackScans>()},
};

constexpr Line kReport[] = {
    {"", kScanKind},
    {"Offset   : ", Field<&Header::npicoOffset>()},
    {"Input    : ", Field<&Header::npicoInput>()},
    {"Laser    : ", Field<&Header::npicoLaserLine>()},
    {"InTime   : ", Field<&Header::npicoIntTime>()},
    {"Repeat   : ", Field<&Header::npicoRepeat>()},
    {"BackScan : ", Field<&Header::npicoBackScans>()},
};

constexpr FileTypeRow kNPicoRow = {
    .name = "NPico Delay Scan",
    .dataType = "NPico",
    .parameters = kParameters,
    .comments = kComments,
    .report = kReport,
    .titles = [](const PrnType& r) -> Titles {
      return {KindOf(r).xTitle, "Intensity", ""};
    },
};

}  // namespace kem::record
