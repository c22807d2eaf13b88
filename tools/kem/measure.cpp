// kem integrate, stats and histogram: numbers about records.
#include <algorithm>
#include <iostream>

#include "bounds.h"
#include "json.h"
#include "options.h"
#include "shape.h"
#include "text.h"
#include "transform.h"

namespace kem::tool {
namespace {

// A file's name, with the number of the item if there are several.
std::string NameOf(const Input& input) {
  return input.file + (input.IsOneOfSeveral() ? " item " + std::to_string(input.item) : "");
}

std::string Text(const Bounds& range) { return Shortest(range.from) + " to " + Shortest(range.to); }

// ------------------------------------------------------------ integrate

struct IntegrateOptions {
  BoundsOption x;
  BoundsOption y;
  bool absolute = false;
};

float IntegralOf(const PrnType& r, const IntegrateOptions& options) {
  const Bounds x = options.x.Or(XRange(r));
  const Bounds y = options.y.Or(YRange(r));
  return options.absolute ? r.AbsIntegral(x.from, x.to, y.from, y.to) : r.Integral(x.from, x.to, y.from, y.to);
}

// Outside the data the library would count triangles.
Problem CannotIntegrate(const PrnType& r, const IntegrateOptions& options) {
  if (!r.Is3D() && options.y.Given()) return kForGrids;
  Problem problem = CannotReach('X', XRange(r), options.x.Or(XRange(r)));
  if (problem.empty() && r.Is3D()) problem = CannotReach('Y', YRange(r), options.y.Or(YRange(r)));
  return problem;
}

int PrintIntegrals(const Selection& selection, const IntegrateOptions& options) {
  const bool named = selection.allItems || selection.files.size() > 1;
  return EachSelected(selection, "", [&](const Input& input) {
    if (!NoProblem(input, CannotIntegrate(*input.record, options))) return false;
    if (named) std::cout << NameOf(input) << '\t';
    std::cout << Shortest(IntegralOf(*input.record, options)) << '\n';
    return true;
  });
}

Problem Integrate(Record& record, const IntegrateOptions& options) {
  const bool bounds = options.x.Given() || options.y.Given();
  if (!record->Is3D())
    return bounds ? "is a curve, whose running integral takes no bounds; kem cut does"
                  : Become(record, record->RunningIntegral(), "has no samples");
  if (options.x.Given() == options.y.Given()) return "is a grid, which is integrated along either --x or --y";
  const auto [from, to] = (options.x.Given() ? options.x : options.y).at;
  const Titles titles(*record);
  PrnType& profile = options.x.Given() ? record->IntegrateX(from, to) : record->IntegrateY(from, to);
  SetTitles(profile, options.x.Given() ? titles.y : titles.x, titles.z);
  return Become(record, profile, "has no samples within the bounds");
}

// ------------------------------------------------------------ stats

struct Extreme {
  float value = 0;
  float x = 0;
  float y = 0;
};

// The exact coordinate of a sample that the library found at the sum of its steps.
void MakeExact(float& at, const std::vector<float>& found, const std::vector<float>& exact) {
  const auto sample = std::find(found.begin(), found.end(), at);
  if (sample != found.end()) at = exact[static_cast<std::size_t>(sample - found.begin())];
}

struct Statistics {
  Extreme least;
  Extreme greatest;
  float noise;
  float integral;

  explicit Statistics(const PrnType& r) : noise(r.NoiseLevel()), integral(IntegralOf(r, {})) {
    const Bounds all;
    if (r.Is3D())
      r.MinMaxZ(all.from, all.to, all.from, all.to, least.value, greatest.value, least.x, least.y, greatest.x,
                greatest.y);
    else
      r.MinMaxY(all.from, all.to, least.value, greatest.value, least.x, greatest.x);
    for (Extreme* extreme : {&least, &greatest}) {
      MakeExact(extreme->x, XOfOperations(r), XCoordinates(r));
      if (r.Is3D()) MakeExact(extreme->y, YOfOperations(r), YCoordinates(r));
    }
  }
};

Json RangeJson(const Bounds& range) { return {{"start", Number(range.from)}, {"end", Number(range.to)}}; }

Json ExtremeJson(const Extreme& extreme, bool grid) {
  Json json = {{"value", Number(extreme.value)}, {"x", Number(extreme.x)}};
  if (grid) json["y"] = Number(extreme.y);
  return json;
}

Json StatisticsJson(const Input& input) {
  const PrnType& r = *input.record;
  const Statistics statistics(r);
  const bool grid = r.Is3D() != 0;
  Json json = {{"file", Utf8(input.file)},
               {"item", input.item},
               {"shape", grid ? "grid" : "curve"},
               {"points", grid ? Json{r.nX, r.nY} : Json{r.nY}},
               {"x", RangeJson(XRange(r))}};
  if (grid) json["y"] = RangeJson(YRange(r));
  json["min"] = ExtremeJson(statistics.least, grid);
  json["max"] = ExtremeJson(statistics.greatest, grid);
  json["noise"] = Number(statistics.noise);
  json["integral"] = Number(statistics.integral);
  return json;
}

std::string Text(const Extreme& extreme, bool grid) {
  return Shortest(extreme.value) + " at " + Shortest(extreme.x) + (grid ? ", " + Shortest(extreme.y) : "");
}

void PrintStatistics(const Input& input) {
  const PrnType& r = *input.record;
  const Statistics statistics(r);
  const bool grid = r.Is3D() != 0;
  std::cout << NameOf(input) << ": " << ShapeOf(r) << "\n  X         " << Text(XRange(r));
  if (grid) std::cout << "\n  Y         " << Text(YRange(r));
  std::cout << "\n  least     " << Text(statistics.least, grid)     //
            << "\n  greatest  " << Text(statistics.greatest, grid)  //
            << "\n  noise     " << Shortest(statistics.noise)       //
            << "\n  integral  " << Shortest(statistics.integral) << '\n';
}

int PrintAllStatistics(const Selection& selection, bool asJson) {
  Json document = Json::array();
  const int status = EachSelected(selection, "", [&](const Input& input) {
    if (asJson)
      document.push_back(StatisticsJson(input));
    else
      PrintStatistics(input);
    return true;
  });
  if (asJson) std::cout << document.dump(2) << '\n';
  return status;
}

// ------------------------------------------------------------ histogram

struct HistogramOptions {
  Selection selection;
  int bins = 20;
  bool csv = false;
};

void PrintHistogram(const Input& input, const HistogramOptions& options) {
  std::vector<float> counts(static_cast<std::size_t>(options.bins));
  Bounds range;
  input.record->Histogram(options.bins, counts.data(), range.from, range.to);
  const auto edge = [&](std::size_t k) {
    const float part = static_cast<float>(k) / static_cast<float>(counts.size());
    return k == counts.size() ? range.to : range.from + part * (range.to - range.from);
  };
  if (!options.csv) std::cout << NameOf(input) << ": " << Text(range) << '\n';
  const std::string start = options.csv ? CsvText(NameOf(input)) + ',' : "";
  const char separator = options.csv ? ',' : '\t';
  for (std::size_t k = 0; k < counts.size(); ++k)
    std::cout << start << Shortest(edge(k)) << separator << Shortest(edge(k + 1)) << separator
              << static_cast<long long>(counts[k]) << '\n';
}

}  // namespace

Run DefineIntegrate(CLI::App& app) {
  auto options = std::make_shared<IntegrateOptions>();
  AddBounds(app, 'x', options->x, "Integrate over this part of X (default all)");
  AddBounds(app, 'y', options->y, "Integrate over this part of Y, for grids (default all)");
  CLI::Option* absolute = app.add_flag("--absolute", options->absolute, "Add areas below 0 too");
  auto task = AddTask(app);
  for (const char* output : {"--output", "--dir", "--to"}) absolute->excludes(app.get_option(output));
  return [&app, task, options] {
    if (!task->output.IsAsked()) return PrintIntegrals(task->selection, *options);
    return Transform(app, *task, [&](Record& record) { return Integrate(record, *options); });
  };
}

Run DefineStats(CLI::App& app) {
  auto selection = std::make_shared<Selection>();
  auto asJson = std::make_shared<bool>(false);
  AddSelection(app, *selection);
  app.add_flag("-j,--json", *asJson, "Print one JSON document, a list with one object per record");
  return [selection, asJson] { return PrintAllStatistics(*selection, *asJson); };
}

Run DefineHistogram(CLI::App& app) {
  auto options = std::make_shared<HistogramOptions>();
  app.add_option("-b,--bins", options->bins, "Number of equal parts of the range of the values (default 20)")
      ->type_name("N")
      ->check(WholeNumber(2, 1000000));
  app.add_flag("-c,--csv", options->csv, "Print comma-separated values");
  AddSelection(app, options->selection);
  return [options] {
    if (options->csv) std::cout << "File,From,To,Count\n";
    return EachSelected(options->selection, "", [&](const Input& input) {
      PrintHistogram(input, *options);
      return true;
    });
  };
}

}  // namespace kem::tool
