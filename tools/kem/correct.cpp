// kem median, smooth, diff, baseline and slant: other values on the same axes.
#include "bounds.h"
#include "options.h"
#include "shape.h"
#include "text.h"
#include "transform.h"

namespace kem::tool {
namespace {

// ------------------------------------------------------------ filters

constexpr const char* kTooShort = "has too few samples for this filter";

void AddAlong(CLI::App& app, std::string& along) {
  app.add_option("-l,--along", along, "Axis to go along, x or y (default x)")
      ->type_name("AXIS")
      ->check(OneOf({"x", "y"}));
}

CLI::Option* AddWidth(CLI::App& app, int& width, const char* help) {
  return app.add_option("-w,--width", width, help)->type_name("N")->required();
}

struct FilterOptions {
  int width = 0;
  std::string along = "x";

  bool AlongY() const { return along == "y"; }
};

Problem Smooth(Record& record, const FilterOptions& options) {
  if (options.AlongY() && !record->Is3D()) return kForGrids;
  const int width = options.width;
  return Become(record, options.AlongY() ? record->YSmooth(width) : record->XSmooth(width), kTooShort);
}

Problem Differentiate(Record& record, const FilterOptions& options) {
  if (options.AlongY() && !record->Is3D()) return kForGrids;
  return Become(record, options.AlongY() ? record->YDiff() : record->XDiff(), kTooShort);
}

// ------------------------------------------------------------ linear corrections

// Why the library would leave a record as it is.
Problem CannotSpan(char axis, const Bounds& range, const Bounds& at) {
  if (range.from > range.to) return std::string("its ") + axis + " axis descends; kem sort turns it round";
  if (at.from == at.to) return "the two coordinates are the same";
  return CannotReach(axis, range, at);
}

struct BaselineOptions {
  BoundsOption x;
  BoundsOption y;
};

Problem SubtractBaseline(Record& record, const BaselineOptions& options) {
  PrnType& r = *record;
  const bool alongX = options.x.Given();
  if (!alongX && !r.Is3D()) return kForGrids;
  const auto [from, to] = (alongX ? options.x : options.y).at;
  Problem problem = alongX ? CannotSpan('X', XRange(r), {from, to}) : CannotSpan('Y', YRange(r), {from, to});
  if (problem.empty()) alongX ? r.SubLinBackX(from, to) : r.SubLinBackY(from, to);
  return problem;
}

using Targets = std::array<float, 4>;  // X1 VALUE1 X2 VALUE2

Problem Slant(Record& record, const Targets& targets) {
  const auto [x1, target1, x2, target2] = targets;
  if (record->Is3D()) return "is a grid, and only curves are slanted";
  if (Problem problem = CannotSpan('X', XRange(*record), {x1, x2}); !problem.empty()) return problem;
  for (const float x : {x1, x2})
    if (record->At(x, 0) == 0) return "is 0 at " + Shortest(x) + ", which no factor changes";
  record->Slant(x1, target1, x2, target2);
  return {};
}

}  // namespace

Run DefineMedian(CLI::App& app) {
  auto width = std::make_shared<int>(0);
  AddWidth(app, *width, "Samples in the span; an even number is raised by one")->check(WholeNumber(2, 1000000));
  return DefineTransform(app, [width](Record& record) {
    return Become(record, record->Is3D() ? record->Median3D(*width) : record->Median2D(*width), "has no median");
  });
}

Run DefineSmooth(CLI::App& app) {
  auto options = std::make_shared<FilterOptions>();
  AddWidth(app, options->width, "Samples in the filter: 5, 7, 9, 13, 17 or 21")
      ->check(OneOf({"5", "7", "9", "13", "17", "21"}));
  AddAlong(app, options->along);
  return DefineTransform(app, [options](Record& record) { return Smooth(record, *options); });
}

Run DefineDiff(CLI::App& app) {
  auto options = std::make_shared<FilterOptions>();
  AddAlong(app, options->along);
  return DefineTransform(app, [options](Record& record) { return Differentiate(record, *options); });
}

Run DefineBaseline(CLI::App& app) {
  auto options = std::make_shared<BaselineOptions>();
  AddBounds(app, 'x', options->x, "X coordinates of the two points, of a grid for every Y by itself");
  AddBounds(app, 'y', options->y, "Y coordinates of the two points, for every X of a grid");
  RequireOne(app, options->x.option, options->y.option);
  return DefineTransform(app, [options](Record& record) { return SubtractBaseline(record, *options); });
}

Run DefineSlant(CLI::App& app) {
  auto targets = std::make_shared<Targets>();
  app.add_option("-p,--points", *targets, "Two abscissae, and the value that the result has at each")
      ->type_name("X1 VALUE1 X2 VALUE2")
      ->check(FiniteNumber())
      ->required();
  return DefineTransform(app, [targets](Record& record) { return Slant(record, *targets); });
}

}  // namespace kem::tool
