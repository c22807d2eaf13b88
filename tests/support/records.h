// Records for tests of what works on data, whatever file it came from.
#pragma once

#include <algorithm>
#include <cstdio>
#include <limits>
#include <memory>
#include <vector>

#include "support/support.h"

namespace kem::test {

using Floats = std::vector<float>;

inline void Put(const Floats& values, float* array) { std::copy(values.begin(), values.end(), array); }
inline bool SameFloats(const Floats& a, const Floats& b) {
  return std::equal(a.begin(), a.end(), b.begin(), b.end(), SameBits);
}

inline PrnType Curve(const Floats& x, const Floats& y) {
  PrnType curve(AllocXY, static_cast<int>(y.size()));
  Put(x, curve.xArray);
  Put(y, curve.yArray);
  curve.MinMax();
  return curve;
}

inline PrnType Curve(float start, float step, const Floats& y) {
  PrnType curve(AllocY, static_cast<int>(y.size()));
  Put(y, curve.yArray);
  curve.xStart = start;
  curve.xStep = step;
  curve.xEnd = start + static_cast<float>(curve.nX - 1) * step;
  curve.MinMax();
  return curve;
}

// Takes over a record that an operation handed out.
inline std::unique_ptr<PrnType> Take(PrnType& handedOut) { return std::unique_ptr<PrnType>(&handedOut); }

inline void CheckEmpty(const PrnType& r) { CHECK(!r); }
inline std::string Name(const PrnType& r) { return r.fileName; }

inline float Uniform(Rng& rng, float low, float high) {
  return low + (high - low) * static_cast<float>(rng() % 100001) / 100000.0f;
}

// Coordinates in no order or in order, with repeats.
inline void FillAxis(Rng& rng, float* values, int count) {
  for (int k = 0; k < count; ++k) values[k] = Uniform(rng, -20, 20);
  if (rng() % 3 == 0)
    for (int k = 0; k < count; ++k) values[k] = std::round(values[k] / 4);
  const auto kind = rng() % 3;
  if (kind > 0) std::sort(values, values + count);
  if (kind > 1) std::reverse(values, values + count);
}

// The values of a grid row by row, or those of a curve as one row.
inline std::span<float* const> Rows(const PrnType& r) {
  return {r.Is3D() ? r.zArray : &r.yArray, r.Is3D() ? static_cast<std::size_t>(r.nX) : 1};
}

inline Floats ValuesOf(const PrnType& r) {
  Floats values;
  for (const float* row : Rows(r)) values.insert(values.end(), row, row + r.nY);
  return values;
}

// A curve or grid of any shape; stored axes as above, defined ones ascending or descending.
inline PrnType RandomRecord(Rng& rng, int type, int nX, int nY) {
  PrnType record(static_cast<AllocType>(type), nX, nY);
  const auto define = [&rng](float& start, float& end, float& step, int count) {
    start = Uniform(rng, -20, 20);
    step = Uniform(rng, 0.1f, 2) * (rng() % 2 ? 1.0f : -1.0f);
    end = start + static_cast<float>(count - 1) * step;
  };
  define(record.xStart, record.xEnd, record.xStep, record.nX);
  define(record.yStart, record.yEnd, record.yStep, record.nY);
  if (record.HasX()) FillAxis(rng, record.xArray, record.nX);
  if (record.HasY() && record.Is3D()) FillAxis(rng, record.yArray, record.nY);
  for (float* row : Rows(record)) std::generate_n(row, record.nY, [&rng] { return Uniform(rng, -5, 5); });
  record.MinMax();
  record.active = 1;
  std::snprintf(record.fileName, sizeof record.fileName, "random %d", type);
  std::snprintf(record.xLabel, sizeof record.xLabel, "delay");
  return record;
}

inline PrnType RandomRecord(Rng& rng, int type) {
  return RandomRecord(rng, type, 1 + static_cast<int>(rng() % 40), 1 + static_cast<int>(rng() % 40));
}

// Runs a case over random records of every shape from `first` on: AllocY for all, AllocZ for grids only.
template <class Case>
void ForRandomRecords(int first, Case run) {
  CAPTURE(kSeed);
  Rng rng(kSeed);
  for (int round = 0; round < 60; ++round)
    for (int type = first; type <= AllocXYZ; ++type) {
      CAPTURE(type);
      PrnType record = RandomRecord(rng, type);
      run(record, rng);
    }
}

// The coordinates of an axis, by the rule: stored, or accumulated in single precision.
inline Floats Coordinates(bool stored, const float* values, float start, float step, int count) {
  Floats axis;
  for (int k = 0; k < count; ++k, start += step) axis.push_back(stored ? values[k] : start);
  return axis;
}
inline Floats XOf(const PrnType& r) { return Coordinates(r.HasX(), r.xArray, r.xStart, r.xStep, r.nX); }
inline Floats YOf(const PrnType& r) { return Coordinates(r.HasY(), r.yArray, r.yStart, r.yStep, r.nY); }

// A bound on or near a coordinate.
inline float Bound(Rng& rng, const Floats& axis) {
  return axis[rng() % axis.size()] + (rng() % 2 ? 0 : Uniform(rng, -3, 3));
}

// The first sample not below two bounds in either order, and the last one not above them.
inline std::pair<int, int> Band(const Floats& axis, float a, float b) {
  int first = 0, last = static_cast<int>(axis.size()) - 1;
  while (first < static_cast<int>(axis.size()) && axis[first] < std::min(a, b)) ++first;
  while (last >= 0 && axis[last] > std::max(a, b)) --last;
  return {first, last};
}

inline PrnType Swapped(PrnType r) {
  r.SwapXY();
  return r;
}
inline PrnType Sorted(PrnType r) {
  r.SortAxes();
  return r;
}

// A curve over the X axis of a record.
inline PrnType CurveOver(const PrnType& r, const Floats& values) {
  PrnType curve = r.HasX() ? Curve(XOf(r), values) : Curve(r.xStart, r.xStep, values);
  curve.xEnd = r.xEnd;
  return curve;
}

// The part of a record from a sample of either axis on; defined axes are multiplied out.
inline PrnType Part(const PrnType& r, int x, int nX, int y, int nY) {
  const auto at = [](int k, float step, float start) { return static_cast<float>(k) * step + start; };
  PrnType part(static_cast<AllocType>(r.allocType), nX, nY);
  part.xStart = at(x, r.xStep, r.xStart), part.xEnd = at(x + nX - 1, r.xStep, r.xStart), part.xStep = r.xStep;
  part.yStart = at(y, r.yStep, r.yStart), part.yEnd = at(y + nY - 1, r.yStep, r.yStart), part.yStep = r.yStep;
  if (r.HasX()) std::copy_n(r.xArray + x, nX, part.xArray);
  if (r.HasY()) std::copy_n(r.yArray + y, nY, part.yArray);
  for (int i = 0; r.Is3D() && i < nX; ++i) std::copy_n(r.zArray[x + i] + y, nY, part.zArray[i]);
  part.MinMax();
  return part;
}

// What a filter along X makes of a record: `rule` of the samples around v[0], and `margin` of them lost at either
// end.
template <class Rule>
PrnType Filtered(const PrnType& r, int margin, Rule rule) {
  const PrnType s = Sorted(r);
  const int n = r.nX - 2 * margin, columns = r.Is3D() ? r.nY : 1;
  PrnType f = r.Is3D() ? Part(s, margin, n, 0, columns) : Part(s, margin, n, margin, n);
  f.xEnd = s.xEnd - static_cast<float>(margin) * s.xStep, f.yEnd = s.yEnd;
  for (int j = 0; j < columns; ++j) {
    Floats line;
    for (int i = 0; i < r.nX; ++i) line.push_back(r.Is3D() ? s.zArray[i][j] : s.yArray[i]);
    for (int k = 0; k < n; ++k) (r.Is3D() ? f.zArray[k][j] : f.yArray[k]) = rule(&line[k + margin]);
  }
  f.MinMax();
  return f;
}

// That two records hold the same data on the same axes.
inline bool SameData(const PrnType& a, const PrnType& b) {
  return a.allocType == b.allocType && a.nX == b.nX && a.nY == b.nY && SameFloats(ValuesOf(a), ValuesOf(b)) &&
         SameFloats(XOf(a), XOf(b)) && SameFloats(YOf(a), YOf(b)) &&
         SameFloats({a.xStart, a.xEnd, a.yStart, a.yEnd, a.zMin}, {b.xStart, b.xEnd, b.yStart, b.yEnd, b.zMin});
}

// That an operation on a record made this.
inline void CheckResult(const PrnType& result, const PrnType& expected, const PrnType& source, int fileType) {
  CHECK(SameData(result, expected));
  CHECK((result.fileType == fileType && result.active == 1));
  CHECK(Name(result) == source.fileName);
  if (fileType == source.fileType) CHECK(std::string(result.xLabel) == source.xLabel);
}

}  // namespace kem::test

// Compares two sequences of floats bit for bit.
#define CHECK_SAME(a, b)                                           \
  do {                                                             \
    const kem::test::Floats& sameA = (a);                          \
    const kem::test::Floats& sameB = (b);                          \
    CHECK_MESSAGE(kem::test::SameFloats(sameA, sameB), #a "/" #b); \
  } while (false)
