/// \file kem/dataset.h
/// Everything that a measurement file says, as the instrument meant it.
///
/// A Dataset holds values of any rank in the number type of the file, one axis for each dimension, all parameters
/// and notes on whatever is doubtful. It stands beside the record of kem.h, which holds what hosts have always
/// received.
///
/// \code
///   const kem::Dataset scan = kem::Open("scan.DSC");
///   const double first = scan.values.Real(0);
///   const double field = scan.axes[0][0];  // in scan.axes[0].unit
///   for (const kem::Note& note : scan.notes) std::cerr << note.text << '\n';
/// \endcode
///
/// Values lie in C order as the file stores them: the last axis varies fastest. An image lists Y, then X.
///
/// All texts are UTF-8. Nothing here is global: any number of threads may open files at once. What fails throws
/// \ref kem::Error, also when memory runs out for a file; elsewhere std::bad_alloc tells that.
#ifndef KEM_DATASET_H
#define KEM_DATASET_H

#include "kem.h"
#include "kem/record.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

namespace kem {

// ---------------------------------------------------------------- failures

enum class ErrorCode {
  NotFound,
  PermissionDenied,
  ReadFailed,     ///< the system could not read a file that is there
  UnknownFormat,  ///< nothing recognises the file
  NotReadable,    ///< recognised, but kem does not read this kind of it
  Damaged,        ///< recognised, but the content contradicts itself or is cut off
  NoSuchItem,
  DoesNotFit,   ///< a record cannot hold it, or an operation does not take it
  WriteFailed,  ///< the system could not write a file
  OutOfMemory,
};

/// Why something could not be done, as one sentence.
class KEM_API Error : public std::runtime_error {
 public:
  Error(ErrorCode code, const std::string& sentence) : std::runtime_error(sentence), code_(code) {}
  ErrorCode Code() const { return code_; }

 private:
  ErrorCode code_;
};

// ---------------------------------------------------------------- values

/// How a number is stored: unsigned and signed integers and IEEE floats of so many bits.
enum class NumberType { U8, U16, U32, I8, I16, I32, F32, F64 };

/// Bytes of a number.
KEM_API std::size_t SizeOf(NumberType type);
/// "u8" to "f64".
KEM_API const char* NameOf(NumberType type);

template <class T>
constexpr NumberType NumberTypeOf() {
  if constexpr (std::is_floating_point_v<T>) return sizeof(T) == 4 ? NumberType::F32 : NumberType::F64;
  constexpr bool sign = std::is_signed_v<T>;
  if constexpr (sizeof(T) == 1) return sign ? NumberType::I8 : NumberType::U8;
  if constexpr (sizeof(T) == 2) return sign ? NumberType::I16 : NumberType::U16;
  return sign ? NumberType::I32 : NumberType::U32;
}

/// The values of a dataset: numbers of one type, or (real, imaginary) pairs of them. They never change once made,
/// so that copies share memory.
class KEM_API Values {
 public:
  Values() = default;
  /// Takes over the bytes of \p count values in the byte order of the machine.
  Values(NumberType type, bool complex, std::size_t count, std::unique_ptr<std::byte[]> bytes)
      : type_(type), complex_(complex), count_(count), bytes_(std::move(bytes)) {}
  /// Copies numbers; pairs of them when \p complex.
  template <class T>
  static Values Of(std::span<const T> numbers, bool complex = false) {
    std::unique_ptr<std::byte[]> bytes(new std::byte[numbers.size_bytes()]);
    const auto from = std::as_bytes(numbers);
    std::copy(from.begin(), from.end(), bytes.get());
    return {NumberTypeOf<T>(), complex, numbers.size() / (complex ? 2 : 1), std::move(bytes)};
  }
  /// Takes numbers over.
  template <class T>
  static Values Of(std::vector<T>&& numbers, bool complex = false) {
    Values values;
    values.type_ = NumberTypeOf<T>();
    values.complex_ = complex;
    values.count_ = numbers.size() / (complex ? 2 : 1);
    const auto owner = std::make_shared<const std::vector<T>>(std::move(numbers));
    values.bytes_ = {owner, reinterpret_cast<const std::byte*>(owner->data())};
    return values;
  }

  NumberType Type() const { return type_; }
  bool IsComplex() const { return complex_; }
  std::size_t Count() const { return count_; }
  std::span<const std::byte> Bytes() const { return {bytes_.get(), count_ * SizeOf(type_) * (complex_ ? 2 : 1)}; }

  /// The numbers where T is their type, else nothing. Complex values are neighbours: real, imaginary.
  template <class T>
  std::span<const T> As() const {
    if (NumberTypeOf<T>() != type_ || !bytes_) return {};
    return {reinterpret_cast<const T*>(bytes_.get()), count_ * (complex_ ? 2 : 1)};
  }

  /// Calls \p use once, with the numbers as a span of their type. Complex values are neighbours: real, imaginary.
  template <class Use>
  void Visit(Use use) const {
    switch (type_) {
      case NumberType::U8:
        return use(As<std::uint8_t>());
      case NumberType::U16:
        return use(As<std::uint16_t>());
      case NumberType::U32:
        return use(As<std::uint32_t>());
      case NumberType::I8:
        return use(As<std::int8_t>());
      case NumberType::I16:
        return use(As<std::int16_t>());
      case NumberType::I32:
        return use(As<std::int32_t>());
      case NumberType::F32:
        return use(As<float>());
      case NumberType::F64:
        return use(As<double>());
    }
  }

  /// The k-th value; the imaginary part of real values is 0.
  double Real(std::size_t k) const;
  double Imaginary(std::size_t k) const;

 private:
  NumberType type_ = NumberType::F64;
  bool complex_ = false;
  std::size_t count_ = 0;
  std::shared_ptr<const std::byte[]> bytes_;
};

// ---------------------------------------------------------------- axes

/// The coordinates of one dimension: evenly spaced, or stored one by one in the order of the file.
class KEM_API Axis {
 public:
  std::string name;
  std::string unit;  ///< as the file spells it, blanks trimmed; empty when it names none

  Axis() = default;
  /// \p count coordinates from \p start to \p end, both included.
  static Axis Linear(std::string name, std::string unit, std::size_t count, double start, double end);
  static Axis Stored(std::string name, std::string unit, std::vector<double> coordinates);

  std::size_t Count() const { return count_; }
  bool IsLinear() const { return stored_.empty(); }
  double Start() const { return count_ == 0 ? 0 : (*this)[0]; }
  double End() const { return count_ == 0 ? 0 : (*this)[count_ - 1]; }
  /// The spacing of a linear axis; 0 for a stored one.
  double Step() const;
  /// start + k (end - start) / (count - 1), or the k-th stored coordinate.
  double operator[](std::size_t k) const;
  /// All coordinates, computed or stored.
  std::vector<double> Coordinates() const;
  /// The stored coordinates; empty for a linear axis.
  std::span<const double> StoredCoordinates() const { return stored_; }
  /// The first \p count coordinates, where they were.
  Axis First(std::size_t count) const;
  /// The axis in another unit, one of \ref Units. Fields, times, or what light has of wavelength, wavenumber,
  /// energy and frequency go into each other. A linear axis stays one, but between wavelengths and the others it
  /// becomes a stored one that runs the other way. What has no such meaning does not fit: another quantity, an axis
  /// without a unit, a coordinate of 0 where it stands in a divisor, the wavelength of a Raman shift.
  Axis In(std::string_view unit) const;
  /// The g factors of a field axis at a frequency of the microwave in Hz, stored.
  Axis InGValues(double frequency) const;

 private:
  std::size_t count_ = 0;
  double start_ = 0;
  double end_ = 0;
  std::vector<double> stored_;
};

/// The units that convert, as kem spells them: "T", "mT", "G", "ns", "eV", "cm-1", "nm" and so on.
KEM_API std::vector<std::string> Units();
/// How kem spells a unit of a file: "nm" for "NANOMETERS"; empty when it is none of \ref Units.
KEM_API std::string UnitNamed(std::string_view spelling);
/// A number in another unit. What has no such meaning does not fit; an infinite wavelength has the energy 0.
KEM_API double InUnit(double number, std::string_view from, std::string_view to);

// ---------------------------------------------------------------- parameters and notes

/// One parameter of a file, in the file's spelling.
struct Parameter {
  std::string section;  ///< empty where the format knows none
  std::string key;
  std::string text;
  std::optional<double> number = {};  ///< where the text is or begins with one
  std::string unit = {};              ///< where the file or the format tells
};

enum class Severity {
  Remark,    ///< good to know
  Doubtful,  ///< values or axes may not be what the instrument meant
  Damaged    ///< part of the data is missing or contradicts itself
};

/// What the user should know about a dataset.
struct Note {
  Severity severity;
  std::string text;
};

// ---------------------------------------------------------------- datasets

/// One item of a measurement file.
struct KEM_API Dataset {
  std::string title;  ///< of the measurement
  std::string name;   ///< of the values, such as "Intensity"
  std::string unit;   ///< of the values
  Values values;
  std::vector<Axis> axes;  ///< slowest first; the product of their counts is the count of the values
  std::vector<Parameter> parameters;
  std::vector<Note> notes;

  std::string format;                             ///< such as "Bruker BES3T"
  std::filesystem::path file;                     ///< as it was opened
  std::vector<std::filesystem::path> companions;  ///< the other files that were read
  int item = 1;
  int items = 1;
  std::string itemName;

  /// The first parameter of a key, in any section or in the named one; null when there is none.
  const Parameter* Find(std::string_view key, std::string_view section = {}) const;
  /// The frequency of the microwave in Hz, where an EPR file tells it.
  std::optional<double> MicrowaveFrequency() const;

  /// The dataset with real values: a part of complex ones, in double precision.
  Dataset Only(Part part) const;
  /// The record of a dataset with one or two dimensions, in single precision: a curve over its axis, or a grid over
  /// X, the last axis, and Y. Of complex values \p part is taken. More dimensions, no points and values that single
  /// precision cannot hold do not fit.
  Record ToRecord(Part part = Part::Real) const;
};

// ---------------------------------------------------------------- files

/// One item of a file that may hold several.
struct ItemInfo {
  int number;  ///< from 1
  std::string name;
};

/// Which format a file has, and what tells so.
struct Identity {
  std::string format;
  std::string evidence;  ///< such as "name ends in .DSC, first line begins with #DESC"
};

/// A format that \ref Open reads.
struct FormatInfo {
  std::string name;
  std::vector<std::string> extensions;  ///< with their dot, in the spelling of the instruments
  bool pair =
      false;  ///< two files belong together: one with the first extension, of parameters, one with the second
  std::vector<std::string> companions = {};  ///< extensions of files beside them that are read along
};

/// Opens one item of a file, counted from 1.
KEM_API Dataset Open(const std::filesystem::path& file, int item = 1);
/// Opens the items of a file in their order, until \p take returns false. What they share is read once.
KEM_API void OpenEach(const std::filesystem::path& file, const std::function<bool(Dataset item)>& take);
/// The items of a file.
KEM_API std::vector<ItemInfo> Items(const std::filesystem::path& file);
/// Tells a file's format without reading its data.
KEM_API Identity Identify(const std::filesystem::path& file);
/// The formats that \ref Open reads, in the order in which they are tried.
KEM_API std::vector<FormatInfo> Formats();

}  // namespace kem

#endif
