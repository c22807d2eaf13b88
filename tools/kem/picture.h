// A picture of curves or of a grid as a script of gnuplot, with its data.
#pragma once

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace kem::tool {

struct PlottedCurve {
  std::string name;
  std::vector<double> x;
  std::vector<double> y;
};

// Values for each Y the X of it; coordinates in any order and at any distance.
struct PlottedGrid {
  std::vector<double> x;
  std::vector<double> y;
  std::vector<double> z;
};

struct Picture {
  std::string title;
  std::array<std::string, 3> labels;  // of X, Y and, of grids, the values
  std::vector<PlottedCurve> curves;
  std::optional<PlottedGrid> grid;  // or none, and curves
  bool stack = false;               // curves above each other
  std::string log;                  // axes with a logarithmic scale, of x, y and z; z are the values of curves, too
  std::array<std::optional<std::array<double, 2>>, 2> ranges;  // of X and Y, where asked for; any end first
};

// What draws it: a terminal of characters, or a terminal of gnuplot in its own words; nothing leaves the choice to
// whoever runs the script.
struct Canvas {
  std::string terminal;
  std::string output = {};  // file; empty for standard output
  int columns = 0;          // of characters; 0 for other ones
  int rows = 0;
};

std::string ScriptOf(const Picture& picture, const Canvas& canvas);

}  // namespace kem::tool
