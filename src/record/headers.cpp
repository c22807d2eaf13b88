#include "record/headers.h"

namespace kem::record {

const FileTypeRow& RowOf(int fileType) {
  static constexpr FileTypeRow kNone;
  switch (static_cast<FileType>(fileType)) {  // without a default: compilers report a type that has no row
    case FileCvt:
      return kCvtRow;
    case FileXY:
      return kXYRow;
    case FileP3D:
      return kP3DRow;
    case FileHama:
      return kHamaRow;
    case FileAT1:
      return kAT1Row;
    case FileBruker:
      return kBrukerRow;
    case FileDilor:
      return kDilorRow;
    case FileCaryPrn:
      return kCaryPrnRow;
    case FileNPico:
      return kNPicoRow;
    case FileCary45:
      return kCary45Row;
    case FileP2D:
      return kP2DRow;
    case FileOMA:
      return kOMARow;
    case FileBES3T:
      return kBES3TRow;
    case FileHPDTA:
      return kHPDTARow;
    case FileCaryDSW:
      return kCaryDSWRow;
    case FileIccdCurve:
      return kIccdCurveRow;
    case FileIccdImage:
      return kIccdImageRow;
  }
  return kNone;
}

}  // namespace kem::record

std::span<const KemParameter> KemParameters(int fileType) { return kem::record::RowOf(fileType).parameters; }
