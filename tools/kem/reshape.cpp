// kem slice, cut, reduce, resample, axis, swap and sort: other axes, the same values.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <sstream>
#include <string_view>
#include <utility>

#include "bounds.h"
#include "options.h"
#include "shape.h"
#include "transform.h"

namespace kem::tool {
namespace {

// ------------------------------------------------------------ slice

struct SliceOptions {
  BoundsOption x;
  BoundsOption y;
  bool mean = false;
};

Problem Slice(Record& record, const SliceOptions& options) {
  if (!record->Is3D()) return "is a curve, and only grids have slices";
  const bool alongX = options.y.Given();
  const Bounds band = (alongX ? options.y : options.x).Or({});
  if (!HoldAnyOf(band, alongX ? YOfOperations(*record) : XOfOperations(*record)))
    return "has no samples within the bounds";
  const Titles titles(*record);
  PrnType& slice =
      alongX ? record->XSlice(band.from, band.to, options.mean) : record->YSlice(band.from, band.to, options.mean);
  SetTitles(slice, alongX ? titles.x : titles.y, titles.z);
  return Become(record, slice, "gives no slice");
}

// ------------------------------------------------------------ cut, reduce

struct CutOptions {
  BoundsOption x;
  BoundsOption y;
};

struct ReduceOptions {
  int x = 1;
  int y = 1;
};

Problem Cut(Record& record, const CutOptions& options) {
  if (options.y.Given() && !record->Is3D()) return kForGrids;
  const Bounds x = options.x.Or({});
  const Bounds y = options.y.Or({});
  return Become(record, record->Cut(x.from, x.to, y.from, y.to), "has no samples within the bounds");
}

// ------------------------------------------------------------ resample

struct EvenAxis {
  std::array<float, 3> numbers = {};
  CLI::Option* option = nullptr;

  float From() const { return numbers[0]; }
  float To() const { return numbers[1]; }
  // Leads towards the end, whatever its sign.
  float Step() const { return std::copysign(numbers[2], To() - From()); }
};

struct ResampleOptions {
  EvenAxis x;
  EvenAxis y;
  std::string like;
};

void AddAxis(CLI::App& app, const char* name, EvenAxis& axis, const char* help) {
  axis.option = app.add_option(name, axis.numbers, help)->type_name("FROM TO STEP")->check(FiniteNumber());
}

// What the library resamples has lost its titles and parameters.
Problem BecomeResampled(Record& record, PrnType& result) {
  result.CopyHeader(*record);
  return Become(record, result, "cannot be resampled");
}

Problem ResampleEvenly(Record& record, const EvenAxis& x, const EvenAxis& y) {
  const bool grid = record->Is3D() != 0;
  if (grid != (y.option->count() > 0)) return grid ? "is a grid, and needs --y too" : kForGrids;
  if (x.Step() == 0 || (grid && y.Step() == 0)) return "cannot be resampled in steps of 0";
  return BecomeResampled(record, grid ? record->InterpolateZ(x.From(), x.To(), x.Step(), y.From(), y.To(), y.Step())
                                      : record->InterpolateY(x.From(), x.To(), x.Step()));
}

Problem ResampleLike(Record& record, const PrnType& other) {
  if ((record->Is3D() == 0) != (other.Is3D() == 0))
    return "is a " + ShapeOf(*record) + ", unlike " + other.fileName + ", a " + ShapeOf(other);
  auto x = XOfOperations(other);
  auto y = YOfOperations(other);
  const int nX = static_cast<int>(x.size());
  const int nY = static_cast<int>(y.size());
  return BecomeResampled(record, record->Is3D() ? record->InterpolateXYZ(x.data(), nX, y.data(), nY)
                                                : record->InterpolateXY(x.data(), nX));
}

int Resample(const CLI::App& app, Task& task, const ResampleOptions& options) {
  Record other;
  if (!options.like.empty()) {
    const auto [file, item] = ItemNamed(options.like);
    Input input = LoadItem(file, std::max(item, 1));
    if (!NoProblem(file, input.problem)) return kFailed;
    other = std::move(input.record);
  }
  return Transform(app, task, [&](Record& record) {
    return other ? ResampleLike(record, *other) : ResampleEvenly(record, options.x, options.y);
  });
}

// ------------------------------------------------------------ axis

// Those that stand in front of a number, and those that stand alone.
constexpr std::string_view kAxisOperators = "+-*/^";
constexpr std::string_view kAxisFunctions[] = {"s",    "inv",  "exp",   "log",   "ln",   "sin",
                                               "cos",  "tan",  "asin",  "acos",  "atan", "sinh",
                                               "cosh", "tanh", "asinh", "acosh", "atanh"};

struct AxisChange {
  std::string operation;
  float value = 0;

  explicit AxisChange(const std::string& text) : operation(text) {
    if (text.empty() || kAxisOperators.find(text.front()) == kAxisOperators.npos) return;
    operation.resize(1);
    value = NumberIn(text.substr(1));
  }

  // Dividing by 0 would make every coordinate 0.
  bool IsKnown() const {
    if (std::find(std::begin(kAxisFunctions), std::end(kAxisFunctions), operation) != std::end(kAxisFunctions))
      return true;
    return operation.size() == 1 && std::isfinite(value) && (operation != "/" || value != 0);
  }

  bool KeepsSteps() const { return operation == "+" || operation == "-" || operation == "s"; }
};

struct AxisOptions {
  std::string x;
  std::string y;
};

Problem ChangeAxis(Record& record, char axis, const std::string& text) {
  if (text.empty()) return {};
  if (axis == 'y' && !record->Is3D()) return kForGrids;
  AxisChange change(text);
  if (!change.KeepsSteps() && axis == 'x' && !record->HasX()) StoreX(*record, XCoordinates(*record));
  if (!change.KeepsSteps() && axis == 'y' && !record->HasY()) StoreY(*record, YCoordinates(*record));
  record = std::make_unique<PrnType>(record->AxisOp(axis, change.operation.data(), change.value));
  const auto at = axis == 'x' ? XCoordinates(*record) : YCoordinates(*record);
  const bool finite = std::all_of(at.begin(), at.end(), [](float c) { return std::isfinite(c); });
  return finite ? "" : std::string("gets ") + axis + " coordinates that are not finite";
}

CLI::Option* AddAxisChange(CLI::App& app, const char* name, std::string& text) {
  return app.add_option(name, text, "What to do to the coordinates: -3480, *2, /2, ^2, inv, log, ...")
      ->type_name("OPERATION")
      ->check(Needed("an operation such as -3480, *2 or inv",
                     [](const std::string& operation) { return AxisChange(operation).IsKnown(); }));
}

// ------------------------------------------------------------ swap

// A record of no instrument, with the same titles and, of a grid, comment.
void MakePlain(PrnType& r) {
  const Titles titles(r);
  std::string comment(2 * sizeof r.headerArea, '\0');
  r.CommentBlock(comment.data(), static_cast<int>(comment.size()));
  std::memset(&r.headerArea, 0, sizeof r.headerArea);
  r.fileType = r.Is3D() ? FileP3D : FileXY;
  SetTitles(r, titles.x, titles.y);
  std::istringstream lines(comment.c_str());
  if (!r.Is3D()) return;
  std::snprintf(r.zLabel, sizeof r.zLabel, "%s", titles.z);
  for (auto& line : r.commentLines) lines.getline(line, sizeof line);
}

Problem Swap(Record& record) {
  const bool plain = record->fileType == FileXY || record->fileType == FileP3D;
  if (!plain) MakePlain(*record);
  record->SwapXY();
  std::swap(record->xLabel, record->yLabel);
  return {};
}

}  // namespace

Run DefineSlice(CLI::App& app) {
  auto options = std::make_shared<SliceOptions>();
  AddBounds(app, 'x', options->x, "Slice along Y through this band of X");
  AddBounds(app, 'y', options->y, "Slice along X through this band of Y");
  RequireOne(app, options->x.option, options->y.option);
  app.add_flag("-m,--mean", options->mean, "Mean of the band instead of its sum");
  return DefineTransform(app, [options](Record& record) { return Slice(record, *options); });
}

Run DefineCut(CLI::App& app) {
  auto options = std::make_shared<CutOptions>();
  AddBounds(app, 'x', options->x, "Keep this part of X");
  AddBounds(app, 'y', options->y, "Keep this part of Y, for grids");
  RequireAny(app, options->x.option, options->y.option);
  return DefineTransform(app, [options](Record& record) { return Cut(record, *options); });
}

Run DefineReduce(CLI::App& app) {
  auto by = std::make_shared<ReduceOptions>();
  for (auto& [name, count] : {std::pair("-x,--x", &by->x), std::pair("-y,--y", &by->y)})
    app.add_option(name, *count, "Samples along this axis that become one (default 1)")
        ->type_name("N")
        ->check(WholeNumber(1, 1000000));
  return DefineTransform(app, [by](Record& record) {
    if (!record->Is3D() && by->y > 1) return Problem(kForGrids);
    return Become(record, record->Reduce(by->x, by->y), "has fewer samples than become one");
  });
}

Run DefineResample(CLI::App& app) {
  auto options = std::make_shared<ResampleOptions>();
  AddAxis(app, "-x,--x", options->x, "X coordinates of the result");
  AddAxis(app, "-y,--y", options->y, "Y coordinates of the result, for grids");
  CLI::Option* like = app.add_option("-l,--like", options->like, "Take the coordinates of this file")
                          ->type_name("FILE")
                          ->excludes(options->y.option);
  RequireOne(app, options->x.option, like);
  auto task = AddTask(app);
  return [&app, task, options] { return Resample(app, *task, *options); };
}

Run DefineAxis(CLI::App& app) {
  auto options = std::make_shared<AxisOptions>();
  CLI::Option* x = AddAxisChange(app, "-x,--x", options->x);
  CLI::Option* y = AddAxisChange(app, "-y,--y", options->y);
  RequireAny(app, x, y);
  return DefineTransform(app, [options](Record& record) {
    Problem problem = ChangeAxis(record, 'x', options->x);
    return problem.empty() ? ChangeAxis(record, 'y', options->y) : problem;
  });
}

Run DefineSwap(CLI::App& app) { return DefineTransform(app, Swap); }

Run DefineSort(CLI::App& app) {
  return DefineTransform(app, [](Record& record) {
    record->SortAxes();
    return Problem();
  });
}

}  // namespace kem::tool
