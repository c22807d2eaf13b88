#include "shape.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <memory>

namespace kem::tool {
namespace {

std::vector<float> HandedOut(const PrnType& record, void (PrnType::*axis)(float**, int*) const) {
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
  return ShapeOf(KemItem{.index = 0, .allocType = record.allocType, .nX = record.nX, .nY = record.nY, .title = {}});
}

std::string ShapeOf(const KemItem& item) {
  if (item.allocType & AllocZ) return "grid " + std::to_string(item.nX) + " x " + std::to_string(item.nY);
  return "curve " + std::to_string(item.nY);
}

double LinearAxis::Last() const {
  const double last = start + (points - 1.0) * step;
  return std::fabs(end - last) < std::fabs(step) / 4.0 ? end : last;
}

std::vector<float> LinearAxis::Coordinates() const {
  std::vector<float> values(points > 0 ? static_cast<std::size_t>(points) : 0, start);
  const double span = Last() - start;
  for (int k = 1; k < points; ++k)
    values[static_cast<std::size_t>(k)] = static_cast<float>(start + k * span / (points - 1));
  return values;
}

LinearAxis XAxis(const PrnType& r) { return {r.xStart, r.xEnd, r.xStep, r.Is3D() ? r.nX : r.nY}; }
LinearAxis YAxis(const PrnType& r) { return {r.yStart, r.yEnd, r.yStep, r.nY}; }

void StoreX(PrnType& r, const std::vector<float>& x) {
  r.xArray = new float[x.size()];
  std::copy(x.begin(), x.end(), r.xArray);
  r.nX = static_cast<int>(x.size());
  r.allocType |= AllocX;
  r.MinMax();
}

void StoreY(PrnType& grid, const std::vector<float>& y) {
  grid.yArray = new float[y.size()];
  std::copy(y.begin(), y.end(), grid.yArray);
  grid.allocType |= AllocY;
  grid.MinMax();
}

void StoreAxes(PrnType& r) {
  if (!r.HasX()) StoreX(r, XCoordinates(r));
  if (!r.HasY()) StoreY(r, YCoordinates(r));  // that of a curve are its values
}

std::vector<float> XOfOperations(const PrnType& r) { return HandedOut(r, &PrnType::ArrayFromXAxis); }
std::vector<float> YOfOperations(const PrnType& r) { return HandedOut(r, &PrnType::ArrayFromYAxis); }

std::vector<float> XCoordinates(const PrnType& r) { return r.HasX() ? XOfOperations(r) : XAxis(r).Coordinates(); }
std::vector<float> YCoordinates(const PrnType& r) { return r.HasY() ? YOfOperations(r) : YAxis(r).Coordinates(); }

}  // namespace kem::tool
