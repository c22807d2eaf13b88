/// \file kem.h
/// Laboratory spectra and time-resolved data in one record.
///
/// A record (PrnType) is a curve or a grid with its axes, titles and acquisition parameters. It is loaded
/// from an instrument's file by name, combined with other records by ordinary operators, analysed by its
/// members, and written to exchange formats.
///
/// \code
///   PrnType spectrum("scan.DSC", 0);
///   if (!spectrum) return 1;
///   float field = spectrum.xStart;
/// \endcode
///
/// Contents
///   1. storage shapes and file types
///   2. parameter blocks of the instruments
///   3. the record: storage, report, loading, exchange formats, instrument readers, arithmetic, analysis
///   4. plain functions for hosts that keep one current record
///   5. what is known about files and records: acquisition parameters, items, format
///
/// All of this is for one thread: \ref prn, \ref ReadNextFlag, \ref WriteFailedFlag and the extension hooks are
/// process-wide and unguarded. kem/dataset.h and kem/record.h have functions for any number of threads.
#ifndef KEM_H
#define KEM_H

#if __cplusplus < 201709L && (!defined(_MSVC_LANG) || _MSVC_LANG < 202002L)
#error kem.h needs C++20
#endif

#include <cstddef>
#include <iosfwd>
#include <span>

#include "kem/export.h"

// ---------------------------------------------------------------- 1. storage shapes and file types

/// Capacity in bytes of every text of a record, its terminating NUL included.
inline constexpr int kTextSize = 132;
/// Number of comment lines of a generic record.
inline constexpr int kCommentLines = 12;

/// Which arrays a record stores: 1 = X array, 2 = Y array, 4 = Z grid. An axis without an array is defined by
/// its start and step.
enum AllocType : int { AllocNone, AllocX, AllocY, AllocXY, AllocZ, AllocXZ, AllocYZ, AllocXYZ };

/// Where a record came from; decides which view of its header area is valid.
enum FileType : int {
  FileCvt = 0,
  FileXY = 1,
  FileP3D = 2,
  FileHama = 3,
  FileAT1 = 4,
  FileBruker = 5,
  FileDilor = 6,
  FileCaryPrn = 7,
  FileNPico = 8,
  FileCary45 = 9,
  FileP2D = 12,
  FileOMA = 13,
  FileBES3T = 14,
  FileHPDTA = 15,
  FileCaryDSW = 16,
  FileIccdCurve = 17,
  FileIccdImage = 18
};

// ---------------------------------------------------------------- 2. parameter blocks of the instruments

/// Hamamatsu streak camera, raw image.
struct HamaHeaderType {
  int hamaIntegrationTime;
  int hamaSweepCondition;
  int hamaSweepRange;          ///< code 1 to 16 of the time span of the image
  float hamaCenterWavelength;  ///< nm
  float hamaDispersion;        ///< nm per pixel
  int hamaCcdCenter;           ///< pixel at which the centre wavelength falls
};

/// Bruker ESR spectrometer, spc/par pair.
struct BrukerHeaderType {
  float brukerGain;
  float brukerPhase;         ///< degrees
  float brukerModFrequency;  ///< kHz
  float brukerModAmplitude;  ///< gauss
  float brukerConvTime;      ///< ms
  float brukerTimeConstant;  ///< ms
  char brukerMode[kTextSize];
  int brukerResolution;     ///< points
  float brukerMwFrequency;  ///< GHz; -1 when the file names none
  float brukerMwPower;      ///< mW; -1 when the file names none
  float brukerCenterField;  ///< gauss
  float brukerSweepWidth;   ///< gauss
  float brukerStaticField;  ///< gauss
  char brukerOperator[kTextSize];
  char brukerComment[kTextSize];
  char brukerDate[kTextSize];
};

/// Dilor Raman spectrometer.
struct DilorHeaderType {
  float dilorIntTime;  ///< s; ordinates are stored per unit of it
  float dilorRepeat;
  char dilorPower[kTextSize];
  char dilorOperator[kTextSize];
  char dilorSample[kTextSize];
  char dilorDetector[kTextSize];
  char dilorGrating[kTextSize];
  char dilorFilter[kTextSize];
  char dilorXLabel[kTextSize];
  char dilorYLabel[kTextSize];
  float dilorExcLine;   ///< excitation line
  float dilorForemono;  ///< foremonochromator
  float dilorSpectro;   ///< spectrograph
  float dilorSlitWidth;
  float dilorSpecWidth;
  char dilorDate[kTextSize];
  char dilorComment[kTextSize];
};

/// Cary absorption prn.
struct CaryPrnHeaderType {
  char caryPrnSample[kTextSize];
  char caryPrnDate[kTextSize];
  char caryPrnYLabel[kTextSize];
  float caryPrnSbw;      ///< spectral band width, nm
  float caryPrnIntTime;  ///< s
  char caryPrnTemperature[kTextSize];
};

/// NPico pump-probe delay scan.
struct NPicoHeaderType {
  int npicoScanType;  ///< 0 delay, 1 time, 2 excitation, 3 monochromator, 4 DC delay
  float npicoOffset;
  char npicoInput[kTextSize];
  char npicoComments[4][kTextSize];
  float npicoLaserLine;
  float npicoIntTime;
  float npicoRepeat;
  int npicoBackScans;
};

/// Cary 45 (OS/2) absorption.
struct Cary45HeaderType {
  char cary45Comment[kTextSize];
  int cary45IndependentNir;  ///< non-zero when the near infrared has settings of its own
  float cary45VisSbw;
  float cary45NirSbw;
  float cary45VisIntTime;
  float cary45NirIntTime;
  float cary45SourceChange;    ///< nm
  float cary45DetectorChange;  ///< nm
  char cary45XLabel[kTextSize];
  char cary45YLabel[kTextSize];
  char cary45Date[kTextSize];
};

/// EG&G OMA detector. The record keeps its three labels beside this block.
struct OMAHeaderType {
  char omaScanMode[kTextSize];       ///< "Random" or "Contiguous"
  unsigned char omaCalibration[16];  ///< raw; the first four bytes are a little-endian float
  unsigned char omaRawWord[4];       ///< raw
  int omaRange[4];                   ///< first, last, first, last
  int omaTrackCount;
  int omaSliceCount;
  int omaSegmentIsSlice[5];  ///< 0 random track, 1 non-uniform slice
  int omaSegmentFirst[5];
  int omaSegmentWidth[5];
};

/// Bruker BES3T, DSC/DTA pair. The record keeps its three labels beside this block.
struct BES3THeaderType {
  char bes3tComment[kTextSize];
  char bes3tExperiment[kTextSize];
  char bes3tOrdinateSource[kTextSize];
  char bes3tAbscissaSource[kTextSize];
  float bes3tSptp;          ///< sampling time per point, s
  float bes3tMwFrequency;   ///< Hz
  float bes3tMwPower;       ///< W
  float bes3tTimeConstant;  ///< s
  float bes3tGain;          ///< dB
  float bes3tPhase;         ///< degrees
  float bes3tHarmonic;
  float bes3tOffset;        ///< per cent
  float bes3tModAmplitude;  ///< T
  float bes3tModFrequency;  ///< Hz
};

/// HPDTA (HiPic) streak or CCD camera image.
struct HPDTAHeaderType {
  int hpdtaDataType;  ///< 0 unsigned 8-bit, 2 unsigned 16-bit, 3 unsigned 32-bit
  char hpdtaDate[kTextSize];
  char hpdtaAcqMode[kTextSize];
  char hpdtaAcqTime[kTextSize];
  int hpdtaAcqNumber;
  int hpdtaExposures;
  char hpdtaXUnit[kTextSize];
  char hpdtaYUnit[kTextSize];
  float hpdtaXScale;
  int hpdtaReserved;
  float hpdtaYScale;
  int hpdtaXScalingType;  ///< 1 linear, else a table in the file
  int hpdtaYScalingType;
  int hpdtaXTablePos;  ///< byte position of the X table in the file
  int hpdtaYTablePos;
  char hpdtaGain[kTextSize];
  char hpdtaComment[kTextSize];
};

/// Cary DSW. The numbers are those of the file's parameter records.
struct CaryDSWHeaderType {
  char dswXTitle[kTextSize];
  char dswYTitle[kTextSize];
  char dswText10[kTextSize];
  char dswText11[kTextSize];
  char dswText13[kTextSize];
  char dswText14[kTextSize];
  char dswText15[kTextSize];
  char dswText26[kTextSize];
};

/// ICCD curve: the two values that trail it in the file.
struct IccdCurveHeaderType {
  unsigned char iccdCurveExtra[2][4];  ///< raw; two little-endian integers
};

/// ICCD image: row offset, column offset, rows, columns, row group size, column group size.
struct IccdImageHeaderType {
  int iccdImageHeader[6];
};

// ---------------------------------------------------------------- 3. the record

/// One measured data set: a curve (Y values over an X axis) or a grid (a Z matrix over an X and a Y axis),
/// with the header of the file it came from.
///
/// A record owns the arrays that `allocType` names; copies are deep. Members that return `PrnType&` hand out a
/// new record on the heap, which the caller deletes; when the source does not suit, that record is empty
/// (`allocType` 0). Members that return a `PrnType` by value report failure the same way.
///
/// When memory runs out, std::bad_alloc is thrown. A record that was to be loaded, allocated or assigned is then
/// empty, any other as it was.
class KEM_API PrnType {
 public:
  char fileName[kTextSize] = {};  ///< file loaded, or the name of the operation that made the record
  int fileType = 0;               ///< a FileType
  int allocType = 0;              ///< an AllocType; 0 means no data
  float* xArray = nullptr;        ///< `nX` values, when bit 1 of `allocType` is set
  float* yArray = nullptr;        ///< `nY` values, when bit 2 is set
  float** zArray = nullptr;       ///< `nX` rows of `nY` values, when bit 4 is set
  int active = 0;                 ///< 1 once data has been filled in
  float xStep = 0;
  float xStart = 0;  ///< first X value of a defined axis, smallest of a stored one
  float xEnd = 0;
  float yStep = 0;
  float yStart = 0;  ///< first Y value of a defined axis, smallest of a stored one
  float yEnd = 0;
  float zMin = 0;
  float zMax = 0;
  int nX = 0;  ///< X points; rows of a grid
  int nY = 0;  ///< length of a curve; columns of a grid

#if defined(__GNUC__)
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Wpedantic"
#endif
  /// The header area: titles and comment lines, or the parameter block of the instrument laid over them.
  union {
    struct {
      char xLabel[kTextSize];
      char yLabel[kTextSize];
      union {
        struct {
          char zLabel[kTextSize];
          union {
            char commentLines[kCommentLines][kTextSize];
            BES3THeaderType bes3t;
            OMAHeaderType oma;
            IccdImageHeaderType iccdImage;
          };
        };
        IccdCurveHeaderType iccdCurve;
      };
    };
    HamaHeaderType hama;
    BrukerHeaderType bruker;
    DilorHeaderType dilor;
    CaryPrnHeaderType caryPrn;
    NPicoHeaderType npico;
    Cary45HeaderType cary45;
    HPDTAHeaderType hpdta;
    CaryDSWHeaderType dsw;
    char headerArea[3 + kCommentLines][kTextSize] = {};
  };
#if defined(__GNUC__)
#pragma GCC diagnostic pop
#endif
  void* extension = nullptr;  ///< the host's own data, see \ref ExtensionCreateHook

  /// \name Storage
  /// @{

  /// An empty record, or one with the arrays of \p type; see \ref Allocate.
  PrnType(AllocType type = AllocNone, int count1 = 0, int count2 = 0);
  /// Loads a file; see \ref ReadFile. `!record` tells whether that failed.
  PrnType(const char* name, int index);
  /// A deep copy.
  PrnType(const PrnType& src);
  /// Takes everything over, the host's extension too, and leaves \p src empty. No hook is called.
  PrnType(PrnType&& src) noexcept;
  ~PrnType();
  /// Takes over a deep copy of \p src. Returns a further copy by value, so a chained assignment receives
  /// copies.
  PrnType operator=(const PrnType& src);
  /// The same, with the arrays taken over from \p src, which is left empty. Where hooks are set it is copied, so
  /// that each of its extensions is created, copied and freed as ever.
  PrnType operator=(PrnType&& src);  // NOLINT(performance-noexcept-move-constructor): it copies for its caller

  /// Creates the arrays of \p type (contents not initialised) and sets counts, axes, labels and `fileType` to
  /// those of a fresh record. Curves have \p count1 points; grids \p count1 rows of \p count2 values. The
  /// record must hold no arrays. Throws std::bad_alloc for a length that is negative or cannot be had.
  void Allocate(AllocType type, int count1, int count2);
  /// Releases all arrays and makes the record empty.
  void DeAllocate();
  /// Copies arrays, counts and axis ranges, releasing what the record held.
  void CopyData(const PrnType& src);
  /// Copies `fileType` and the labels, comment lines or parameters that it uses.
  void CopyHeader(const PrnType& src);
  /// Sets the ranges of stored axes, curve values and grid values to their smallest and largest element.
  /// `zMin` and `zMax` become 0 for a curve.
  void MinMax();
  /// Sets the first \p size bytes of the record to 0. For hosts that construct on raw storage.
  void __autoclassinit2(std::size_t size);  // NOLINT(bugprone-reserved-identifier)

  int HasX() const;       ///< non-zero when an X array is stored
  int HasY() const;       ///< non-zero when a Y array is stored
  int Is3D() const;       ///< non-zero for a grid
  int operator!() const;  ///< 1 when the record holds no data
  /// @}

  /// \name Report
  /// @{

  /// Axis titles, each into a buffer of 132 bytes.
  void LabelAxes(char* const xTitle, char* const yTitle, char* const zTitle) const;
  /// File name, shape and counts in one line, into a buffer of 132 bytes.
  void GetLabel(char* const line) const;
  /// Prints a report to standard output: 1 shape, 2 also ranges, 3 also titles and parameters, 4 also the
  /// host's extension, 5 also all values.
  void PrintLog(int level) const;
  /// Comment lines or parameters as lines of text, cut to \p size - 1 characters. An empty record leaves the
  /// buffer alone.
  void CommentBlock(char* const text, int size) const;
  /// @}

  /// \name Loading
  /// @{

  /// Recognises the format of a file by its name, then by its first bytes, and loads it.
  ///
  /// \param name in UTF-8 under Windows; what is not UTF-8 there is taken in the host's code page.
  /// \param index item of a multi-item file, 0 for the first; -1 also reads a file of unknown name as plain
  ///   XY columns.
  ///
  /// On success `fileName` holds the name, numbered "_NN" before its first dot when the file holds several
  /// items. On failure `allocType` is 0, and `errno` says why a file could not be opened or read, or is 0 when
  /// its content is at fault. The record must hold no arrays.
  void ReadFile(const char* name, int index);
  /// @}

  /// \name Column text
  /// Readers return 1, or 0 when the stream is already bad, the layout is not theirs, or reading fails; streams
  /// are opened in binary mode. A stream whose exceptions() are switched on throws them out of any reader; the
  /// record can then be released or used again. Writers return 1, or 0 when the record does not suit or the file
  /// cannot be opened, and then create nothing; see also \ref WriteFailedFlag.
  /// @{
  int ReadXYPrn(std::ifstream& in);
  int WriteXYPrn(char* const name) const;
  /// One Y column of several. \p count receives the number of columns, \p index picks one (0 means 1).
  int ReadNXYPrn(std::ifstream& in, int& count, int index);
  /// X/Y pairs from here to the end or to the first thing that is no number. A last pair without a line end
  /// is not counted.
  int ReadDumbTwo(std::ifstream& in);
  /// Y values, likewise.
  int ReadDumbOne(std::ifstream& in);
  /// @}

  /// \name Exchange formats
  /// Readers return 1, or 0 when the stream is already bad or the file is not theirs; streams are opened in
  /// binary mode. Values that a file does not hold are 0; see \ref ReadMostMissing for counts beyond reason.
  /// Writers return 1, or 0 when the record does not suit or the file cannot be opened, and then create
  /// nothing; see also \ref WriteFailedFlag. Text holds six significant digits of a value.
  /// @{

  /// P3D, a grid as text: titles, comment lines, the axes as values or as start, end and step, the values.
  int ReadP3D(std::ifstream& in);
  int WriteP3D(char* const name) const;
  /// P2D, a curve likewise.
  int ReadP2D(std::ifstream& in);
  int WriteP2D(char* const name) const;
  /// B3D, a grid with all bits of its values. Axes have at most 32767 points.
  int ReadB3D(std::ifstream& in);
  int WriteB3D(char* const name) const;
  /// B2D, a curve likewise; its `yStep` is stored as 0.
  int ReadB2D(std::ifstream& in);
  int WriteB2D(char* const name) const;
  /// CVT, a curve as text: six header lines, then a number per line. `xEnd` of a defined axis is computed from
  /// the number of values.
  int ReadCvt(std::ifstream& in);
  int WriteCvt(char* const name) const;
  /// JCAMP-DX, a curve as labelled text. Reads uncompressed pairs, of all blocks together, in ascending order
  /// of X; texts of more than seven characters are left out, factors are not applied (see \ref ReadXFactor).
  int ReadDX(std::ifstream& in);
  int WriteDX(char* const name) const;
  /// @}

  /// \name Instrument files
  /// Readers return 1, or 0 when the file is not theirs. Values that a file does not hold are 0.
  /// @{

  /// Bruker BES3T. \p name is either file of the pair; \p columns receives the number of value columns per
  /// point, \p which picks one (0 means 1). Messages about unsupported layouts go to standard output.
  int ReadBES3T(const char* name, int& columns, int which);

  /// Bruker ESR. \p par is the parameter file, \p spc the value file; \p which 1 picks the second spectrum of a
  /// file that holds two, any other value the first. Sets \ref ReadNextFlag for such files only.
  int ReadBruker(std::ifstream& par, std::ifstream& spc, int which);

  /// Hamamatsu raw image: 640 wavelengths (nm) by 480 times (ns). Refuses unknown sweep ranges.
  int ReadHama(std::ifstream& in);

  /// Cary DSW spectrum. Also returns 0 when memory runs out.
  int ReadCaryDSWFile(std::ifstream& in);
  /// One text of a DSW file from where the stream stands, with runs of blanks as one blank, into a buffer of
  /// 132 bytes.
  void ReadCaryDSWParameter(std::ifstream& in, char* const text) const;

  /// HPDTA (HiPic) image of 8, 16 or 32-bit values. Axes are linear or come from tables in the file. The record
  /// is not `active`.
  int ReadHPDTA(std::ifstream& in);
  /// Fills \p block from the status text of an HPDTA image, which lists its fields by position or, when it
  /// begins with "[", by name. Numbers that it does not hold keep their value.
  void ParseHPDTAStatus(char* const text, HPDTAHeaderType* block) const;
  /// Days from a date to that of the acquisition, negative when it came earlier. 0 for other records, for an
  /// invalid date, and for an acquisition date that is not written "12-05-2016" (day, month, year).
  int HPDTATime(int day, int month, int year) const;

  /// HPDTA profile. Returns 0: the format is recognised, but its layout is not published.
  int ReadHPDTAProfile(std::ifstream& in);
  /// Cary absorption prn. Returns 0: the format is recognised, but its layout is not published.
  int ReadCaryPrn(std::ifstream& in);
  /// Cary 45, header and data file. Returns 0: the format is recognised, but its layout is not published.
  int ReadCary45(std::ifstream& header, std::ifstream& data);
  /// Dilor Raman spectrometer, text with one spectrum.
  int ReadDilorSingle(std::ifstream& in);
  /// Dilor Raman series. \p count receives the number of spectra, \p which picks one (0 means 1). Returns 1
  /// with an empty record when there is no such spectrum.
  int ReadDilorM3D(std::ifstream& in, int& count, int which);
  /// ICCD camera image, a grid that is not marked active. Prints `nX` and `nY`.
  int ReadIccdImg(std::ifstream& in);
  /// ICCD camera curves. \p count receives their number, \p which picks one, counted from 0.
  int ReadIccdCrv(std::ifstream& in, int& count, int which);
  /// EG&G OMA detector. \p count receives the number of curves, \p which picks one (0 means 1).
  int ReadOMA(std::ifstream& in, int& count, int which);
  /// NPico pump-probe scan. Of a scan with two signals, alternate calls load the first and the second, as
  /// \ref ReadNextFlag says.
  int ReadNPico(std::ifstream& in);
  /// AT1 camera image.
  int ReadAT1(std::ifstream& in);
  /// @}

  /// \name Arithmetic
  /// Combines the Y values of curves or the Z values of grids; operands stay as they are. The result has axes and
  /// header of the left operand and is named after the operation. `^` is the power; mind that C++ binds `^` and
  /// `&` more loosely than `+` and `==`. In every power a negative base takes the exponent rounded down.
  /// @{

  /// When axes differ, the right operand is first interpolated at the coordinates of the left one, see
  /// \ref ArrayFromXAxis. A curve is 0 where it has no samples: `+` and `-` keep the left value there, `*` and `/`
  /// give 0, `^` gives 1. A grid goes on along its outermost samples. A sample divided by 0 gives 0. A curve and a
  /// grid, or an operand without data, give an empty record.
  PrnType operator+(const PrnType& other) const;
  PrnType operator-(const PrnType& other) const;
  PrnType operator*(const PrnType& other) const;
  PrnType operator/(const PrnType& other) const;
  PrnType operator^(const PrnType& other) const;
  /// The product sample by sample, whatever the axes. Empty when the counts differ.
  PrnType operator&(const PrnType& other) const;

  /// Every value with a number. Dividing by 0 and the power 0 give an empty record.
  PrnType operator+(const float& number) const;
  PrnType operator-(const float& number) const;
  PrnType operator*(const float& number) const;
  PrnType operator/(const float& number) const;
  PrnType operator^(const float& number) const;
  PrnType operator-() const;

  /// 1 when both records store their axes alike and the axes are equal within a relative 1e-5, else 0. The
  /// values of a curve are no axis.
  int SameAxes(const PrnType& other) const;
  /// 1 when the X axis has \p n coordinates, equal to \p values within a relative 1e-5, else 0.
  int XAxisEqArray(float* values, int n) const;
  int YAxisEqArray(float* values, int n) const;
  /// @}

  /// \name Elementwise functions
  /// Copies with a function applied to every Y value of a curve or Z value of a grid, named after the function.
  /// Values outside the domain become 0. An empty record gives an empty record.
  /// @{
  PrnType Exp() const;
  PrnType Log() const;  ///< to base 10
  PrnType Ln() const;
  PrnType Sin() const;  ///< of radians, like all angles here
  PrnType Cos() const;
  PrnType Tan() const;
  PrnType ASin() const;
  PrnType ACos() const;
  PrnType ATan() const;
  PrnType SinH() const;
  PrnType CosH() const;
  PrnType TanH() const;
  PrnType ASinH() const;
  PrnType ACosH() const;
  PrnType ATanH() const;  ///< 0 from 1 upwards, but minus infinity at -1 and NaN below
  PrnType Inv() const;    ///< 1 / value
  PrnType Set(const float& constant) const;

  /// A copy with an operation applied to the coordinates of the X axis (\p axis 'x') or of a grid's Y axis ('y').
  ///
  /// \param operation "+", "-", "*", "/" and "^" take \p value; "s" changes the sign; "inv", "exp", "log", "ln",
  ///   "sin", "cos", "tan", "asin", "acos", "atan", "sinh", "cosh", "tanh", "asinh", "acosh" and "atanh" are the
  ///   functions above. Dividing by 0 makes every coordinate 0.
  ///
  /// A defined axis stays defined under "+", "-" and "s" and becomes an array otherwise. The name stays. An
  /// unknown operation is reported on standard error, once and for every coordinate, and changes none. An unknown
  /// axis is reported likewise and then taken as Y, where the Y values of a curve count as coordinates. Empty for
  /// 'y' on a curve.
  PrnType AxisOp(char axis, char* const operation, float value) const;
  /// @}

  /// \name Point lookup and interpolation
  /// @{

  /// The coordinates of an axis, stored or defined, as a new array that the caller releases with `delete[]`.
  /// A defined axis is written out by adding its step again and again. Null and 0 for an empty record.
  void ArrayFromXAxis(float** values, int* count) const;
  void ArrayFromYAxis(float** values, int* count) const;
  /// The value of the sample nearest to a point; 0 outside the ranges of the axes and for an empty record. A
  /// defined axis is cut into as many equal bins as it has samples, and the bin decides. \p y counts for a grid
  /// only.
  float Nearest(float x, float y) const;
  /// The value at a point on the line through the nearest sample and the second nearest, both of which may lie
  /// on one side; bilinear for a grid. 0 outside the ranges of the axes and for an empty record.
  ///
  /// Along y of a grid, the second sample is found in one pass upwards that takes each sample nearer to \p y than
  /// the best so far and then remembers its distance to \p x. Where x is far from all y, the line therefore
  /// ends at the last sample rather than at the next one.
  float At(float x, float y) const;

  /// A curve resampled at \p n abscissae, each value on the line through the two samples around it: 0 outside
  /// the source's abscissae, and half the difference of two samples at one abscissa.
  PrnType& InterpolateXY(float* const xs, int n) const;
  /// A curve resampled from \p from on in steps of \p step, floor(|(to - from) / step|) + 1 points; the result's
  /// X axis is defined. Empty when \p step is 0. Here and for grids, a number of points that cannot be had
  /// throws std::bad_alloc.
  PrnType& InterpolateY(float from, float to, float step) const;
  /// A grid resampled at \p nx by \p ny points. Values are those of \ref At, outside the ranges of the axes too.
  PrnType& InterpolateXYZ(float* const xs, int nx, float* const ys, int ny) const;
  /// A grid resampled on two evenly spaced axes, which the result defines.
  PrnType& InterpolateZ(float xFrom, float xTo, float xDelta, float yFrom, float yTo, float yDelta) const;
  /// A grid resampled at given X coordinates and on an evenly spaced Y axis.
  PrnType& InterpolateXZ(float* const xs, int nx, float yFrom, float yTo, float yDelta) const;
  /// A grid resampled on an evenly spaced X axis and at given Y coordinates.
  PrnType& InterpolateYZ(float xFrom, float xTo, float xDelta, float* const ys, int ny) const;
  /// @}

  /// \name Slices and reshaping
  /// Bounds are given in either order and included.
  /// @{

  /// A curve over the X axis of a grid: the values of a band of Y coordinates summed, or their mean where
  /// \p average is not 0. 0 where the band is empty.
  PrnType& XSlice(float y1, float y2, int average) const;
  /// A curve over the Y axis of a grid, which becomes the X axis of the result, likewise.
  PrnType& YSlice(float x1, float x2, int average) const;
  /// The part of a curve or grid inside bounds, in ascending order of its axes; the Y bounds count for grids
  /// only. Empty when two bounds are equal or no data reach them; bounds between two samples leave 0 points.
  PrnType& Cut(float x1, float x2, float y1, float y2) const;
  /// A curve of two points or more without the one closest to (\p x, \p y), each measured in its own unit.
  PrnType& DeleteClosest(float x, float y) const;
  /// Means of \p fx neighbouring samples, for a grid of blocks of \p fx by \p fy; a remainder at the end of an
  /// axis is dropped. Both axes of the result are stored.
  PrnType& Reduce(int fx, int fy) const;
  /// Puts both axes into ascending order, the values moving along: sorts a stored axis (equal coordinates keep
  /// their order, NaN goes last) and turns a defined one with a negative step round.
  void SortAxes();
  /// Exchanges X and Y: the axes of a grid, whose values are transposed, or the abscissae of a curve and its
  /// values. The labels stay.
  void SwapXY();
  /// @}

  /// \name Median filters and smoothing
  /// @{

  /// A curve with each value replaced by a median of the \p w samples around it, fewer at the ends. An even
  /// width counts as the next odd one, one below 1 as 1. The last sample of a span is left out: of the 2h others
  /// of a whole span the median is the one with h below it. NaN sorts after all other values, -0 before 0. The
  /// time hardly depends on \p w.
  PrnType& Median2D(int w) const;
  /// A grid with each value replaced by a median of the \p w by \p w samples around it, likewise; the value lies
  /// one place higher than in a curve, and in a span of two or three samples is the last. The time grows with
  /// \p w, not with its square.
  PrnType& Median3D(int w) const;
  /// A curve or grid smoothed along X by fitting a parabola to each \p w samples (Savitzky and Golay, Analytical
  /// Chemistry 36 (1964) 1627). Widths are 5, 7, 9, 13, 17 and 21; there must be more samples than that, and w/2
  /// are lost at each end. The axes are put into ascending order first, see \ref SortAxes.
  PrnType& XSmooth(int w) const;
  /// A grid smoothed along Y, likewise.
  PrnType& YSmooth(int w) const;
  /// @}

  /// \name Differentiation and integration
  /// All but \ref RunningIntegral see the data with their axes in ascending order, see \ref SortAxes. Bounds are
  /// in units of the axes and given in either order.
  /// @{

  /// The derivative of a curve, or of a grid along X, by an antisymmetric filter over 15 points: the slope per
  /// sample, not divided by the spacing of the axis. The result loses seven samples at either end. Empty for
  /// less than 16 samples.
  PrnType& XDiff() const;
  /// The derivative of a grid along Y, likewise.
  PrnType& YDiff() const;
  /// The integral between bounds, 0 where two are equal. Of a curve by trapezoids, the bounds interpolated by
  /// \ref At; the Y bounds count for grids only. A grid is a sum of its values times the width and height of
  /// their cells, in which the outermost samples weigh only their distance to the bounds. Pieces are added in
  /// double precision.
  float Integral(float x1, float x2, float y1, float y2) const;
  /// The same with the absolute value of each trapezoid or product.
  float AbsIntegral(float x1, float x2, float y1, float y2) const;
  /// A curve over the X axis of a grid: the integral over a band of Y coordinates, by trapezoids between the
  /// samples in the band and divided by their number. Empty when the band holds no sample.
  PrnType& IntegrateY(float y1, float y2) const;
  /// A curve over the Y axis of a grid, which becomes the X axis of the result, likewise.
  PrnType& IntegrateX(float x1, float x2) const;
  /// The integral of a curve up to each point by trapezoids. It starts at the first value, not at 0.
  PrnType& RunningIntegral() const;
  /// @}

  /// \name Baselines, noise and statistics
  /// The corrections work in place. They change nothing when an abscissa lies outside the range of its axis,
  /// when the range descends (`xStart` above `xEnd`), when both abscissae are equal, or when the axis has a single
  /// sample. In grids a coordinate that drifted out of the range of its axis as it was written out counts as the
  /// end of that range.
  /// @{

  /// Subtracts the straight line through the values at \p x1 and \p x2 (see \ref At) from a curve, or from each
  /// column of a grid that of its own.
  void SubLinBackX(float x1, float x2);
  /// Subtracts from each row of a grid the straight line through its values at \p y1 and \p y2.
  void SubLinBackY(float y1, float y2);
  /// Multiplies a curve by the linear factor that takes it through (\p x1, \p target1) and (\p x2,
  /// \p target2). Nothing happens where the curve is 0 at one of them.
  void Slant(float x1, float target1, float x2, float target2);
  /// The sum of absolute differences of neighbouring samples, over the number of samples: of a grid between its
  /// columns, of a curve, on purpose, between its abscissae. 0 for no data.
  float NoiseLevel() const;
  /// Counts the values in each of \p nBins equal parts of the range from \p lo to \p hi, which is that of the
  /// data as of the last \ref MinMax; the largest, and values above the range, fall into the last bin, values below
  /// it and NaN into none. With less than two bins or no data nothing is touched.
  void Histogram(int nBins, float* const counts, float& lo, float& hi) const;
  /// Smallest and largest value of a curve between two abscissae given in either order, and the first place of
  /// each. No samples there give 0 and leave the places alone.
  void MinMaxY(float x1, float x2, float& low, float& high, float& xAtLow, float& xAtHigh) const;
  /// The same for a grid, with bounds in ascending order.
  void MinMaxZ(float x1, float x2, float y1, float y2, float& low, float& high, float& xAtLow, float& yAtLow,
               float& xAtHigh, float& yAtHigh) const;
  /// @}
};

// ---------------------------------------------------------------- 4. plain functions

/// The record of the most recent \ref KemOpenFile, owned by the library; null before the first call.
extern KEM_API PrnType* prn;
/// Non-zero when the file just read holds further items: the number of the item read for readers that count
/// items from 1, else 1.
extern KEM_API int ReadNextFlag;
/// 1 when the file last written could not be stored completely (a full disk, say), else 0. Set by every
/// writer, because their return value only tells whether writing was attempted.
extern KEM_API int WriteFailedFlag;
/// What the values of the file just read have to be multiplied by. A JCAMP-DX file may name factors
/// ("XFACTOR", "YFACTOR"), which are not applied: a record holds the numbers as they stand in the file. 1 for
/// a file without factors and for every other format; of several blocks, the last factor that is not 1.
extern KEM_API float ReadXFactor;
extern KEM_API float ReadYFactor;
/// Values that a file announces and does not hold are 0, but a file may not announce more than this number (64 Mi
/// unless a host changes it) beyond 16 times its bytes, nor less than 0: its load ends in std::bad_alloc before
/// there is any array. \ref kem::Open has less patience, 256 Ki.
extern KEM_API int ReadMostMissing;
/// How many values the file just read announces, 0 for formats whose length tells, and how many bytes it has; of
/// a pair, the file of the values.
extern KEM_API double ReadAnnounced;
extern KEM_API double ReadFileBytes;
/// Placeholder for hosts that import it; never read or written.
extern KEM_API int nKemDll;

/// \name Extension hooks
/// A host may attach its own data to every record through PrnType::extension. All null at the start.
/// @{
extern KEM_API void (*ExtensionCreateHook)(void** extension);
extern KEM_API void (*ExtensionFreeHook)(void** extension);
extern KEM_API void (*ExtensionCopyHook)(void* destination, void* source);
extern KEM_API void (*ExtensionPrintHook)(void* extension);
/// @}

/// Marks the library's exports; holds nothing and does nothing.
class KEM_API CKemDll {
 public:
  CKemDll();
  CKemDll& operator=(const CKemDll&);
  CKemDll& operator=(CKemDll&&) noexcept;
};

/// Lets the user choose a file and stores its path in \p buffer. Returns 0 when a file was chosen and 1 when
/// the dialog was cancelled or cannot be shown. A path that does not fit in \p size bytes, or that under
/// Windows has no narrow form, leaves \p buffer empty; several files chosen under Windows give their folder.
/// Under Linux zenity or kdialog shows the dialog.
KEM_API int KemFileName(char* buffer, int size);
/// Loads a file as the new current record \ref prn and releases the one before. Returns 0, or 1 when the load
/// failed; `prn` is then, and when memory runs out, an empty record.
KEM_API int KemOpenFile(char* name, int index);
/// Returns 0. The current record stays until the next \ref KemOpenFile.
KEM_API int KemCloseFile();
/// Returns 42; lets a host check that calls arrive.
KEM_API int fnKemDll();

/// The library's version, "major.minor.patch".
KEM_API const char* KemVersion();

// ---------------------------------------------------------------- 5. about files and records

/// How a parameter is stored in its record.
enum class KemParameterKind { Text, Int, Float, Bytes };

/// One acquisition parameter of an instrument's block.
struct KemParameter {
  const char* name;                          ///< the field's name, for example "brukerGain"
  KemParameterKind kind;                     ///< Text: 132 bytes with a terminating NUL
  int count;                                 ///< number of values: texts, ints, floats or bytes
  const void* (*in)(const PrnType& record);  ///< address of the first value
};

/// The acquisition parameters of records of a `fileType`, in the order of their block; none for generic
/// types.
KEM_API std::span<const KemParameter> KemParameters(int fileType);

/// An item of a file that holds several, as far as it can be told without its values.
struct KemItem {
  int index;      ///< what \ref PrnType::ReadFile takes for it; 0 when there is one item
  int allocType;  ///< shape and counts of its record
  int nX;
  int nY;
  char title[kTextSize];  ///< of its values
};

/// Lists the items of a file, which is read once: hands those that begin inside the file over to \p take, together
/// with \p host, in their order. Returns how many the file announces, or 0 when it cannot be loaded. Of the two
/// signals of an NPico scan, ReadFile loads the first when \ref ReadNextFlag is 0.
KEM_API int KemItems(const char* name, void (*take)(const KemItem& item, void* host), void* host);

/// Name of the format by which \ref PrnType::ReadFile would first try to read a file, such as
/// "Bruker BES3T"; null when the file cannot be opened or its format is not recognised.
KEM_API const char* KemFormatName(const char* name);

#endif
