// Files of a record as a value: what a format does not hold is refused before there is a file, and an axis that it
// would tell otherwise is written coordinate by coordinate.
#include <algorithm>
#include <cerrno>
#include <cmath>
#include <memory>
#include <span>
#include <string>
#include <system_error>
#include <utility>
#include <vector>

#include "dataset/of_record.h"
#include "dataset/source.h"
#include "kem/dataset.h"
#include "record/axis.h"
#include "record/findings.h"
#include "record/finite.h"
#include "record/storage.h"
#include "text/number_text.h"
#include "text/words.h"

namespace kem {
namespace {

// How a format tells the coordinates of an axis that the record does not store.
enum class Linear {
  Exactly,    // in binary, as all numbers
  OneByOne,   // each coordinate in six digits
  StartStep,  // start and step in six digits
  Points,     // start, end and step in six digits, of which the reader makes the number of points
  Steps,      // the same, but the points that it makes of them are one fewer
};

struct Writer {
  std::string_view extension;
  int (PrnType::*write)(char* name) const;
  bool grids;  // else curves
  Linear linear;
};

constexpr Writer kWriters[] = {
    {".prn", &PrnType::WriteXYPrn, false, Linear::OneByOne}, {".cvt", &PrnType::WriteCvt, false, Linear::StartStep},
    {".dx", &PrnType::WriteDX, false, Linear::OneByOne},     {".jdx", &PrnType::WriteDX, false, Linear::OneByOne},
    {".p2d", &PrnType::WriteP2D, false, Linear::Points},     {".p3d", &PrnType::WriteP3D, true, Linear::Steps},
    {".b2d", &PrnType::WriteB2D, false, Linear::Exactly},    {".b3d", &PrnType::WriteB3D, true, Linear::Exactly},
};

const Writer* WriterOf(std::string_view extension) {
  const auto* writer = std::find_if(std::begin(kWriters), std::end(kWriters),
                                    [&](const Writer& w) { return text::EqualButCase(w.extension, extension); });
  return writer == std::end(kWriters) ? nullptr : writer;
}

// ------------------------------------------------------------ axes

struct AxisOfRecord {
  const record::AxisFields& fields;
  const char* name;
  int points;

  bool IsStoredIn(const PrnType& r) const { return fields.IsStoredIn(r); }
  Axis In(const PrnType& r) const { return dataset::AxisOf(r, fields, points); }
};

std::vector<AxisOfRecord> AxesOf(const PrnType& r) {
  if (!r.Is3D()) return {{record::kX, "X", r.nY}};
  return {{record::kX, "X", r.nX}, {record::kY, "Y", r.nY}};
}

float SixDigits(float value) {
  std::string text;
  text::AppendNumber(text, value);
  text::ParseLenient(text, value);
  return value;
}

// Whether the axis that a reader makes of the written definition has another number of points, or drifts away from
// this one further than coordinates in six digits would.
bool Loses(Linear linear, const PrnType& r, const AxisOfRecord& axis) {
  if (axis.IsStoredIn(r) || linear == Linear::Exactly) return false;
  if (linear == Linear::OneByOne) return true;
  const float start = SixDigits(r.*axis.fields.start);
  const float step = SixDigits(r.*axis.fields.step);
  const float steps = (SixDigits(r.*axis.fields.end) - start) / step;
  const double read = std::floor(std::fabs(double{steps}) + 0.5);
  if (linear == Linear::Points && read != axis.points - 1) return true;
  if (linear == Linear::Steps && read != axis.points) return true;
  const Axis meant = axis.In(r);
  const double furthest = std::max(std::fabs(meant.Start()), std::fabs(meant.End()));
  const double halfADigit = 0.5 * std::pow(10.0, std::floor(std::log10(furthest)) - 5);
  return !(std::fabs((axis.points - 1.0) * step - (meant.End() - meant.Start())) <= halfADigit);
}

void Store(PrnType& r, const AxisOfRecord& axis) {
  const std::vector<double> coordinates = axis.In(r).Coordinates();
  auto values = record::NewArray(axis.points);
  std::transform(coordinates.begin(), coordinates.end(), values.get(),
                 [](double x) { return static_cast<float>(x); });
  if (!coordinates.empty()) r.*axis.fields.end = static_cast<float>(coordinates.back());
  r.*axis.fields.count = axis.points;
  r.allocType |= axis.fields.bit;
  record::Own(r.*axis.fields.values, std::move(values));
}

// A copy that stores the axes which the format would lose; none where it loses none.
std::unique_ptr<PrnType> WithStoredAxes(const PrnType& r, Linear linear) {
  std::unique_ptr<PrnType> copy;
  for (const AxisOfRecord& axis : AxesOf(r)) {
    if (!Loses(linear, r, axis)) continue;
    if (!copy) copy = std::make_unique<PrnType>(r);
    Store(*copy, axis);
  }
  return copy;
}

// ------------------------------------------------------------ what does not fit

// "inf as value 3" of a number that is not finite; else empty.
std::string Odd(float number, const std::string& what, std::size_t index) {
  if (std::isfinite(number)) return {};
  std::string text;
  text::AppendNumber(text, number);
  return text + " as " + what + std::to_string(index + 1);
}

std::string FirstOdd(std::span<const float> numbers, const std::string& what) {
  if (record::NotFinite(numbers) == 0) return {};
  const auto odd = std::find_if_not(numbers.begin(), numbers.end(), [](float v) { return std::isfinite(v); });
  return Odd(*odd, what, static_cast<std::size_t>(odd - numbers.begin()));
}

// Of a defined axis the ends tell it.
std::string FirstOdd(const PrnType& r, const AxisOfRecord& axis) {
  if (axis.points < 1) return {};
  const std::string what = axis.name + std::string(" coordinate ");
  const auto points = static_cast<std::size_t>(axis.points);
  if (axis.IsStoredIn(r)) return FirstOdd({r.*axis.fields.values, points}, what);
  const Axis meant = axis.In(r);
  const std::string first = Odd(static_cast<float>(meant.Start()), what, 0);
  return first.empty() ? Odd(static_cast<float>(meant.End()), what, points - 1) : first;
}

std::string FirstOdd(const PrnType& r) {
  std::string odd;
  for (const AxisOfRecord& axis : AxesOf(r))
    if (odd = FirstOdd(r, axis); !odd.empty()) return odd;
  const auto count = static_cast<std::size_t>(std::max(r.nY, 0));
  if (!r.Is3D()) return FirstOdd({r.yArray, count}, "value ");
  for (int i = 0; i < r.nX && odd.empty(); ++i)
    odd = FirstOdd({r.zArray[i], count}, "value " + std::to_string(i + 1) + ", ");
  return odd;
}

std::string WhyNot(const Writer& writer, const PrnType& r) {
  const std::string name(writer.extension.substr(1));
  if (!record::OwnsArrays(r.allocType)) return "holds no data";
  if (writer.grids && !r.Is3D()) return name + " holds grids only, and this is a curve";
  if (!writer.grids && r.Is3D())
    return name + " holds curves only, and this is a grid of " + std::to_string(r.nX) + " x " +
           std::to_string(r.nY) + " points";
  const int points = r.Is3D() ? std::max(r.nX, r.nY) : r.nY;
  const bool few = points <= kMostBinaryPoints;
  if (writer.linear != Linear::Exactly) {
    // Readers of text end at the first word that is no number.
    const std::string odd = FirstOdd(r);
    const char* hint = !few ? "" : r.Is3D() ? "; b3d can" : "; b2d can";
    return odd.empty() ? "" : "has " + odd + ", which " + name + " cannot hold" + hint;
  }
  if (few) return {};
  return name + " holds at most " + std::to_string(kMostBinaryPoints) + " points along an axis, and this has " +
         std::to_string(points);
}

}  // namespace

std::string WhyNotWritten(const PrnType& record, std::string_view extension) {
  const Writer* writer = WriterOf(extension);
  return writer ? WhyNot(*writer, record) : "its extension names no format that kem writes";
}

void Record::Write(const std::filesystem::path& file) const { Write(file, dataset::NameOf(file.extension())); }

void Record::Write(const std::filesystem::path& file, std::string_view extension) const {
  const record::Aside aside;
  const PrnType& r = *record_;
  if (std::string why = WhyNotWritten(r, extension); !why.empty()) dataset::Fail(ErrorCode::DoesNotFit, file, why);
  const Writer& writer = *WriterOf(extension);
  const auto stored = WithStoredAxes(r, writer.linear);
  std::string name = dataset::NameOf(file);
  errno = 0;
  const bool made = ((stored ? *stored : r).*writer.write)(name.data()) != 0;
  if (!made || aside.writeFailed)
    dataset::Fail(ErrorCode::WriteFailed, file,
                  (made ? "cannot be written completely: " : "cannot be created: ") +
                      std::generic_category().message(errno != 0 ? errno : EIO));
}

}  // namespace kem
