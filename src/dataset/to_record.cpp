// The record of a dataset.
#include <cmath>
#include <limits>

#include "dataset/source.h"
#include "record/axis.h"
#include "record/findings.h"
#include "record/storage.h"
#include "record/tiles.h"
#include "text/fields.h"

namespace kem {
namespace dataset {
using namespace text;
namespace {

[[noreturn]] void Refuse(const Dataset& d, std::string_view problem) {
  Fail(ErrorCode::DoesNotFit, d.file, problem);
}

// Calls use with a function that has a part of the k-th value.
template <class Use>
void WithParts(const Values& values, Part part, Use use) {
  values.Visit([&, complex = values.IsComplex()](auto numbers) {
    use([=](std::size_t k) {
      const double re = numbers[complex ? 2 * k : k];
      const double im = complex ? numbers[2 * k + 1] : 0;
      switch (part) {
        case Part::Imaginary:
          return im;
        case Part::Magnitude:
          return complex ? std::hypot(re, im) : std::fabs(re);
        case Part::Phase:
          return std::atan2(im, re);
        default:
          return re;
      }
    });
  });
}

float Single(const Dataset& d, double value) {
  if (std::fabs(value) > std::numeric_limits<float>::max() && !std::isinf(value))
    Refuse(d, "holds values that single precision cannot hold");
  return static_cast<float>(value);
}

// A part of all values; `made` keeps it where it is not stored like this.
std::span<const float> Singles(const Dataset& d, Part part, std::unique_ptr<float[]>& made) {
  const std::span<const float> stored = d.values.As<float>();
  if (part == Part::Real && !d.values.IsComplex() && !stored.empty()) return stored;
  const std::size_t count = d.values.Count();
  made.reset(new float[count]);
  WithParts(d.values, part, [&, to = made.get()](auto partAt) {
    for (std::size_t k = 0; k < count; ++k) to[k] = Single(d, partAt(k));
  });
  return {made.get(), count};
}

std::string TitleOf(const std::string& name, const std::string& unit) {
  if (name.empty() || unit.empty()) return name + unit;
  return name + " (" + unit + ')';
}

// A linear axis whose coordinates all fall together has no step that a record could count by.
bool IsDefined(const Axis& axis) { return axis.IsLinear() && (axis.Count() == 1 || axis.Step() != 0); }

std::unique_ptr<float[]> StoredAxis(const Dataset& d, const Axis& axis) {
  if (IsDefined(axis)) return nullptr;
  auto coordinates = record::NewArray(static_cast<int>(axis.Count()));
  const std::span<const double> stored = axis.StoredCoordinates();
  for (std::size_t k = 0; k < axis.Count(); ++k) coordinates[k] = Single(d, stored.empty() ? axis[k] : stored[k]);
  return coordinates;
}

void DefineAxis(PrnType& r, const record::AxisFields& fields, const Dataset& d, const Axis& axis) {
  if (IsDefined(axis))
    fields.Define(r, Single(d, axis.Start()), Single(d, axis.End()),
                  axis.Count() == 1 ? 1 : Single(d, axis.Step()));
}

void CheckFits(const Dataset& d) {
  if (d.axes.size() > 2)
    Refuse(d, "has " + std::to_string(d.axes.size()) + " dimensions; a record is a curve or a grid");
  if (d.axes.empty() || d.values.Count() == 0) Refuse(d, "holds no points");
  for (const Axis& axis : d.axes)
    if (axis.Count() >= static_cast<std::size_t>(std::numeric_limits<int>::max()))
      Refuse(d, "has more points than a record can count");
}

void FillCurve(PrnType& r, const Dataset& d, Part part) {
  auto x = StoredAxis(d, d.axes[0]);
  r.nX = r.nY = static_cast<int>(d.values.Count());
  std::unique_ptr<float[]> made;
  const std::span<const float> values = Singles(d, part, made);
  auto y = made ? std::move(made) : record::ArrayOf(values, r.nY);
  DefineAxis(r, record::kX, d, d.axes[0]);
  r.fileType = FileXY;
  r.allocType = x ? AllocXY : AllocY;
  record::Own(r.xArray, std::move(x));
  record::Own(r.yArray, std::move(y));
  CopyText(r.xLabel, TitleOf(d.axes[0].name, d.axes[0].unit));
  CopyText(r.yLabel, TitleOf(d.name, d.unit));
  CopyText(r.zLabel, d.title);
}

void FillGrid(PrnType& r, const Dataset& d, Part part) {
  const Axis& yAxis = d.axes[0];
  const Axis& xAxis = d.axes[1];
  auto x = StoredAxis(d, xAxis);
  auto y = StoredAxis(d, yAxis);
  const auto nX = static_cast<int>(xAxis.Count());
  const auto nY = static_cast<int>(yAxis.Count());
  std::unique_ptr<float[]> made;
  const float* const values = Singles(d, part, made).data();
  record::Grid z = record::NewGrid(nX, nY);
  record::Transpose(
      nY, nX, [=](int j) { return values + std::ptrdiff_t{j} * nX; }, [to = z.get()](int i) { return to[i]; });
  DefineAxis(r, record::kX, d, xAxis);
  DefineAxis(r, record::kY, d, yAxis);
  r.fileType = FileP3D;
  r.nX = nX;
  r.nY = nY;
  r.allocType = AllocZ | (x ? AllocX : 0) | (y ? AllocY : 0);
  record::Own(r.xArray, std::move(x));
  record::Own(r.yArray, std::move(y));
  record::Own(r.zArray, std::move(z));
  CopyText(r.xLabel, TitleOf(xAxis.name, xAxis.unit));
  CopyText(r.yLabel, TitleOf(yAxis.name, yAxis.unit));
  CopyText(r.zLabel, TitleOf(d.name, d.unit));
  CopyText(r.commentLines[0], d.title);
}

}  // namespace
}  // namespace dataset

Dataset Dataset::Only(Part part) const {
  std::vector<double> numbers(values.Count());
  dataset::WithParts(values, part, [&](auto partAt) {
    for (std::size_t k = 0; k < numbers.size(); ++k) numbers[k] = partAt(k);
  });
  Dataset real = *this;
  real.values = Values::Of(std::move(numbers));
  return real;
}

Record Dataset::ToRecord(Part part) const {
  dataset::CheckFits(*this);
  const record::Aside aside;
  PrnType r;
  if (axes.size() == 1)
    dataset::FillCurve(r, *this, part);
  else
    dataset::FillGrid(r, *this, part);
  text::CopyText(r.fileName, dataset::NameOf(file));
  r.active = 1;
  r.MinMax();
  return Record(std::move(r));
}

}  // namespace kem
