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
bool Spans(const AxisValues& axis, float start, float end, float a, float b) {
  return start <= a && a <= end && start <= b && b <= end && a != b && axis.size() > 1;
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

  // What PrnType::At gives: the drift of a written-out axis may have led out of its range.
  float At(float y) {
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
  if (ys.size() == 0) return;
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

}  // namespace

void PrnType::SubLinBackX(float x1, float x2) {
  const AxisValues xs = SampledX(*this);
  if (!Spans(xs, xStart, xEnd, x1, x2)) return;
  if (Is3D())
    SubtractFromColumns(*this, xs, x1, x2);
  else
    Subtract(Straight(x1, At(x1, 0), x2, At(x2, 0)), xs, yArray);
  MinMax();
}

void PrnType::SubLinBackY(float y1, float y2) {
  const AxisValues ys = YValues(*this);
  if (!Is3D() || !Spans(ys, yStart, yEnd, y1, y2)) return;
  const AxisValues xs = XValues(*this);
  if (xs.size() == 0) return;
  AxisSearch alongX(xs);
  AxisSearch alongY(ys);
  for (std::size_t i = 0; i < xs.size(); ++i) {
    const float x = xs[i];
    const Line row = NearestLine(alongX, x, x);
    const bool inRange = Within(x, xStart, xEnd);
    const auto at = [&](float y) { return inRange ? Bilinear(zArray, row, NearestLine(alongY, y, x)) : 0; };
    Subtract(Straight(y1, at(y1), y2, at(y2)), ys, zArray[i]);
  }
  MinMax();
}

void PrnType::Slant(float x1, float target1, float x2, float target2) {
  const AxisValues xs = SampledX(*this);
  if (Is3D() || !Spans(xs, xStart, xEnd, x1, x2)) return;
  const float a = At(x1, 0);
  const float b = At(x2, 0);
  if (a == 0 || b == 0) return;
  const Straight factor(x1, target1 / a, x2, target2 / b);
  for (std::size_t k = 0; k < xs.size(); ++k) yArray[k] = factor.At(xs[k]) * yArray[k];
  MinMax();
}
