#include "shape.h"

#include <cstdio>
#include <memory>

namespace kem::tool {
namespace {

std::vector<float> Coordinates(const PrnType& record, void (PrnType::*axis)(float**, int*) const) {
  float* values = nullptr;
  int count = 0;
  (record.*axis)(&values, &count);
  const std::unique_ptr<float[]> owner(values);
  return {values, values + count};
}

}  // namespace

void SetTitles(PrnType& curve, const char* x, const char* y) {
  std::snprintf(curve.xLabel, sizeof curve.xLabel, "%s", x);
  std::snprintf(curve.yLabel, sizeof curve.yLabel, "%s", y);
}

std::string ShapeOf(const PrnType& record) {
  if (record.Is3D()) return "grid " + std::to_string(record.nX) + " x " + std::to_string(record.nY);
  return "curve " + std::to_string(record.nY);
}

std::vector<float> XCoordinates(const PrnType& record) { return Coordinates(record, &PrnType::ArrayFromXAxis); }
std::vector<float> YCoordinates(const PrnType& record) { return Coordinates(record, &PrnType::ArrayFromYAxis); }

}  // namespace kem::tool
