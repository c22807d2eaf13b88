// Operators between two records and between a record and a number.
#include <memory>

#include "analysis/axis.h"
#include "analysis/interpolate.h"
#include "arith/kernels.h"
#include "arith/values.h"
#include "text/number_text.h"

using namespace kem::analysis;
using namespace kem::arith;
using kem::text::CopyText;
using kem::text::TextOf;

namespace {

// A record at the coordinates of another, as they are written out. A curve whose axis is defined with a step of 0
// has none.
std::unique_ptr<PrnType> OnAxesOf(const PrnType& axes, const PrnType& record) {
  if (axes.Is3D()) return Resampled(record, XValues(axes), YValues(axes));
  if (!axes.HasX() && axes.xStep == 0) return std::make_unique<PrnType>();
  return Resampled(record, SampledX(axes));
}

std::string JoinedName(const PrnType& a, std::string_view sign, const PrnType& b) {
  return std::string(TextOf(a.fileName)).append(sign).append(TextOf(b.fileName));
}

// What comes of operands without values: a name, and the header of a left operand that is empty itself.
PrnType EmptyResult(const PrnType& a, std::string_view name) {
  PrnType result(!a ? a : PrnType());
  CopyText(result.fileName, name);
  result.MinMax();
  return result;
}

template <class Kernel>
PrnType Combined(const PrnType& a, std::string_view sign, const PrnType& b, Kernel kernel) {
  if (IsGrid(a) != IsGrid(b)) return PrnType();
  const std::string name = JoinedName(a, sign, b);
  if (!HasValues(a) || !HasValues(b)) return EmptyResult(a, name);
  const Extent extent = ExtentOf(a);
  const bool none = extent.rows <= 0 || extent.columns <= 0;  // nothing to combine, on whichever axes
  if (none || a.SameAxes(b)) return Computed(name, Common(extent, ExtentOf(b)), kernel, a, b);
  const auto resampled = OnAxesOf(a, b);
  if (!HasValues(*resampled)) return EmptyResult(a, name);
  return Computed(name, extent, kernel, a, *resampled);
}

template <class Kernel>
PrnType WithNumber(const PrnType& a, std::string_view sign, float number, Kernel kernel) {
  std::string after(sign);
  kem::text::AppendNumber(after, number);
  return Mapped(a, "", after, [kernel, number](float v) { return kernel(v, number); });
}

}  // namespace

PrnType PrnType::operator+(const PrnType& other) const { return Combined(*this, "+", other, kAdd); }
PrnType PrnType::operator-(const PrnType& other) const { return Combined(*this, "-", other, kSubtract); }
PrnType PrnType::operator*(const PrnType& other) const { return Combined(*this, "*", other, kMultiply); }
PrnType PrnType::operator/(const PrnType& other) const { return Combined(*this, "/", other, kDivide); }
PrnType PrnType::operator^(const PrnType& other) const { return Combined(*this, "^", other, kPower); }

// Counts a curve by its nY, unlike the operators that align axes.
PrnType PrnType::operator&(const PrnType& other) const {
  const bool sameShape = IsGrid(*this) == IsGrid(other) && nY == other.nY && (!IsGrid(*this) || nX == other.nX);
  if (!sameShape) return PrnType();
  const std::string name = JoinedName(*this, "&", other);
  if (!HasValues(*this) || !HasValues(other)) return EmptyResult(*this, name);
  return Computed(name, StoredExtent(*this), kMultiply, *this, other);
}

PrnType PrnType::operator+(const float& number) const { return WithNumber(*this, "+", number, kAdd); }
PrnType PrnType::operator-(const float& number) const { return WithNumber(*this, "-", number, kSubtract); }
PrnType PrnType::operator*(const float& number) const { return WithNumber(*this, "*", number, kMultiply); }

PrnType PrnType::operator/(const float& number) const {
  if (number == 0) return PrnType();
  return WithNumber(*this, "/", number, kDivide);
}

// The power 0 is refused like a division by 0; Set(1) gives a record of ones.
PrnType PrnType::operator^(const float& number) const {
  if (number == 0) return PrnType();
  return WithNumber(*this, "^", number, kPower);
}

PrnType PrnType::operator-() const { return Mapped(*this, "_", "", kNegate); }
