// Puts the axes of a record into ascending order; the values move along.
#include <algorithm>
#include <cmath>
#include <numeric>
#include <span>
#include <utility>
#include <vector>

#include "record/storage.h"

namespace {

// Whether each entry is strictly greater than the one before.
bool IsOrdered(std::span<const float> axis) {
  return std::ranges::adjacent_find(axis, [](float a, float b) { return !(b > a); }) == axis.end();
}

// The indices that put an axis into ascending order. Equal coordinates keep their order, and those that are not
// a number go last.
std::vector<int> AscendingOrder(std::span<const float> axis) {
  std::vector<int> order(axis.size());
  std::iota(order.begin(), order.end(), 0);
  std::ranges::stable_sort(order, [axis](int a, int b) {
    const float x = axis[static_cast<std::size_t>(a)];
    const float y = axis[static_cast<std::size_t>(b)];
    return x < y || (!std::isnan(x) && std::isnan(y));
  });
  return order;
}

// Moves the element at order[k] to k.
template <class T>
void Reorder(T* elements, const std::vector<int>& order, std::vector<T>& scratch) {
  scratch.assign(elements, elements + order.size());
  std::ranges::transform(order, elements, [&scratch](int from) { return scratch[static_cast<std::size_t>(from)]; });
}

// Turns a descending defined axis round; returns whether it was one.
bool TurnAxis(float& start, float& end, float& step) {
  if (!(step < 0)) return false;
  std::swap(start, end);
  step = -step;
  return true;
}

std::span<float> Axis(float* values, int count) { return {values, static_cast<std::size_t>(std::max(count, 0))}; }

// The rows move, their values stay where they are.
void SortRows(PrnType& grid) {
  if (!grid.HasX()) {
    if (TurnAxis(grid.xStart, grid.xEnd, grid.xStep)) std::reverse(grid.zArray, grid.zArray + grid.nX);
    return;
  }
  const auto axis = Axis(grid.xArray, grid.nX);
  if (IsOrdered(axis)) return;
  const auto order = AscendingOrder(axis);
  std::vector<float> scratch;
  std::vector<float*> rows;
  rows.reserve(order.size());
  Reorder(grid.xArray, order, scratch);
  Reorder(grid.zArray, order, rows);
}

void SortColumns(PrnType& grid) {
  if (!grid.HasY()) {
    if (TurnAxis(grid.yStart, grid.yEnd, grid.yStep))
      for (int i = 0; i < grid.nX; ++i) std::reverse(grid.zArray[i], grid.zArray[i] + grid.nY);
    return;
  }
  const auto axis = Axis(grid.yArray, grid.nY);
  if (IsOrdered(axis)) return;
  const auto order = AscendingOrder(axis);
  std::vector<float> scratch;
  Reorder(grid.yArray, order, scratch);
  for (int i = 0; i < grid.nX; ++i) Reorder(grid.zArray[i], order, scratch);
}

void SortCurve(PrnType& curve) {
  if (!curve.HasX()) {
    if (TurnAxis(curve.xStart, curve.xEnd, curve.xStep)) std::ranges::reverse(Axis(curve.yArray, curve.nY));
    return;
  }
  const auto axis = Axis(curve.xArray, std::min(curve.nX, curve.nY));
  if (IsOrdered(axis)) return;
  const auto order = AscendingOrder(axis);
  std::vector<float> scratch;
  Reorder(curve.xArray, order, scratch);
  Reorder(curve.yArray, order, scratch);
}

}  // namespace

void PrnType::SortAxes() {
  if (!kem::record::OwnsArrays(allocType)) return;
  if (!Is3D()) return SortCurve(*this);
  SortRows(*this);
  SortColumns(*this);
}
