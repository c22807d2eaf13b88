// The values of a record, a curve's Y array or a grid, and results that are a copy of a record with other values.
#pragma once

#include <algorithm>
#include <string>
#include <string_view>

#include "arith/kernels.h"
#include "kem.h"
#include "record/ranges.h"
#include "record/storage.h"
#include "text/fields.h"

namespace kem::arith {

// False also for the storage shapes that name no values.
inline bool HasValues(const PrnType& record) { return record::OwnsArrays(record.allocType); }

inline bool IsGrid(const PrnType& record) { return record.Is3D() != 0; }

// Counts of values, row by row; a curve is one row.
struct Extent {
  int rows = 0;
  int columns = 0;
};

inline Extent StoredExtent(const PrnType& record) {
  if (!HasValues(record)) return {};
  return {IsGrid(record) ? record.nX : 1, record.nY};
}

// Operations count the points of a curve by its nX, as far as they are stored.
inline Extent ExtentOf(const PrnType& record) {
  Extent extent = StoredExtent(record);
  if (!IsGrid(record)) extent.columns = std::clamp(record.nX, 0, extent.columns);
  return extent;
}

inline Extent Common(Extent a, Extent b) { return {std::min(a.rows, b.rows), std::min(a.columns, b.columns)}; }

inline float* Row(const PrnType& record, int i) { return IsGrid(record) ? record.zArray[i] : record.yArray; }

// Stores values and extends their range by them: in vectors, or one after the other where the C library is called.
template <class Kernel>
void Fill(record::RunningRange& range, Kernel kernel, int count, float* to, const auto*... from) {
  range.Store(kernel, count, to, from...);
}

template <class Function>
void Fill(record::RunningRange& range, Call<Function> call, int count, float* to, const auto*... from) {
  for (int k = 0; k < count; ++k) to[k] = call(from[k]...);
  range.Extend(to, count);
}

// A copy of a record under another name. Within an extent its values are the kernel's of the record's own and
// those of the others at the same place; beyond it they stay.
template <class Kernel, class... Records>
PrnType Computed(std::string_view name, Extent extent, Kernel kernel, const PrnType& record,
                 const Records&... others) {
  PrnType result = record::CopyWithoutValues(record);
  const Extent stored = StoredExtent(record);
  record::RunningRange range;
  for (int i = 0; i < stored.rows; ++i) {
    float* to = Row(result, i);
    const float* from = Row(record, i);
    const int count = i < extent.rows ? std::max(extent.columns, 0) : 0;
    Fill(range, kernel, count, to, from, Row(others, i)...);
    range.Copy(from + count, stored.columns - count, to + count);
  }
  text::CopyText(result.fileName, name);
  record::SetRanges(result, range);
  return result;
}

// The result's name is the record's between two texts.
template <class Kernel>
PrnType Mapped(const PrnType& record, std::string_view before, std::string_view after, Kernel kernel) {
  if (!HasValues(record)) return PrnType();
  const auto name = std::string(before).append(text::TextOf(record.fileName)).append(after);
  return Computed(name, ExtentOf(record), kernel, record);
}

}  // namespace kem::arith
