// All that can be done with a record, for tests that try every operation on records of any kind.
#pragma once

#include "support/records.h"

namespace kem::test {

using Operation = void (*)(PrnType& record);

// Curves or grids that differ from a record in their axes.
inline const PrnType& Other(const PrnType& r) {
  static Rng rng(kSeed);
  static const PrnType curve = RandomRecord(rng, AllocXY, 15, 15);
  static const PrnType grid = RandomRecord(rng, AllocXYZ, 15, 5);
  return r.Is3D() ? grid : curve;
}

inline void WriteAll(PrnType& r) {
  static const TempFolder folder;
  static std::string path = folder.Path("written");
  for (const auto write : {&PrnType::WriteXYPrn, &PrnType::WriteCvt, &PrnType::WriteDX, &PrnType::WriteP2D,
                           &PrnType::WriteB2D, &PrnType::WriteP3D, &PrnType::WriteB3D})
    (r.*write)(path.data());
}

inline void Report(PrnType& r) {
  char text[2000];
  r.CommentBlock(text, sizeof text);
  r.GetLabel(text);
  r.LabelAxes(text, text + kTextSize, text + 2 * kTextSize);
  r.PrintLog(5);
}

inline float some[] = {-3, 0, 1, 7};
inline char times[] = "*";

inline constexpr Operation kOperations[] = {
    [](PrnType& r) { PrnType copy(r); },
    [](PrnType& r) { r = Other(r); },
    [](PrnType& r) { r = PrnType(Other(r)); },
    [](PrnType& r) { r.CopyData(Other(r)); },
    [](PrnType& r) {
      r.DeAllocate();
      r.Allocate(AllocXYZ, 3, 4);
    },
    [](PrnType& r) { (void)(r + r), (void)(r - 2), (void)(r & r), (void)-r; },
    [](PrnType& r) { (void)(r * Other(r)); },
    [](PrnType& r) { (void)r.Exp(), (void)r.Set(2), (void)r.Inv(); },
    [](PrnType& r) { (void)r.AxisOp('x', times, 2), (void)r.AxisOp('y', times, 2); },
    [](PrnType& r) { (void)(r.SameAxes(Other(r)) + r.XAxisEqArray(some, 4) + r.YAxisEqArray(some, 4)); },
    [](PrnType& r) {
      float* values = nullptr;
      int count = 0;
      for (const auto get : {&PrnType::ArrayFromXAxis, &PrnType::ArrayFromYAxis}) {
        (r.*get)(&values, &count);
        delete[] values;
      }
    },
    [](PrnType& r) { (void)(r.At(1, 1) + r.Nearest(1, 1)); },
    [](PrnType& r) { delete &r.InterpolateXY(some, 4), delete &r.InterpolateY(-2, 2, 0.5f); },
    [](PrnType& r) { delete &r.InterpolateXYZ(some, 4, some, 4), delete &r.InterpolateZ(-2, 2, 1, -2, 2, 1); },
    [](PrnType& r) { delete &r.InterpolateXZ(some, 4, -2, 2, 1), delete &r.InterpolateYZ(-2, 2, 1, some, 4); },
    [](PrnType& r) { delete &r.XSlice(-9, 9, 1), delete &r.YSlice(-9, 9, 0); },
    [](PrnType& r) { delete &r.Cut(-30, 30, -30, 30), delete &r.DeleteClosest(0, 0), delete &r.Reduce(2, 3); },
    [](PrnType& r) { delete &r.Median2D(5), delete &r.Median3D(5); },
    [](PrnType& r) { delete &r.XSmooth(5), delete &r.YSmooth(5); },
    [](PrnType& r) { delete &r.XDiff(), delete &r.YDiff(); },
    [](PrnType& r) { delete &r.IntegrateX(-9, 9), delete &r.IntegrateY(-9, 9), delete &r.RunningIntegral(); },
    [](PrnType& r) { (void)(r.Integral(-9, 9, -9, 9) + r.AbsIntegral(-9, 9, -9, 9) + r.NoiseLevel()); },
    [](PrnType& r) {
      float a = 0;
      float counts[9];
      r.Histogram(9, counts, a, a);
      r.MinMaxY(-9, 9, a, a, a, a);
      r.MinMaxZ(-9, 9, -9, 9, a, a, a, a, a, a);
    },
    [](PrnType& r) { r.SortAxes(); },
    [](PrnType& r) { r.SwapXY(); },
    [](PrnType& r) { r.SubLinBackX(r.xStart, r.xEnd); },
    [](PrnType& r) { r.SubLinBackY(r.yStart, r.yEnd); },
    [](PrnType& r) { r.Slant(r.xStart, 1, r.xEnd, 2); },
    WriteAll,
    Report,
};

}  // namespace kem::test
