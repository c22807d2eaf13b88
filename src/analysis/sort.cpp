// Puts the axes of a record into ascending order; the values move along.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "analysis/axis.h"
#include "analysis/float_key.h"
#include "analysis/neighbours.h"
#include "analysis/radix.h"
#include "analysis/result.h"
#include "analysis/sorted.h"
#include "record/storage.h"

using namespace kem::analysis;
using namespace kem::record;

namespace {

// Whether each coordinate is strictly greater than the one before.
bool Ascends(const KeptAxis& axis) {
  if (!axis.stored) return !(axis.step < 0);
  return AllNeighbours(FirstOf(axis.stored, axis.count), [](float a, float b) { return b > a; });
}

// The indices that put an axis into ascending order. Equal coordinates keep their order, zeros of both signs among
// them, and NaN goes last.
std::vector<std::uint32_t> AscendingOrder(std::span<const float> axis) {
  constexpr std::uint32_t kNegative = 0x80000000;
  std::vector<Keyed> items(axis.size());
  for (std::uint32_t k = 0; k < axis.size(); ++k) {
    const auto key = std::isnan(axis[k]) ? kMagnitude : KeyOf(axis[k] + 0.0f);  // -0 + 0 is 0
    items[k] = {static_cast<std::uint32_t>(key) ^ kNegative, k};
  }
  std::vector<Keyed> scratch(items.size());
  SortByKey<11, 3>(items, scratch);
  std::vector<std::uint32_t> order(items.size());
  std::transform(items.begin(), items.end(), order.begin(), [](const Keyed& item) { return item.index; });
  return order;
}

// Moves the element at order[k] to k.
template <class T>
void Reorder(T* elements, const std::vector<std::uint32_t>& order, std::vector<T>& scratch) {
  scratch.assign(elements, elements + order.size());
  std::transform(order.begin(), order.end(), elements, [&scratch](std::uint32_t from) { return scratch[from]; });
}

void Turn(PrnType& r, const AxisFields& axis) { axis.Define(r, r.*axis.end, r.*axis.start, -(r.*axis.step)); }

std::span<float> Axis(float* values, int count) { return {values, static_cast<std::size_t>(std::max(count, 0))}; }

// The rows move, their values stay where they are.
void SortRows(PrnType& grid) {
  if (Ascends(Kept(grid, kX))) return;
  if (!grid.HasX()) {
    Turn(grid, kX);
    std::reverse(grid.zArray, grid.zArray + grid.nX);
    return;
  }
  const auto order = AscendingOrder(Axis(grid.xArray, grid.nX));
  std::vector<float> scratch;
  std::vector<float*> rows;
  rows.reserve(order.size());
  Reorder(grid.xArray, order, scratch);
  Reorder(grid.zArray, order, rows);
}

// What sorting the columns of a grid takes: nothing where they need no order.
struct ColumnOrder {
  std::vector<std::uint32_t> order;
  std::vector<float> scratch;

  explicit ColumnOrder(const PrnType& grid) {
    if (!grid.HasY() || Ascends(Kept(grid, kY))) return;
    order = AscendingOrder(Axis(grid.yArray, grid.nY));
    scratch.reserve(order.size());
  }
};

void SortColumns(PrnType& grid, ColumnOrder& columns) {
  if (Ascends(Kept(grid, kY))) return;
  if (!grid.HasY()) {
    Turn(grid, kY);
    for (int i = 0; i < grid.nX; ++i) std::reverse(grid.zArray[i], grid.zArray[i] + grid.nY);
    return;
  }
  Reorder(grid.yArray, columns.order, columns.scratch);
  for (int i = 0; i < grid.nX; ++i) Reorder(grid.zArray[i], columns.order, columns.scratch);
}

void SortCurve(PrnType& curve) {
  if (Ascends(Kept(curve, kX))) return;
  if (!curve.HasX()) {
    Turn(curve, kX);
    std::reverse(curve.yArray, curve.yArray + std::max(curve.nY, 0));
    return;
  }
  const auto order = AscendingOrder(Axis(curve.xArray, Kept(curve, kX).count));
  std::vector<float> scratch;
  Reorder(curve.xArray, order, scratch);
  Reorder(curve.yArray, order, scratch);
}

}  // namespace

bool kem::analysis::AxesAscend(const PrnType& r) {
  return !OwnsArrays(r.allocType) || (Ascends(Kept(r, kX)) && (!r.Is3D() || Ascends(Kept(r, kY))));
}

void PrnType::SortAxes() {
  if (!OwnsArrays(allocType)) return;
  if (!Is3D()) return SortCurve(*this);
  ColumnOrder columns(*this);  // when memory runs out, nothing has moved yet
  SortRows(*this);
  SortColumns(*this, columns);
}
