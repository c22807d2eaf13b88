// Linear corrections in place: a straight background, a drifting gain.
#include <algorithm>
#include <vector>

#include "analysis/axis.h"
#include "analysis/line.h"
#include "record/storage.h"

using namespace kem::analysis;

namespace {

// The straight line through two points.
struct Straight {
  float slope;
  float offset;

  Straight(float x1, float a, float x2, float b) : slope((b - a) / (x2 - x1)), offset(a - slope * x1) {}
  float At(float x) const { return slope * x + offset; }
};

// Whether a correction between two abscissae of an axis acts at all. Only ascending ranges are accepted.
bool Spans(const PrnType& r, const AxisValues& axis, float start, float end, float a, float b) {
  const bool inRange = start <= a && a <= end && start <= b && b <= end;
  return kem::record::OwnsArrays(r.allocType) && inRange && a != b && axis.size() != 1;
}

// Where a sample is looked up: an axis that is written out may drift out of its range.
float Inside(float t, bool stored, float start, float end) {
  return stored ? t : std::clamp(t, std::min(start, end), std::max(start, end));
}

void Subtract(const Straight& line, const AxisValues& x, float* y) {
  for (std::size_t k = 0; k < x.size(); ++k) y[k] -= line.At(x[k]);
}

// The values of a grid at one X target and, column by column, at the coordinates of its Y axis.
class ColumnReader {
 public:
  ColumnReader(const PrnType& grid, const AxisValues& xs, const AxisValues& ys, float x)
      : grid_(grid), x_(x), alongY_(ys), line_(LineAt(xs, x)) {}

  const Line& Rows() const { return line_; }

  // What PrnType::At gives for a column.
  float At(float coordinate) {
    const float y = Inside(coordinate, grid_.HasY(), grid_.yStart, grid_.yEnd);
    return Within(y, grid_.yStart, grid_.yEnd) ? Bilinear(grid_.zArray, line_, NearestLine(alongY_, y, x_)) : 0;
  }

 private:
  static Line LineAt(const AxisValues& xs, float x) {
    AxisSearch alongX(xs);
    return NearestLine(alongX, x, x);
  }

  const PrnType& grid_;
  float x_;
  AxisSearch alongY_;
  Line line_;
};

// The line of a column is found in the grid as it is corrected, columns before it included. It depends on no more
// than four rows, so only those are corrected column by column; the others follow row by row.
void SubtractFromColumns(PrnType& grid, const AxisValues& xs, float x1, float x2) {
  const AxisValues ys = YValues(grid);
  if (xs.size() == 0 || ys.size() == 0) return;
  ColumnReader first(grid, xs, ys, x1);
  ColumnReader second(grid, xs, ys, x2);
  std::vector<std::size_t> read = {first.Rows().first, first.Rows().second, second.Rows().first,
                                   second.Rows().second};
  std::sort(read.begin(), read.end());
  read.erase(std::unique(read.begin(), read.end()), read.end());

  std::vector<Straight> lines;
  lines.reserve(ys.size());
  for (std::size_t j = 0; j < ys.size(); ++j) {
    lines.emplace_back(x1, first.At(ys[j]), x2, second.At(ys[j]));
    for (const std::size_t i : read) grid.zArray[i][j] -= lines[j].At(xs[i]);
  }
  for (std::size_t i = 0; i < xs.size(); ++i) {
    if (std::binary_search(read.begin(), read.end(), i)) continue;
    for (std::size_t j = 0; j < ys.size(); ++j) grid.zArray[i][j] -= lines[j].At(xs[i]);
  }
}

void SubtractFromRows(PrnType& grid, const AxisValues& xs, const AxisValues& ys, float y1, float y2) {
  AxisSearch alongX(xs);
  AxisSearch alongY(ys);
  for (std::size_t i = 0; i < xs.size(); ++i) {
    const float x = Inside(xs[i], grid.HasX(), grid.xStart, grid.xEnd);
    const Line row = NearestLine(alongX, x, x);
    const bool inRange = Within(x, grid.xStart, grid.xEnd);
    const auto at = [&](float y) { return inRange ? Bilinear(grid.zArray, row, NearestLine(alongY, y, x)) : 0; };
    Subtract(Straight(y1, at(y1), y2, at(y2)), ys, grid.zArray[i]);
  }
}

}  // namespace

void PrnType::SubLinBackX(float x1, float x2) {
  const AxisValues xs = SampledX(*this);
  if (!Spans(*this, xs, xStart, xEnd, x1, x2)) return;
  if (Is3D())
    SubtractFromColumns(*this, xs, x1, x2);
  else
    Subtract(Straight(x1, At(x1, 0), x2, At(x2, 0)), xs, yArray);
  MinMax();
}

void PrnType::SubLinBackY(float y1, float y2) {
  const AxisValues ys = YValues(*this);
  if (!Is3D() || !Spans(*this, ys, yStart, yEnd, y1, y2)) return;
  if (const AxisValues xs = XValues(*this); xs.size() > 0 && ys.size() > 0) SubtractFromRows(*this, xs, ys, y1, y2);
  MinMax();
}

void PrnType::Slant(float x1, float target1, float x2, float target2) {
  const AxisValues xs = SampledX(*this);
  if (Is3D() || !Spans(*this, xs, xStart, xEnd, x1, x2)) return;
  const float a = At(x1, 0);
  const float b = At(x2, 0);
  if (a == 0 || b == 0) return;
  const Straight factor(x1, target1 / a, x2, target2 / b);
  for (std::size_t k = 0; k < xs.size(); ++k) yArray[k] = factor.At(xs[k]) * yArray[k];
  MinMax();
}
