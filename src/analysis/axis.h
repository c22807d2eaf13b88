// Coordinates of an axis, whether a record stores or defines them.
#pragma once

#include <algorithm>
#include <memory>
#include <span>
#include <utility>

#include "kem.h"
#include "record/axis.h"

namespace kem::analysis {

// The first values of an array, none for a count below 0.
inline std::span<const float> FirstOf(const float* values, int count) {
  return {values, static_cast<std::size_t>(std::max(count, 0))};
}

// A defined axis written out: the step is added again and again in single precision, drift included.
std::unique_ptr<float[]> WriteOutAxis(float start, float step, int count);

// The coordinates of one axis of a record: its own array where it stores one, else the defined axis written
// out. Valid as long as the record keeps its arrays.
class AxisValues {
 public:
  explicit AxisValues(std::span<const float> stored) : values_(stored) {}
  AxisValues(std::unique_ptr<float[]> writtenOut, int count)
      : values_(writtenOut.get(), static_cast<std::size_t>(count)), writtenOut_(std::move(writtenOut)) {}

  const float* data() const { return values_.data(); }
  std::size_t size() const { return values_.size(); }
  float operator[](std::size_t k) const { return values_[k]; }
  operator std::span<const float>() const { return values_; }

 private:
  std::span<const float> values_;
  std::unique_ptr<float[]> writtenOut_;
};

// Never longer than the arrays they go with, whatever a host did to the counts; empty for a record without
// arrays.
AxisValues XValues(const PrnType& record);
AxisValues YValues(const PrnType& record);
inline AxisValues ValuesOf(const PrnType& record, const record::AxisFields& axis) {
  return axis.bit == AllocX ? XValues(record) : YValues(record);
}

// The X coordinates that have values: those of a curve end with the smaller of its counts.
AxisValues SampledX(const PrnType& record);

// Whether a target lies in the range of an axis, its ends included.
inline bool Within(float t, float start, float end) {
  return t >= std::min(start, end) && t <= std::max(start, end);
}

}  // namespace kem::analysis
