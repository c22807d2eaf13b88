// Values, axes and parameters of a dataset.
#include "kem/dataset.h"

#include <algorithm>
#include <array>
#include <utility>

namespace kem {
namespace {

struct NumberRow {
  const char* name;
  std::size_t size;
  double (*at)(const std::byte* bytes, std::size_t k);
};

template <class T>
constexpr NumberRow Row(const char* name) {
  return {name, sizeof(T), [](const std::byte* bytes, std::size_t k) {
            return static_cast<double>(reinterpret_cast<const T*>(bytes)[k]);
          }};
}

// By NumberType.
constexpr std::array kNumbers = {Row<std::uint8_t>("u8"), Row<std::uint16_t>("u16"), Row<std::uint32_t>("u32"),
                                 Row<std::int8_t>("i8"),  Row<std::int16_t>("i16"),  Row<std::int32_t>("i32"),
                                 Row<float>("f32"),       Row<double>("f64")};

const NumberRow& RowOf(NumberType type) { return kNumbers[static_cast<std::size_t>(type)]; }

}  // namespace

std::size_t SizeOf(NumberType type) { return RowOf(type).size; }
const char* NameOf(NumberType type) { return RowOf(type).name; }

double Values::Real(std::size_t k) const { return RowOf(type_).at(bytes_.get(), complex_ ? 2 * k : k); }
double Values::Imaginary(std::size_t k) const { return complex_ ? RowOf(type_).at(bytes_.get(), 2 * k + 1) : 0; }

Axis Axis::Linear(std::string name, std::string unit, std::size_t count, double start, double end) {
  Axis axis;
  axis.name = std::move(name);
  axis.unit = std::move(unit);
  axis.count_ = count;
  axis.start_ = start;
  axis.end_ = end;
  return axis;
}

Axis Axis::Stored(std::string name, std::string unit, std::vector<double> coordinates) {
  Axis axis;
  axis.name = std::move(name);
  axis.unit = std::move(unit);
  axis.count_ = coordinates.size();
  axis.stored_ = std::move(coordinates);
  return axis;
}

double Axis::Step() const {
  return IsLinear() && count_ > 1 ? (end_ - start_) / static_cast<double>(count_ - 1) : 0;
}

double Axis::operator[](std::size_t k) const {
  if (!IsLinear()) return stored_[k];
  if (count_ < 2) return start_;
  return start_ + static_cast<double>(k) * (end_ - start_) / static_cast<double>(count_ - 1);
}

std::vector<double> Axis::Coordinates() const {
  if (!IsLinear()) return stored_;
  std::vector<double> coordinates(count_);
  for (std::size_t k = 0; k < count_; ++k) coordinates[k] = (*this)[k];
  return coordinates;
}

Axis Axis::First(std::size_t count) const {
  if (count >= count_) return *this;
  if (!IsLinear())
    return Stored(name, unit, {stored_.begin(), stored_.begin() + static_cast<std::ptrdiff_t>(count)});
  return Linear(name, unit, count, start_, count > 0 ? (*this)[count - 1] : start_);
}

const Parameter* Dataset::Find(std::string_view key, std::string_view section) const {
  const auto found = std::find_if(parameters.begin(), parameters.end(), [&](const Parameter& p) {
    return p.key == key && (section.empty() || p.section == section);
  });
  return found == parameters.end() ? nullptr : &*found;
}

}  // namespace kem
