// kem plot: curves and grids as pictures, drawn by gnuplot.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <memory>

#include "bounds.h"
#include "describe.h"
#include "options.h"
#include "picture.h"
#include "source.h"
#include "system.h"
#include "text.h"
#include "transform.h"

namespace kem::tool {
namespace {

namespace fs = std::filesystem;

struct PlotOptions {
  Selection selection;
  Output output;
  std::string script;
  bool stack = false;
  std::vector<std::string> log;
  BoundsOption x;
  BoundsOption y;
};

// ------------------------------------------------------------ terminals

struct Drawing {
  const char* extension;
  const char* terminal;
};

constexpr Drawing kDrawings[] = {
    {".svg", "svg noenhanced size 1000,700 font 'sans,14' background rgb 'white'"},
    {".png", "pngcairo noenhanced size 1000,700 font 'sans,11'"},
    {".pdf", "pdfcairo noenhanced size 20cm,14cm font 'sans,11'"},
};

const Drawing* DrawingOf(const std::string& file) {
  const std::string extension = LowerCase(PathOf(file).extension().string());
  const auto* found = std::find_if(std::begin(kDrawings), std::end(kDrawings),
                                   [&extension](const Drawing& d) { return extension == d.extension; });
  return found == std::end(kDrawings) ? nullptr : found;
}

// The terminal that shows standard output, with a line left for the prompt.
Canvas Characters(bool grid) {
  const TerminalSize size = SizeOfTerminal(stdout);
  const int columns = std::clamp(size.columns, 40, 500);
  const int rows = std::clamp(size.rows - 1, 12, 300);
  const bool colours = grid || !std::getenv("NO_COLOR");  // a grid is nothing else
  return {"dumb nofeed noenhanced size " + std::to_string(columns) + ',' + std::to_string(rows) +
              (colours ? " ansi256" : " mono"),
          "", columns, rows};
}

// ------------------------------------------------------------ what is drawn

class Pictured {
 public:
  // Adds an item, or tells why it does not go with those before it.
  Problem Add(const Input& input) {
    const Dataset& d = *input.dataset;
    const bool grid = d.axes.size() == 2;
    if (count_ > 0 && (grid || picture_.grid)) return "one picture shows one grid or several curves";
    const std::string x = Named(d.axes.back().name, d.axes.back().unit);
    const std::string y = grid ? Named(d.axes.front().name, d.axes.front().unit) : Named(d.name, d.unit);
    if (count_ == 0) {
      picture_.title = d.title.empty() ? PathOf(input.file).filename().string() : d.title;
      picture_.labels = {x, y, Named(d.name, d.unit)};
      unit_ = d.axes.back().unit;
    } else {
      if (d.axes.back().unit != unit_)
        return "its X is in '" + d.axes.back().unit + "', that of the first in '" + unit_ + "'; --x-unit converts";
      picture_.title.clear();
      if (picture_.labels[0] != x) picture_.labels[0] = unit_;
      if (picture_.labels[1] != y) picture_.labels[1].clear();
    }
    ++count_;
    if (grid)
      picture_.grid = {d.axes[1].Coordinates(), d.axes[0].Coordinates(), NumbersOf(input, false)};
    else
      AddCurves(input);
    return {};
  }

  bool IsEmpty() const { return count_ == 0; }
  Picture& Get() { return picture_; }

 private:
  void AddCurves(const Input& input) {
    const Dataset& d = *input.dataset;
    const std::string item = input.IsOneOfSeveral() && !input.name.empty() ? ' ' + input.name : "";
    const std::string name = PathOf(input.file).stem().string() + item;
    const bool pairs = d.values.IsComplex() && !HowToRead().part;
    picture_.curves.push_back({name + (pairs ? " re" : ""), d.axes[0].Coordinates(), NumbersOf(input, false)});
    if (pairs) picture_.curves.push_back({name + " im", d.axes[0].Coordinates(), NumbersOf(input, true)});
  }

  int count_ = 0;
  std::string unit_;
  Picture picture_;
};

// ------------------------------------------------------------ drawing

// The first line of what gnuplot says that tells what is wrong.
std::string Sentence(const std::string& file) {
  std::ifstream in(PathOf(file), std::ios::binary);
  std::string line;
  while (std::getline(in, line))
    if (const auto at = line.find(": "); at != line.npos) return line.substr(at + 2);
  return "it failed";
}

// Lets gnuplot run a script; what it draws goes to a file that is there.
Problem Draw(const std::string& script, const std::string& output) {
  const TemporaryFile commands(TemporaryFolder());
  const TemporaryFile messages(TemporaryFolder());
  if (!commands.WhyNot().empty()) return "cannot be drawn: " + commands.WhyNot();
  if (Problem problem = WriteText(script, commands.Name()); !problem.empty()) return problem;
  const int status = RunProgram("gnuplot", {commands.Name(), output, messages.Name()});
  if (status == kNoProgram)
    return "cannot be drawn without gnuplot, Debian's package gnuplot-nox; --script writes what it would draw";
  return status == 0 ? "" : "cannot be drawn by gnuplot: " + Sentence(messages.Name());
}

// Pages begin with a form feed, which terminals show in many ways.
Problem Show(const Picture& picture) {
  const TemporaryFile shown(TemporaryFolder());
  if (!shown.WhyNot().empty()) return "the picture cannot be drawn: " + shown.WhyNot();
  if (Problem problem = Draw(ScriptOf(picture, Characters(picture.grid.has_value())), shown.Name());
      !problem.empty())
    return "the picture " + problem;
  std::ifstream in(PathOf(shown.Name()), std::ios::binary);
  for (char c; in.get(c);)
    if (c != '\f' && c != '\r') std::cout << c;
  std::cout << '\n';
  return {};
}

Problem Plot(const Picture& picture, PlotOptions& options) {
  const Drawing* drawing = DrawingOf(options.output.file);
  if (!options.script.empty()) {
    const Canvas canvas{drawing ? drawing->terminal : "", options.output.file};
    options.output.file = options.script;
    return SaveFile([&](const std::string& name) { return WriteText(ScriptOf(picture, canvas), name); },
                    options.output);
  }
  if (!drawing) return Show(picture);
  return SaveFile(
      [&](const std::string& name) { return Draw(ScriptOf(picture, {.terminal = drawing->terminal}), name); },
      options.output);
}

std::optional<std::array<double, 2>> RangeOf(const BoundsOption& bounds) {
  if (!bounds.Given()) return std::nullopt;
  return std::array<double, 2>{bounds.at[0], bounds.at[1]};
}

int PlotFiles(PlotOptions& options) {
  if (!options.output.file.empty() && !DrawingOf(options.output.file)) {
    Complain("plot: --output names a picture by .svg, .png or .pdf");
    return kMisused;
  }
  TakeComplexValues();
  Pictured pictured;
  const int status = EachSelected(options.selection, {},
                                  [&](const Input& input) { return NoProblem(input, pictured.Add(input)); });
  if (pictured.IsEmpty()) return status != 0 || NoProblem("plot", "there is nothing to draw") ? status : kFailed;
  Picture& picture = pictured.Get();
  picture.stack = options.stack;
  for (const std::string& axis : options.log) picture.log += axis;
  picture.ranges = {RangeOf(options.x), RangeOf(options.y)};
  return NoProblem("plot", Plot(picture, options)) ? status : kFailed;
}

}  // namespace

Run DefinePlot(CLI::App& app) {
  auto options = std::make_shared<PlotOptions>();
  AddSelection(app, options->selection);
  app.remove_option(app.get_option("--classic"));
  app.add_option("-o,--output", options->output.file,
                 "Draw into this file, .svg, .png or .pdf (default the terminal)")
      ->type_name("FILE");
  app.add_flag("-f,--force", options->output.force, "Overwrite an existing file");
  app.add_option("--script", options->script,
                 "Write the commands and data of gnuplot instead, to be changed by hand")
      ->type_name("FILE");
  app.add_flag("-s,--stack", options->stack, "Draw curves above each other");
  app.add_option("-l,--log", options->log, "A logarithmic scale for x, y or z, the values")
      ->type_name("AXIS")
      ->check(OneOf({"x", "y", "z"}))
      ->expected(1)
      ->take_all();
  AddBounds(app, 'x', options->x, "Draw this part of X; the first end is on the left");
  AddBounds(app, 'y', options->y, "Draw this part of Y; the first end is at the bottom");
  return [options] { return PlotFiles(*options); };
}

}  // namespace kem::tool
