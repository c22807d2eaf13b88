/// \file kem/record.h
/// The record of kem.h as a value: copied, moved and returned like a number, written by path, without `delete`.
///
/// \code
///   const kem::Record scan = kem::Open("scan.DSC").ToRecord();
///   const kem::Record empty = kem::Open("empty.DSC").ToRecord();
///   (scan - 0.5f * empty).Smooth(9).Write("difference.dx");
/// \endcode
///
/// Results are those of the members of \ref PrnType, bit for bit. What they tell by an empty record throws
/// \ref kem::Error here, and so does whatever cannot be read or written. Neither the library's global variables nor
/// the host's hooks are touched: any number of threads may work at once, each on records of its own or reading
/// shared ones.
#ifndef KEM_RECORD_H
#define KEM_RECORD_H

#include "kem.h"

#include <filesystem>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace kem {

struct Dataset;

/// What stands for a complex value where only real ones fit.
enum class Part { Real, Imaginary, Magnitude, Phase };

/// An axis of a record.
enum class Along { X, Y };

/// The counts of \ref Record::Histogram, in equal parts of the range.
struct HistogramCounts {
  float low = 0;
  float high = 0;
  std::vector<float> counts;
};

/// The counts of .b2d and .b3d are signed 16-bit numbers.
inline constexpr int kMostBinaryPoints = 32767;

/// Why the format of an extension, ".p2d", does not hold a record, as the end of a sentence: curves and grids have
/// formats of their own, the binary ones count to \ref kMostBinaryPoints along an axis, and text ends at a number
/// that is not finite. Empty when it does.
KEM_API std::string WhyNotWritten(const PrnType& record, std::string_view extension);

/// A curve or a real grid. One that holds nothing, made by default or moved from, can be assigned to and destroyed.
class KEM_API Record {
 public:
  /// \name Making
  /// @{
  Record();
  ~Record();
  Record(const Record& other);
  Record(Record&& other) noexcept;
  Record& operator=(const Record& other);
  Record& operator=(Record&& other) noexcept;
  /// Takes a record of kem.h over.
  explicit Record(PrnType&& record);

  /// A curve of values over coordinates, or over 0, 1, 2, ... when there are none. Other counts of coordinates than
  /// of values do not fit.
  static Record Curve(std::span<const float> values, std::span<const float> x = {});
  /// A grid; \p values hold X.size() values for each Y, the first Y first.
  static Record Grid(std::span<const float> values, std::span<const float> x, std::span<const float> y);
  /// What hosts of \ref PrnType::ReadFile receive of a file, quirks included; items are counted from 1.
  static Record Classic(const std::filesystem::path& file, int item = 1);
  /// Hands the record of kem.h over and holds nothing afterwards.
  std::unique_ptr<PrnType> Release() { return std::move(record_); }
  /// @}

  /// \name Looking
  /// @{
  const PrnType& operator*() const { return *record_; }
  const PrnType* operator->() const { return record_.get(); }
  bool IsGrid() const { return record_->Is3D() != 0; }
  /// The coordinates of an axis, see \ref PrnType::ArrayFromXAxis.
  std::vector<float> Coordinates(Along axis) const;
  /// The value at a point, see \ref PrnType::At.
  float At(float x, float y = 0) const;
  float Nearest(float x, float y = 0) const;
  bool SameAxes(const Record& other) const;
  /// The dataset with the values, axes, titles and parameters of a record, a grid's axes as Y, X.
  Dataset ToDataset() const;
  /// @}

  /// \name Arithmetic
  /// A number may stand on either side.
  /// @{
  friend Record operator+(const Record& a, const Record& b) { return a.With('+', b); }
  friend Record operator-(const Record& a, const Record& b) { return a.With('-', b); }
  friend Record operator*(const Record& a, const Record& b) { return a.With('*', b); }
  friend Record operator/(const Record& a, const Record& b) { return a.With('/', b); }
  friend Record operator+(const Record& a, float b) { return a.With('+', b); }
  friend Record operator-(const Record& a, float b) { return a.With('-', b); }
  friend Record operator*(const Record& a, float b) { return a.With('*', b); }
  friend Record operator/(const Record& a, float b) { return a.With('/', b); }
  friend Record operator+(float a, const Record& b) { return b.With('+', a); }
  friend Record operator-(float a, const Record& b) { return b.Set(a).With('-', b); }
  friend Record operator*(float a, const Record& b) { return b.With('*', a); }
  friend Record operator/(float a, const Record& b) { return b.Set(a).With('/', b); }
  Record operator-() const;
  /// The operator `^` of records.
  Record Power(const Record& exponent) const { return With('^', exponent); }
  Record Power(float exponent) const { return With('^', exponent); }
  /// Sample by sample, whatever the axes: the operator `&` of records.
  Record Product(const Record& other) const { return With('&', other); }
  /// @}

  /// \name Elementwise functions
  /// @{
  Record Exp() const;
  Record Log() const;
  Record Ln() const;
  Record Sin() const;
  Record Cos() const;
  Record Tan() const;
  Record ASin() const;
  Record ACos() const;
  Record ATan() const;
  Record SinH() const;
  Record CosH() const;
  Record TanH() const;
  Record ASinH() const;
  Record ACosH() const;
  Record ATanH() const;
  Record Inv() const;
  Record Set(float constant) const;
  /// See \ref PrnType::AxisOp.
  Record AxisOp(Along axis, std::string_view operation, float value = 0) const;
  /// @}

  /// \name Reshaping
  /// @{
  /// At the given coordinates, see \ref PrnType::InterpolateXY and \ref PrnType::InterpolateXYZ.
  Record Resample(std::span<const float> xs, std::span<const float> ys = {}) const;
  /// From one coordinate on in steps, see \ref PrnType::InterpolateY.
  Record Resample(float from, float to, float step) const;
  /// A curve along an axis of a grid: the sum, or the mean, of a band of the other axis.
  Record Slice(Along axis, float from, float to, bool mean = false) const;
  Record Cut(float x1, float x2) const;
  Record Cut(float x1, float x2, float y1, float y2) const;
  Record DeleteClosest(float x, float y) const;
  Record Reduce(int fx, int fy = 1) const;
  Record Sorted() const;
  Record Swapped() const;
  /// @}

  /// \name Filters, differences, integrals
  /// @{
  Record Median(int width) const;
  Record Smooth(int width, Along axis = Along::X) const;
  Record Diff(Along axis = Along::X) const;
  float Integral(float x1, float x2) const;
  float Integral(float x1, float x2, float y1, float y2) const;
  float AbsIntegral(float x1, float x2) const;
  float AbsIntegral(float x1, float x2, float y1, float y2) const;
  /// A curve along an axis of a grid: the integral over a band of the other axis.
  Record IntegralAlong(Along axis, float from, float to) const;
  Record RunningIntegral() const;
  /// @}

  /// \name Baselines and statistics
  /// @{
  Record Baseline(float at1, float at2, Along axis = Along::X) const;
  Record Slant(float x1, float target1, float x2, float target2) const;
  float NoiseLevel() const;
  HistogramCounts Histogram(int parts) const;
  /// @}

  /// Writes a file in the format of its extension: .p3d, .b3d, .p2d, .b2d, .cvt, .prn, .dx or .jdx. An existing
  /// file is replaced. What the format does not hold, \ref WhyNotWritten, throws before there is a file; where text
  /// of six digits would make other coordinates of a defined axis, or another number of them, they are stored.
  void Write(const std::filesystem::path& file) const;
  /// The same in the format of another extension, whatever that of the file.
  void Write(const std::filesystem::path& file, std::string_view extension) const;

 private:
  explicit Record(std::unique_ptr<PrnType> record);
  Record With(char sign, const Record& other) const;
  Record With(char sign, float number) const;
  // The result of an operation; one without data throws, and `why` tells what did not fit.
  template <class Operation>
  Record Made(Operation operation, std::string_view why = {}) const;

  std::unique_ptr<PrnType> record_;
};

}  // namespace kem

#endif
