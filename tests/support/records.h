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
  const auto values = [&rng, &record](float* row) {
    for (int j = 0; j < record.nY; ++j) row[j] = Uniform(rng, -5, 5);
  };
  if (!record.Is3D()) values(record.yArray);
  for (int i = 0; record.Is3D() && i < record.nX; ++i) values(record.zArray[i]);
  record.MinMax();
  record.active = 1;
  std::snprintf(record.fileName, sizeof record.fileName, "random %d", type);
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

inline Floats ValuesOf(const PrnType& r) {
  if (!r.Is3D()) return {r.yArray, r.yArray + r.nY};
  Floats values;
  for (int i = 0; i < r.nX; ++i) values.insert(values.end(), r.zArray[i], r.zArray[i] + r.nY);
  return values;
}

// A bound on or near a coordinate.
inline float Bound(Rng& rng, const Floats& axis) {
  return axis[rng() % axis.size()] + (rng() % 2 ? 0 : Uniform(rng, -3, 3));
}

inline PrnType Swapped(PrnType r) {
  r.SwapXY();
  return r;
}

// A curve over the X axis of a record.
inline PrnType CurveOver(const PrnType& r, const Floats& values) {
  PrnType curve = r.HasX() ? Curve(XOf(r), values) : Curve(r.xStart, r.xStep, values);
  curve.xEnd = r.xEnd;
  return curve;
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
  CHECK(result.fileType == fileType);
  CHECK(result.active == 1);
  CHECK(std::string(result.fileName) == source.fileName);
}

}  // namespace kem::test

// Compares two sequences of floats bit for bit.
#define CHECK_SAME(a, b)                                           \
  do {                                                             \
    const kem::test::Floats& sameA = (a);                          \
    const kem::test::Floats& sameB = (b);                          \
    CHECK_MESSAGE(kem::test::SameFloats(sameA, sameB), #a "/" #b); \
  } while (false)
