// kem value, integrate, stats and histogram: numbers about records.
#include <algorithm>
#include <cmath>
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

// From the first to the last sample of an axis.
Bounds Ends(const std::vector<float>& axis) {
  if (axis.empty()) return {0, 0};
  const auto [low, high] = std::minmax_element(axis.begin(), axis.end());
  return axis.front() > axis.back() ? Bounds{*high, *low} : Bounds{*low, *high};
}

// The part of records that is measured.
struct Area {
  BoundsOption x;
  BoundsOption y;

  Bounds XOf(const PrnType& r) const { return On(Ends(XCoordinates(r)), x); }
  Bounds YOf(const PrnType& r) const { return On(Ends(YCoordinates(r)), y); }
  static Bounds On(const Bounds& ends, const BoundsOption& bounds) { return Within(ends, bounds.Or(ends)); }
  bool Given() const { return x.Given() || y.Given(); }
};

void AddArea(CLI::App& app, Area& area, const std::string& does) {
  AddBounds(app, 'x', area.x, (does + " this part of X (default all)").c_str());
  AddBounds(app, 'y', area.y, (does + " this part of Y, for grids (default all)").c_str());
}

// Outside the data the library would count triangles: bounds beyond an end mean that end, as kem cut takes them. It
// is told where they are numbers.
Problem CannotTake(const Input& input, char axis, const Bounds& ends, const BoundsOption& option) {
  const Bounds bounds = option.Or(ends);
  const auto [first, last] = std::minmax(bounds.from, bounds.to);
  const auto [low, high] = std::minmax(ends.from, ends.to);
  Problem problem = CannotReach(axis, ends, bounds);
  if (problem.empty() || !(first <= high && low <= last)) return problem;
  if ((first < low && std::isfinite(first)) || (last > high && std::isfinite(last)))
    Tell(input.file, problem + "; " + Text(Within(ends, bounds)) + " is taken");
  return {};
}

Problem CannotMeasure(const Input& input, const Area& area) {
  const PrnType& r = *input.record;
  if (!r.Is3D() && area.y.Given()) return kForGrids;
  Problem problem = CannotTake(input, 'X', Ends(XCoordinates(r)), area.x);
  if (problem.empty() && r.Is3D()) problem = CannotTake(input, 'Y', Ends(YCoordinates(r)), area.y);
  return problem;
}

// Prints the documents of records as one list, or lets them print themselves.
class Documents {
 public:
  explicit Documents(bool wanted) : wanted_(wanted) {}
  bool Wanted() const { return wanted_; }
  // What begins every document of a record.
  Json& Add(const Input& input) {
    return list_.emplace_back(Json{{"file", Utf8(input.file)}, {"item", input.item}});
  }
  int Print(int status) const {
    if (wanted_) std::cout << list_.dump(2) << '\n';
    return status;
  }

 private:
  bool wanted_;
  Json list_ = Json::array();
};

CLI::Option* AddJsonList(CLI::App& app, bool& json) {
  return app.add_flag("-j,--json", json, "Print one JSON document, a list with one object per record");
}

// A number that is printed of every record selected.
struct Measure {
  const char* name;
  std::function<Problem(const Input&)> cannot;
  std::function<float(PrnType&)> number;
  std::function<void(const Input&, Json&)> describe;  // what it was taken of
};

// Where there are several records each number stands behind its name.
int PrintEach(const Selection& selection, const Measure& measure, bool json) {
  const bool named = selection.allItems || !selection.files.IsOne();
  Documents documents(json);
  return documents.Print(EachSelected(selection, {}, [&](const Input& input) {
    if (!NoProblem(input, measure.cannot(input))) return false;
    const float number = measure.number(*input.record);
    if (json) {
      Json& document = documents.Add(input);
      measure.describe(input, document);
      document[measure.name] = Number(number);
      return true;
    }
    if (named) std::cout << NameOf(input) << '\t';
    std::cout << Shortest(number) << '\n';
    return true;
  }));
}

// The unit of an axis of a record, or of its values; empty where the file names none or is read as hosts do.
std::string UnitOf(const Input& input, char of) {
  if (!input.dataset) return {};
  const Dataset& d = *input.dataset;
  return of == 'x' ? d.axes.back().unit : of == 'y' ? d.axes.front().unit : d.unit;
}

Json RangeJson(const Bounds& range, const std::string& unit) {
  return {{"start", Number(range.from)}, {"end", Number(range.to)}, {"unit", unit}};
}

void DescribeArea(const Input& input, const Area& area, Json& document) {
  document["x"] = RangeJson(area.XOf(*input.record), UnitOf(input, 'x'));
  if (input.record->Is3D()) document["y"] = RangeJson(area.YOf(*input.record), UnitOf(input, 'y'));
}

// ------------------------------------------------------------ integrate

struct IntegrateOptions {
  Area area;
  bool absolute = false;
};

// Stores a linear axis so that it begins at 0: there single precision is finest, and the integral is the same.
// Returns the bounds on it.
Bounds MoveToZero(PrnType& r, const LinearAxis& axis, const BoundsOption& bounds,
                  void (*store)(PrnType&, const std::vector<float>&)) {
  const LinearAxis moved{0, static_cast<float>(axis.Last() - axis.start), axis.step, axis.points};
  store(r, moved.Coordinates());
  const Bounds ends = Ends(moved.Coordinates());
  return bounds.Given() ? Within(ends, {bounds.at[0] - axis.start, bounds.at[1] - axis.start}) : ends;
}

float IntegralOf(const PrnType& record, const IntegrateOptions& options) {
  PrnType r(record);
  const auto& [x, y] = options.area;
  const Bounds xs = r.HasX() ? options.area.XOf(r) : MoveToZero(r, XAxis(r), x, StoreX);
  const Bounds ys = r.HasY() ? options.area.YOf(r) : MoveToZero(r, YAxis(r), y, StoreY);
  return options.absolute ? r.AbsIntegral(xs.from, xs.to, ys.from, ys.to)
                          : r.Integral(xs.from, xs.to, ys.from, ys.to);
}

Problem Integrate(Record& record, const IntegrateOptions& options) {
  const auto& [x, y] = options.area;
  if (!record->Is3D())
    return options.area.Given() ? "is a curve, whose running integral takes no bounds; kem cut does"
                                : Become(record, record->RunningIntegral(), "has no samples");
  if (x.Given() == y.Given()) return "is a grid, which is integrated along either --x or --y";
  const auto [from, to] = (x.Given() ? x : y).at;
  const Titles titles(*record);
  PrnType& profile = x.Given() ? record->IntegrateX(from, to) : record->IntegrateY(from, to);
  SetTitles(profile, x.Given() ? titles.y : titles.x, titles.z);
  return Become(record, profile, "has no samples within the bounds");
}

// ------------------------------------------------------------ value

struct Place {
  float x = 0;
  float y = 0;
  CLI::Option* givesY = nullptr;
  bool nearest = false;
};

Problem HasNone(const PrnType& r, const Place& place) {
  const bool grid = r.Is3D() != 0;
  if (grid != (place.givesY->count() > 0)) return grid ? "is a grid, and needs --y too" : kForGrids;
  Problem problem = CannotReach('X', Ends(XCoordinates(r)), {place.x, place.x});
  if (problem.empty() && grid) problem = CannotReach('Y', Ends(YCoordinates(r)), {place.y, place.y});
  return problem;
}

// ------------------------------------------------------------ stats

struct Extreme {
  float value = 0;
  float x = 0;
  float y = 0;
};

// A mean difference of neighbours: between the values of a grid it is noise, between the abscissae of a curve their
// spacing.
const char* NameOfDifference(const PrnType& r) { return r.Is3D() ? "noise" : "spacing"; }

struct Statistics {
  Bounds x;
  Bounds y;
  Extreme least;
  Extreme greatest;
  float difference;
  float integral;

  Statistics(PrnType& r, const Area& area)
      : x(area.XOf(r)), y(area.YOf(r)), difference(r.NoiseLevel()), integral(IntegralOf(r, {area})) {
    StoreAxes(r);
    const auto [x1, x2] = std::minmax(x.from, x.to);
    const auto [y1, y2] = std::minmax(y.from, y.to);
    if (r.Is3D())
      r.MinMaxZ(x1, x2, y1, y2, least.value, greatest.value, least.x, least.y, greatest.x, greatest.y);
    else
      r.MinMaxY(x1, x2, least.value, greatest.value, least.x, greatest.x);
    if (area.Given()) difference = Record(&r.Cut(x1, x2, y1, y2))->NoiseLevel();
  }
};

Problem HasNoStatistics(const Input& input, const Area& area) {
  if (Problem problem = CannotMeasure(input, area); !problem.empty()) return problem;
  const PrnType& r = *input.record;
  const bool any =
      HoldAnyOf(area.XOf(r), XCoordinates(r)) && (!r.Is3D() || HoldAnyOf(area.YOf(r), YCoordinates(r)));
  return any || !area.Given() ? "" : "has no samples within the bounds";
}

Json ExtremeJson(const Extreme& extreme, bool grid) {
  Json json = {{"value", Number(extreme.value)}, {"x", Number(extreme.x)}};
  if (grid) json["y"] = Number(extreme.y);
  return json;
}

void DescribeStatistics(const Input& input, const Statistics& statistics, const Area& area, Json& json) {
  const PrnType& r = *input.record;
  const bool grid = r.Is3D() != 0;
  json["shape"] = grid ? "grid" : "curve";
  json["points"] = grid ? Json{r.nX, r.nY} : Json{r.nY};
  DescribeArea(input, area, json);
  json["unit"] = UnitOf(input, 'z');
  json["min"] = ExtremeJson(statistics.least, grid);
  json["max"] = ExtremeJson(statistics.greatest, grid);
  json[NameOfDifference(r)] = Number(statistics.difference);
  json["integral"] = Number(statistics.integral);
}

std::string Behind(const std::string& unit) { return unit.empty() ? "" : ' ' + unit; }

std::string Text(const Extreme& extreme, bool grid) {
  return Shortest(extreme.value) + " at " + Shortest(extreme.x) + (grid ? ", " + Shortest(extreme.y) : "");
}

void PrintStatistics(const Input& input, const Statistics& statistics) {
  const PrnType& r = *input.record;
  const bool grid = r.Is3D() != 0;
  const std::vector<std::pair<std::string, std::string>> lines = {
      {"X", Text(statistics.x) + Behind(UnitOf(input, 'x'))},
      {grid ? "Y" : "", Text(statistics.y) + Behind(UnitOf(input, 'y'))},
      {"least", Text(statistics.least, grid)},
      {"greatest", Text(statistics.greatest, grid)},
      {NameOfDifference(r), Shortest(statistics.difference)},
      {"integral", Shortest(statistics.integral)},
  };
  std::cout << NameOf(input) << ": " << ShapeOf(r) << '\n';
  for (const auto& [name, text] : lines)
    if (!name.empty()) std::cout << "  " << name << std::string(10 - name.size(), ' ') << Printable{text} << '\n';
}

int PrintAllStatistics(const Selection& selection, const Area& area, bool json) {
  Documents documents(json);
  return documents.Print(EachSelected(selection, {}, [&](const Input& input) {
    if (!NoProblem(input, HasNoStatistics(input, area))) return false;
    const Statistics statistics(*input.record, area);
    if (json)
      DescribeStatistics(input, statistics, area, documents.Add(input));
    else
      PrintStatistics(input, statistics);
    return true;
  }));
}

// ------------------------------------------------------------ histogram

struct HistogramOptions {
  Selection selection;
  int bins = 20;
  bool csv = false;
};

void PrintHistogram(const Input& input, const HistogramOptions& options, Documents& documents) {
  std::vector<float> counts(static_cast<std::size_t>(options.bins));
  Bounds range;
  input.record->Histogram(options.bins, counts.data(), range.from, range.to);
  if (documents.Wanted()) {
    Json& document = documents.Add(input);
    document["values"] = RangeJson(range, UnitOf(input, 'z'));
    document["counts"] = std::vector<long long>(counts.begin(), counts.end());
    return;
  }
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
  auto json = std::make_shared<bool>(false);
  AddArea(app, options->area, "Integrate over");
  CLI::Option* absolute = app.add_flag("--absolute", options->absolute, "Add areas below 0 too");
  auto task = AddTask(app);
  CLI::Option* list = AddJsonList(app, *json);
  for (const char* output : {"--output", "--dir", "--to"}) {
    absolute->excludes(app.get_option(output));
    list->excludes(app.get_option(output));
  }
  return [&app, task, options, json] {
    if (task->output.IsAsked())
      return Transform(app, *task, [&](Record& record) { return Integrate(record, *options); });
    const Area& area = options->area;
    const Measure measure{"integral", [&](const Input& input) { return CannotMeasure(input, area); },
                          [&](const PrnType& r) { return IntegralOf(r, *options); },
                          [&](const Input& input, Json& document) { DescribeArea(input, area, document); }};
    return PrintEach(task->selection, measure, *json);
  };
}

Run DefineValue(CLI::App& app) {
  auto selection = std::make_shared<Selection>();
  auto place = std::make_shared<Place>();
  auto json = std::make_shared<bool>(false);
  app.add_option("-x,--x", place->x, "X coordinate")->type_name("X")->check(FiniteNumber())->required();
  place->givesY = app.add_option("-y,--y", place->y, "Y coordinate, for grids (required there)")
                      ->type_name("Y")
                      ->check(FiniteNumber());
  app.add_flag("-n,--nearest", place->nearest, "The value of the nearest sample, not one between samples");
  AddSelection(app, *selection);
  AddJsonList(app, *json);
  return [selection, place, json] {
    const Measure measure{
        "value", [&](const Input& input) { return HasNone(*input.record, *place); },
        [&](const PrnType& r) { return place->nearest ? r.Nearest(place->x, place->y) : r.At(place->x, place->y); },
        [&](const Input& input, Json& document) {
          document["x"] = Number(place->x);
          if (input.record->Is3D()) document["y"] = Number(place->y);
          document["unit"] = UnitOf(input, 'z');
        }};
    return PrintEach(*selection, measure, *json);
  };
}

Run DefineStats(CLI::App& app) {
  auto selection = std::make_shared<Selection>();
  auto area = std::make_shared<Area>();
  auto json = std::make_shared<bool>(false);
  AddArea(app, *area, "Look at");
  AddSelection(app, *selection);
  AddJsonList(app, *json);
  return [selection, area, json] { return PrintAllStatistics(*selection, *area, *json); };
}

Run DefineHistogram(CLI::App& app) {
  auto options = std::make_shared<HistogramOptions>();
  auto json = std::make_shared<bool>(false);
  app.add_option("-b,--bins", options->bins, "Number of equal parts of the range of the values (default 20)")
      ->type_name("N")
      ->check(WholeNumber(2, 1000000));
  CLI::Option* csv = app.add_flag("-c,--csv", options->csv, "Print comma-separated values");
  AddSelection(app, options->selection);
  AddJsonList(app, *json)->excludes(csv);
  return [options, json] {
    if (options->csv) std::cout << "File,From,To,Count\n";
    Documents documents(*json);
    return documents.Print(EachSelected(options->selection, {}, [&](const Input& input) {
      PrintHistogram(input, *options, documents);
      return true;
    }));
  };
}

}  // namespace kem::tool
