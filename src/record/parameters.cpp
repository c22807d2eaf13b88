// The acquisition parameters of every instrument, in the order of their blocks.
#include "record/parameters.h"

namespace kem::record {
namespace {

constexpr KemParameter kHama[] = {
    Field<&HamaHeaderType::hamaIntegrationTime>("hamaIntegrationTime"),
    Field<&HamaHeaderType::hamaSweepCondition>("hamaSweepCondition"),
    Field<&HamaHeaderType::hamaSweepRange>("hamaSweepRange"),
    Field<&HamaHeaderType::hamaCenterWavelength>("hamaCenterWavelength"),
    Field<&HamaHeaderType::hamaDispersion>("hamaDispersion"),
    Field<&HamaHeaderType::hamaCcdCenter>("hamaCcdCenter"),
};

constexpr KemParameter kBruker[] = {
    Field<&BrukerHeaderType::brukerGain>("brukerGain"),
    Field<&BrukerHeaderType::brukerPhase>("brukerPhase"),
    Field<&BrukerHeaderType::brukerModFrequency>("brukerModFrequency"),
    Field<&BrukerHeaderType::brukerModAmplitude>("brukerModAmplitude"),
    Field<&BrukerHeaderType::brukerConvTime>("brukerConvTime"),
    Field<&BrukerHeaderType::brukerTimeConstant>("brukerTimeConstant"),
    Field<&BrukerHeaderType::brukerMode>("brukerMode"),
    Field<&BrukerHeaderType::brukerResolution>("brukerResolution"),
    Field<&BrukerHeaderType::brukerMwFrequency>("brukerMwFrequency"),
    Field<&BrukerHeaderType::brukerMwPower>("brukerMwPower"),
    Field<&BrukerHeaderType::brukerCenterField>("brukerCenterField"),
    Field<&BrukerHeaderType::brukerSweepWidth>("brukerSweepWidth"),
    Field<&BrukerHeaderType::brukerStaticField>("brukerStaticField"),
    Field<&BrukerHeaderType::brukerOperator>("brukerOperator"),
    Field<&BrukerHeaderType::brukerComment>("brukerComment"),
    Field<&BrukerHeaderType::brukerDate>("brukerDate"),
};

constexpr KemParameter kDilor[] = {
    Field<&DilorHeaderType::dilorIntTime>("dilorIntTime"),
    Field<&DilorHeaderType::dilorRepeat>("dilorRepeat"),
    Field<&DilorHeaderType::dilorPower>("dilorPower"),
    Field<&DilorHeaderType::dilorOperator>("dilorOperator"),
    Field<&DilorHeaderType::dilorSample>("dilorSample"),
    Field<&DilorHeaderType::dilorDetector>("dilorDetector"),
    Field<&DilorHeaderType::dilorGrating>("dilorGrating"),
    Field<&DilorHeaderType::dilorFilter>("dilorFilter"),
    Field<&DilorHeaderType::dilorXLabel>("dilorXLabel"),
    Field<&DilorHeaderType::dilorYLabel>("dilorYLabel"),
    Field<&DilorHeaderType::dilorExcLine>("dilorExcLine"),
    Field<&DilorHeaderType::dilorForemono>("dilorForemono"),
    Field<&DilorHeaderType::dilorSpectro>("dilorSpectro"),
    Field<&DilorHeaderType::dilorSlitWidth>("dilorSlitWidth"),
    Field<&DilorHeaderType::dilorSpecWidth>("dilorSpecWidth"),
    Field<&DilorHeaderType::dilorDate>("dilorDate"),
    Field<&DilorHeaderType::dilorComment>("dilorComment"),
};

constexpr KemParameter kCaryPrn[] = {
    Field<&CaryPrnHeaderType::caryPrnSample>("caryPrnSample"),
    Field<&CaryPrnHeaderType::caryPrnDate>("caryPrnDate"),
    Field<&CaryPrnHeaderType::caryPrnYLabel>("caryPrnYLabel"),
    Field<&CaryPrnHeaderType::caryPrnSbw>("caryPrnSbw"),
    Field<&CaryPrnHeaderType::caryPrnIntTime>("caryPrnIntTime"),
    Field<&CaryPrnHeaderType::caryPrnTemperature>("caryPrnTemperature"),
};

constexpr KemParameter kNPico[] = {
    Field<&NPicoHeaderType::npicoScanType>("npicoScanType"),
    Field<&NPicoHeaderType::npicoOffset>("npicoOffset"),
    Field<&NPicoHeaderType::npicoInput>("npicoInput"),
    Field<&NPicoHeaderType::npicoComments>("npicoComments"),
    Field<&NPicoHeaderType::npicoLaserLine>("npicoLaserLine"),
    Field<&NPicoHeaderType::npicoIntTime>("npicoIntTime"),
    Field<&NPicoHeaderType::npicoRepeat>("npicoRepeat"),
    Field<&NPicoHeaderType::npicoBackScans>("npicoBackScans"),
};

constexpr KemParameter kCary45[] = {
    Field<&Cary45HeaderType::cary45Comment>("cary45Comment"),
    Field<&Cary45HeaderType::cary45IndependentNir>("cary45IndependentNir"),
    Field<&Cary45HeaderType::cary45VisSbw>("cary45VisSbw"),
    Field<&Cary45HeaderType::cary45NirSbw>("cary45NirSbw"),
    Field<&Cary45HeaderType::cary45VisIntTime>("cary45VisIntTime"),
    Field<&Cary45HeaderType::cary45NirIntTime>("cary45NirIntTime"),
    Field<&Cary45HeaderType::cary45SourceChange>("cary45SourceChange"),
    Field<&Cary45HeaderType::cary45DetectorChange>("cary45DetectorChange"),
    Field<&Cary45HeaderType::cary45XLabel>("cary45XLabel"),
    Field<&Cary45HeaderType::cary45YLabel>("cary45YLabel"),
    Field<&Cary45HeaderType::cary45Date>("cary45Date"),
};

constexpr KemParameter kOMA[] = {
    Field<&OMAHeaderType::omaScanMode>("omaScanMode"),
    Field<&OMAHeaderType::omaCalibration>("omaCalibration"),
    Field<&OMAHeaderType::omaRawWord>("omaRawWord"),
    Field<&OMAHeaderType::omaRange>("omaRange"),
    Field<&OMAHeaderType::omaTrackCount>("omaTrackCount"),
    Field<&OMAHeaderType::omaSliceCount>("omaSliceCount"),
    Field<&OMAHeaderType::omaSegmentIsSlice>("omaSegmentIsSlice"),
    Field<&OMAHeaderType::omaSegmentFirst>("omaSegmentFirst"),
    Field<&OMAHeaderType::omaSegmentWidth>("omaSegmentWidth"),
};

constexpr KemParameter kBES3T[] = {
    Field<&BES3THeaderType::bes3tComment>("bes3tComment"),
    Field<&BES3THeaderType::bes3tExperiment>("bes3tExperiment"),
    Field<&BES3THeaderType::bes3tOrdinateSource>("bes3tOrdinateSource"),
    Field<&BES3THeaderType::bes3tAbscissaSource>("bes3tAbscissaSource"),
    Field<&BES3THeaderType::bes3tSptp>("bes3tSptp"),
    Field<&BES3THeaderType::bes3tMwFrequency>("bes3tMwFrequency"),
    Field<&BES3THeaderType::bes3tMwPower>("bes3tMwPower"),
    Field<&BES3THeaderType::bes3tTimeConstant>("bes3tTimeConstant"),
    Field<&BES3THeaderType::bes3tGain>("bes3tGain"),
    Field<&BES3THeaderType::bes3tPhase>("bes3tPhase"),
    Field<&BES3THeaderType::bes3tHarmonic>("bes3tHarmonic"),
    Field<&BES3THeaderType::bes3tOffset>("bes3tOffset"),
    Field<&BES3THeaderType::bes3tModAmplitude>("bes3tModAmplitude"),
    Field<&BES3THeaderType::bes3tModFrequency>("bes3tModFrequency"),
};

constexpr KemParameter kHPDTA[] = {
    Field<&HPDTAHeaderType::hpdtaDataType>("hpdtaDataType"),
    Field<&HPDTAHeaderType::hpdtaDate>("hpdtaDate"),
    Field<&HPDTAHeaderType::hpdtaAcqMode>("hpdtaAcqMode"),
    Field<&HPDTAHeaderType::hpdtaAcqTime>("hpdtaAcqTime"),
    Field<&HPDTAHeaderType::hpdtaAcqNumber>("hpdtaAcqNumber"),
    Field<&HPDTAHeaderType::hpdtaExposures>("hpdtaExposures"),
    Field<&HPDTAHeaderType::hpdtaXUnit>("hpdtaXUnit"),
    Field<&HPDTAHeaderType::hpdtaYUnit>("hpdtaYUnit"),
    Field<&HPDTAHeaderType::hpdtaXScale>("hpdtaXScale"),
    Field<&HPDTAHeaderType::hpdtaReserved>("hpdtaReserved"),
    Field<&HPDTAHeaderType::hpdtaYScale>("hpdtaYScale"),
    Field<&HPDTAHeaderType::hpdtaXScalingType>("hpdtaXScalingType"),
    Field<&HPDTAHeaderType::hpdtaYScalingType>("hpdtaYScalingType"),
    Field<&HPDTAHeaderType::hpdtaXTablePos>("hpdtaXTablePos"),
    Field<&HPDTAHeaderType::hpdtaYTablePos>("hpdtaYTablePos"),
    Field<&HPDTAHeaderType::hpdtaGain>("hpdtaGain"),
    Field<&HPDTAHeaderType::hpdtaComment>("hpdtaComment"),
};

constexpr KemParameter kCaryDSW[] = {
    Field<&CaryDSWHeaderType::dswXTitle>("dswXTitle"), Field<&CaryDSWHeaderType::dswYTitle>("dswYTitle"),
    Field<&CaryDSWHeaderType::dswText10>("dswText10"), Field<&CaryDSWHeaderType::dswText11>("dswText11"),
    Field<&CaryDSWHeaderType::dswText13>("dswText13"), Field<&CaryDSWHeaderType::dswText14>("dswText14"),
    Field<&CaryDSWHeaderType::dswText15>("dswText15"), Field<&CaryDSWHeaderType::dswText26>("dswText26"),
};

constexpr KemParameter kIccdCurve[] = {Field<&IccdCurveHeaderType::iccdCurveExtra>("iccdCurveExtra")};
constexpr KemParameter kIccdImage[] = {Field<&IccdImageHeaderType::iccdImageHeader>("iccdImageHeader")};

constexpr float kSweepSpans[] = {0,   1.17f, 1.97f, 5.32f, 9.94f, 20.1f, 49.9f, 99.8f, 199,
                                 500, 1000,  2000,  5000,  10000, 20000, 50000, 100000};

}  // namespace

const float& SweepSpan(int code) {
  const auto row = static_cast<unsigned>(code);
  return kSweepSpans[row < std::size(kSweepSpans) ? row : 0];
}

}  // namespace kem::record

std::span<const KemParameter> KemParameters(int fileType) {
  using namespace kem::record;
  switch (fileType) {
    case FileHama:
      return kHama;
    case FileBruker:
      return kBruker;
    case FileDilor:
      return kDilor;
    case FileCaryPrn:
      return kCaryPrn;
    case FileNPico:
      return kNPico;
    case FileCary45:
      return kCary45;
    case FileOMA:
      return kOMA;
    case FileBES3T:
      return kBES3T;
    case FileHPDTA:
      return kHPDTA;
    case FileCaryDSW:
      return kCaryDSW;
    case FileIccdCurve:
      return kIccdCurve;
    case FileIccdImage:
      return kIccdImage;
    default:
      return {};
  }
}
