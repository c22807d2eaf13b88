#include "picture.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "portable.h"

namespace kem::tool {
namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

void AddNumber(std::string& text, double number) {
  text += ' ';
  if (std::isfinite(number))
    portable::AppendShortest(text, number);
  else
    text += "NaN";
}

// Nothing but a quote means anything within such quotes; a line ends there, and so it may not.
std::string InQuotes(const std::string& text) {
  std::string quoted = "'";
  for (const char c : text)
    if (c == '\'')
      quoted += "''";
    else
      quoted += (c >= 0 && c < ' ') || c == 0x7F ? ' ' : c;
  return quoted + '\'';
}

bool HasLog(const Picture& picture, char axis) { return picture.log.find(axis) != std::string::npos; }

// The values of curves are drawn along Y.
bool IsLog(const Picture& picture, char axis) {
  if (HasLog(picture, axis)) return axis != 'z' || picture.grid;
  return axis == 'y' && !picture.grid && HasLog(picture, 'z');
}

// ------------------------------------------------------------ ranges

struct Span {
  double low = std::numeric_limits<double>::infinity();
  double high = -std::numeric_limits<double>::infinity();

  void Take(const std::vector<double>& numbers) {
    for (const double v : numbers)
      if (std::isfinite(v)) low = std::min(low, v), high = std::max(high, v);
  }
};

// Where the cells of coordinates end: halfway to the neighbours, and as far on the other side at the ends.
std::vector<std::array<double, 2>> CellsOf(const std::vector<double>& at) {
  std::vector<std::array<double, 2>> cells(at.size());
  for (std::size_t k = 0; k < at.size(); ++k) {
    const double before = k > 0 ? at[k] - at[k - 1] : at.size() > 1 ? at[1] - at[0] : 1;
    const double behind = k + 1 < at.size() ? at[k + 1] - at[k] : before;
    cells[k] = {at[k] - before / 2, at[k] + behind / 2};
  }
  return cells;
}

bool IsEven(const std::vector<double>& at) {
  if (at.size() < 2) return false;
  const double step = (at.back() - at.front()) / static_cast<double>(at.size() - 1);
  for (std::size_t k = 0; k < at.size(); ++k)
    if (!(std::fabs(at[k] - (at.front() + static_cast<double>(k) * step)) <= 1e-3 * std::fabs(step))) return false;
  return step != 0;
}

// Characters do not stand upright: what belongs to upright axes comes into the first line.
void AddTitles(std::string& script, const Picture& picture, const Canvas& canvas) {
  const auto set = [&script](const std::string& what, const std::string& text, const char* where = "") {
    if (!text.empty()) script += "set " + what + ' ' + InQuotes(text) + where + " noenhanced\n";
  };
  set("title", picture.title);
  set("xlabel", picture.labels[0]);
  const bool upright = canvas.columns == 0;
  const std::string of = picture.grid ? picture.labels[2] : "";
  set(upright ? "ylabel" : "label", picture.labels[1], upright ? "" : " at screen 0, screen 1");
  set(upright ? "cblabel" : "label", of, upright ? "" : " at screen 1, screen 1 right");
}

void AddRange(std::string& script, char axis, double from, double to) {
  if (!(std::isfinite(from) && std::isfinite(to)) || from == to) return;
  script += std::string("set ") + axis + "range [";
  AddNumber(script, from);
  script += " :";
  AddNumber(script, to);
  script += " ]\n";
}

void AddRanges(std::string& script, const Picture& picture) {
  std::array<Span, 2> spans;
  for (const PlottedCurve& curve : picture.curves) spans[0].Take(curve.x);
  if (picture.grid)
    for (std::size_t a = 0; a < 2; ++a)
      for (const auto& [from, to] : CellsOf(a == 0 ? picture.grid->x : picture.grid->y)) spans[a].Take({from, to});
  for (std::size_t a = 0; a < 2; ++a) {
    const char axis = a == 0 ? 'x' : 'y';
    if (const auto& range = picture.ranges[a])
      AddRange(script, axis, (*range)[0], (*range)[1]);
    else if (!(IsLog(picture, axis) && spans[a].low <= 0))
      AddRange(script, axis, spans[a].low, spans[a].high);
  }
}

// ------------------------------------------------------------ curves

Span SpanOf(const std::vector<double>& numbers) {
  Span span;
  span.Take(numbers);
  return span;
}

// Each curve above the one before it begins as far as the largest of them reaches.
std::string Stacked(std::string& script, const Picture& picture, std::size_t c) {
  if (c == 0) {
    double most = 0;
    for (const PlottedCurve& curve : picture.curves)
      most = std::max(most, SpanOf(curve.y).high - SpanOf(curve.y).low);
    script += "offset =";
    AddNumber(script, most);
    script += "\nset format y ''\n";
  }
  std::string y = "($2 -";
  AddNumber(y, SpanOf(picture.curves[c].y).low);
  return y + " + " + std::to_string(c) + " * offset)";
}

void AddCurves(std::string& script, const Picture& picture) {
  for (std::size_t c = 0; c < picture.curves.size(); ++c) {
    const PlottedCurve& curve = picture.curves[c];
    script += "$curve" + std::to_string(c + 1) + " << END\n";
    for (std::size_t k = 0; k < curve.x.size(); ++k) {
      AddNumber(script, curve.x[k]);
      AddNumber(script, curve.y[k]);
      script += '\n';
    }
    script += "END\n";
  }
  script += picture.curves.size() > 1 ? "set key\n" : "unset key\n";
  for (std::size_t c = 0; c < picture.curves.size(); ++c) {
    const std::string number = std::to_string(c + 1);
    const std::string y = picture.stack ? Stacked(script, picture, c) : "2";
    script.append(c == 0 ? "plot $curve" : "     $curve").append(number).append(" using 1:").append(y);
    script.append(" with lines linetype ")
        .append(number)
        .append(" title ")
        .append(InQuotes(picture.curves[c].name));
    script += c + 1 < picture.curves.size() ? ", \\\n" : "\n";
  }
}

// ------------------------------------------------------------ grids

std::size_t Nearest(const std::vector<double>& at, double to) {
  std::size_t nearest = 0;
  for (std::size_t k = 1; k < at.size(); ++k)
    if (std::fabs(at[k] - to) < std::fabs(at[nearest] - to)) nearest = k;
  return nearest;
}

std::vector<double> Evenly(const Span& span, int count) {
  std::vector<double> at(static_cast<std::size_t>(std::max(count, 2)));
  for (std::size_t k = 0; k < at.size(); ++k)
    at[k] = span.low + (static_cast<double>(k) + 0.5) * (span.high - span.low) / static_cast<double>(at.size());
  return at;
}

// What each character of a terminal shows: the sample nearest to it.
PlottedGrid ForCharacters(const Picture& picture, const Canvas& canvas) {
  const PlottedGrid& grid = *picture.grid;
  std::array<Span, 2> spans;
  for (std::size_t a = 0; a < 2; ++a)
    if (const auto& range = picture.ranges[a])
      spans[a].Take({(*range)[0], (*range)[1]});
    else
      for (const auto& [from, to] : CellsOf(a == 0 ? grid.x : grid.y)) spans[a].Take({from, to});
  PlottedGrid shown{Evenly(spans[0], canvas.columns - 20), Evenly(spans[1], canvas.rows - 5), {}};
  for (const double y : shown.y) {
    const std::size_t row = Nearest(grid.y, y) * grid.x.size();
    for (const double x : shown.x) shown.z.push_back(grid.z[row + Nearest(grid.x, x)]);
  }
  return shown;
}

void AddImage(std::string& script, const PlottedGrid& grid, bool log) {
  for (std::size_t j = 0, k = 0; j < grid.y.size(); ++j, script += '\n')
    for (std::size_t i = 0; i < grid.x.size(); ++i, ++k) {
      for (const double number : {grid.x[i], grid.y[j], log && !(grid.z[k] > 0) ? kNone : grid.z[k]})
        AddNumber(script, number);
      script += '\n';
    }
  script += "END\nplot $grid using 1:2:3 with image\n";
}

// Coordinates at uneven distances: a box for each sample.
void AddBoxes(std::string& script, const PlottedGrid& grid, bool log) {
  const auto xs = CellsOf(grid.x);
  const auto ys = CellsOf(grid.y);
  for (std::size_t j = 0, k = 0; j < ys.size(); ++j)
    for (std::size_t i = 0; i < xs.size(); ++i, ++k) {
      if (!std::isfinite(grid.z[k]) || (log && !(grid.z[k] > 0))) continue;
      for (const double number : {xs[i][0], xs[i][1], ys[j][0], ys[j][1], grid.z[k]}) AddNumber(script, number);
      script += '\n';
    }
  script +=
      "END\nplot $grid using (($1+$2)/2):(($3+$4)/2):1:2:3:4:5 with boxxyerror fillcolor palette "
      "fillstyle solid noborder\n";
}

void AddGrid(std::string& script, const Picture& picture, const Canvas& canvas) {
  const bool log = IsLog(picture, 'z');
  script +=
      std::string(
          "unset key\nset palette defined (0 '#440154', 1 '#3b528b', 2 '#21918c', 3 '#5ec962', 4 '#fde725')\n") +
      (log ? "set logscale cb\n" : "") + "$grid << END\n";
  if (canvas.columns > 0) return AddImage(script, ForCharacters(picture, canvas), log);
  const PlottedGrid& grid = *picture.grid;
  const bool even = IsEven(grid.x) && IsEven(grid.y) && !IsLog(picture, 'x') && !IsLog(picture, 'y');
  return even ? AddImage(script, grid, log) : AddBoxes(script, grid, log);
}

}  // namespace

std::string ScriptOf(const Picture& picture, const Canvas& canvas) {
  std::string script = "set encoding utf8\n";
  if (canvas.terminal.empty())
    script += "# set terminal pngcairo noenhanced size 1000,700\n# set output 'picture.png'\n";
  else
    script += "set terminal " + canvas.terminal + '\n';
  if (!canvas.output.empty()) script += "set output " + InQuotes(canvas.output) + '\n';
  AddTitles(script, picture, canvas);
  for (const char axis : {'x', 'y'})
    if (IsLog(picture, axis)) script += std::string("set logscale ") + axis + '\n';
  AddRanges(script, picture);
  if (picture.grid)
    AddGrid(script, picture, canvas);
  else
    AddCurves(script, picture);
  return script;
}

}  // namespace kem::tool
