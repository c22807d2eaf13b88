// Records in Python: their members under the names of Python, and NumPy's arrays.
#include <cstring>
#include <numeric>

#include "module.h"

namespace kem::python {
namespace {

constexpr Along X = Along::X;
constexpr Along Y = Along::Y;

template <class Number>
struct Field {
  const char* name;
  Number PrnType::*member;
};

constexpr Field<int> kCounts[] = {
    {"n_x", &PrnType::nX}, {"n_y", &PrnType::nY}, {"alloc_type", &PrnType::allocType}};
constexpr Field<int> kIntegers[] = {{"file_type", &PrnType::fileType}, {"active", &PrnType::active}};
constexpr Field<float> kNumbers[] = {{"x_start", &PrnType::xStart}, {"x_end", &PrnType::xEnd},
                                     {"x_step", &PrnType::xStep},   {"y_start", &PrnType::yStart},
                                     {"y_end", &PrnType::yEnd},     {"y_step", &PrnType::yStep},
                                     {"z_min", &PrnType::zMin},     {"z_max", &PrnType::zMax}};

constexpr std::pair<const char*, Record (Record::*)() const> kPlain[] = {
    {"exp", &Record::Exp},
    {"log", &Record::Log},
    {"ln", &Record::Ln},
    {"sin", &Record::Sin},
    {"cos", &Record::Cos},
    {"tan", &Record::Tan},
    {"asin", &Record::ASin},
    {"acos", &Record::ACos},
    {"atan", &Record::ATan},
    {"sinh", &Record::SinH},
    {"cosh", &Record::CosH},
    {"tanh", &Record::TanH},
    {"asinh", &Record::ASinH},
    {"acosh", &Record::ACosH},
    {"atanh", &Record::ATanH},
    {"inv", &Record::Inv},
    {"sorted", &Record::Sorted},
    {"swapped", &Record::Swapped},
    {"running_integral", &Record::RunningIntegral}};

// ------------------------------------------------------------ from and to NumPy

// The axis of as many values: one of a dataset as it is, or coordinates, which are counted up when there are none.
Axis AxisFor(const char* name, const py::object& given, py::ssize_t count) {
  const char* const title = *name == 'x' ? "X" : "Y";
  const auto values = static_cast<std::size_t>(count);
  if (given.is_none()) {
    std::vector<double> numbers(values);
    std::iota(numbers.begin(), numbers.end(), 0.0);
    return Axis::Stored(title, "", std::move(numbers));
  }
  if (py::isinstance<Axis>(given) && given.cast<const Axis&>().Count() == values) return given.cast<Axis>();
  const Numbers<float> numbers(ArrayOf(given));
  if (numbers.ndim() != 1 || numbers.size() != count)
    throw py::value_error(std::string(name) + " must be " + std::to_string(count) +
                          " coordinates, as many as there are values");
  const auto coordinates = SpanOf(numbers);
  return Axis::Stored(title, "", {coordinates.begin(), coordinates.end()});
}

Record NewRecord(const py::object& given, const py::object& x, const py::object& y) {
  const py::array array = ArrayOf(given);
  if (std::string_view("biuf").find(array.dtype().kind()) == std::string_view::npos)
    throw py::type_error("values must be real numbers");
  const Numbers<float> values(array);
  if (values.ndim() != 1 && values.ndim() != 2) throw py::value_error("values must have one dimension or two");
  const bool grid = values.ndim() == 2;
  if (!grid && !y.is_none()) throw py::value_error("y is an axis of grids; values have one dimension");
  if (!grid && x.is_none()) return Record::Curve(SpanOf(values));
  Dataset d;
  d.name = grid ? "Z" : "Y";
  d.values = kem::Values::Of(SpanOf(values));
  if (grid) d.axes.push_back(AxisFor("y", y, values.shape(0)));
  d.axes.push_back(AxisFor("x", x, values.shape(grid ? 1 : 0)));
  return d.ToRecord();
}

// The stored coordinates or values of a record as they lie there, or those that its start and step define.
py::array Stored(const py::object& self, Along axis) {
  const auto& r = self.cast<const Record&>();
  const float* stored = axis == X ? r->xArray : r->yArray;
  const int count = axis == X && r.IsGrid() ? r->nX : r->nY;
  if ((axis == X ? r->HasX() : r->HasY()) != 0)
    return ReadOnly(std::span<const float>(stored, static_cast<std::size_t>(count)), self);
  return ReadOnly(std::span<const float>(r.Coordinates(axis)));
}

// A value for each Y, then each X; the record has rows of X.
py::array Grid(const Record& r) {
  if (!r.IsGrid()) throw py::value_error("the record is a curve; only grids have z");
  return py::cast(r.ToDataset()).attr("values");
}

py::array Values(const py::object& self) {
  const auto& r = self.cast<const Record&>();
  return r.IsGrid() ? Grid(r) : Stored(self, Y);
}

// ------------------------------------------------------------ keeping

// Calls take(address, bytes) for all that a record of its shape holds, but for what its host attached.
template <class R, class Take>
void EachPart(R& r, Take take) {
  const auto array = [&](auto* numbers, int count) {
    take(numbers, sizeof(float) * static_cast<std::size_t>(count));
  };
  take(r.fileName, sizeof r.fileName);
  take(r.headerArea, sizeof r.headerArea);
  for (const auto& field : kIntegers) take(&(r.*field.member), sizeof(int));
  for (const auto& field : kNumbers) array(&(r.*field.member), 1);
  if (r.HasX()) array(r.xArray, r.nX);
  if (r.HasY()) array(r.yArray, r.nY);
  for (int i = 0; r.Is3D() && i < r.nX; ++i) array(r.zArray[i], r.nY);
}

py::tuple StateOf(const Record& r) {
  py::list parts;
  EachPart(*r, [&](const void* part, std::size_t size) {
    parts.append(py::bytes(static_cast<const char*>(part), size));
  });
  return py::make_tuple(r->allocType, r.IsGrid() ? r->nX : r->nY, r->nY, parts);
}

Record OfState(const py::tuple& state) {
  PrnType r;
  r.Allocate(static_cast<AllocType>(state[0].cast<int>() & AllocXYZ), state[1].cast<int>(), state[2].cast<int>());
  const auto parts = state[3].cast<py::list>();
  std::size_t k = 0;
  EachPart(r, [&](void* part, std::size_t size) {
    const auto bytes = parts[k++].cast<std::string_view>();
    if (bytes.size() != size) throw py::value_error("state is not that of a record");
    std::memcpy(part, bytes.data(), size);
  });
  return Record(std::move(r));
}

// ------------------------------------------------------------ coordinates evenly spaced or one by one

using Steps = std::tuple<float, float, float>;
using Points = std::variant<Numbers<float>, py::slice>;

Steps StepsOf(const char* name, const py::slice& slice) {
  const auto part = [&](const char* which) {
    const py::object number = slice.attr(which);
    if (number.is_none()) throw py::value_error(std::string(name) + " must have a start, a stop and a step");
    return number.cast<float>();
  };
  return {part("start"), part("stop"), part("step")};
}

// The members that resample hand out a record to be released.
Record Owned(PrnType& result) {
  const std::unique_ptr<PrnType> owner(&result);
  if (!result) throw Error(ErrorCode::DoesNotFit, "the record cannot be resampled at these coordinates");
  return Record(std::move(result));
}

Record Resample(const Record& r, const Points& x, const std::optional<Points>& y) {
  const auto* xSlice = std::get_if<py::slice>(&x);
  const auto* ySlice = y ? std::get_if<py::slice>(&*y) : nullptr;
  const auto list = [](const Points& points) {
    const auto numbers = SpanOf(std::get<Numbers<float>>(points));
    return std::vector<float>(numbers.begin(), numbers.end());
  };
  if (!y || !r.IsGrid() || (!xSlice && !ySlice)) {
    if (xSlice && !y) return std::apply([&](auto... steps) { return r.Resample(steps...); }, StepsOf("x", *xSlice));
    if (xSlice || ySlice) throw py::value_error("y is an axis of grids; the record is a curve");
    return y ? r.Resample(list(x), list(*y)) : r.Resample(list(x));
  }
  if (xSlice && ySlice)
    return std::apply([&](auto... steps) { return Owned(r->InterpolateZ(steps...)); },
                      std::tuple_cat(StepsOf("x", *xSlice), StepsOf("y", *ySlice)));
  std::vector<float> points = list(xSlice ? *y : x);
  const auto count = static_cast<int>(points.size());
  const auto [from, to, step] = xSlice ? StepsOf("x", *xSlice) : StepsOf("y", *ySlice);
  return Owned(xSlice ? r->InterpolateYZ(from, to, step, points.data(), count)
                      : r->InterpolateXZ(points.data(), count, from, to, step));
}

// ------------------------------------------------------------ texts

py::tuple Labels(const Record& r) {
  char titles[3][kTextSize] = {};
  r->LabelAxes(titles[0], titles[1], titles[2]);
  return py::make_tuple(Text(titles[0]), Text(titles[1]), Text(titles[2]));
}

py::str Label(const Record& r) {
  char line[kTextSize] = {};
  r->GetLabel(line);
  return Text(line);
}

py::str Comments(const Record& r) {
  std::string block(4 * sizeof r->headerArea, '\0');
  r->CommentBlock(block.data(), static_cast<int>(block.size()));
  return Text(block.c_str());
}

py::tuple MinMax(const Record& r, float x1, float x2, std::optional<float> y1, std::optional<float> y2) {
  float low = 0, high = 0, xLow = 0, xHigh = 0, yLow = 0, yHigh = 0;
  if (r.IsGrid() != (y1 && y2)) throw py::value_error("y1 and y2 are the bounds of grids, and of grids only");
  if (!r.IsGrid()) {
    r->MinMaxY(x1, x2, low, high, xLow, xHigh);
    return py::make_tuple(low, high, xLow, xHigh);
  }
  r->MinMaxZ(x1, x2, *y1, *y2, low, high, xLow, yLow, xHigh, yHigh);
  return py::make_tuple(low, high, py::make_tuple(xLow, yLow), py::make_tuple(xHigh, yHigh));
}

py::tuple Histogram(const Record& r, int parts) {
  const HistogramCounts h = r.Histogram(parts);
  return py::make_tuple(ReadOnly(std::span<const float>(h.counts)), h.low, h.high);
}

void PrintLog(const Record& r, int level) {
  const py::scoped_ostream_redirect redirect;  // to sys.stdout
  r->PrintLog(level);
}

using EqualTo = int (PrnType::*)(float* values, int n) const;

bool HasCoordinates(const Record& r, EqualTo equal, const Numbers<float>& values) {
  std::vector<float> copy(values.data(), values.data() + values.size());
  return ((*r).*equal)(copy.data(), static_cast<int>(copy.size())) != 0;
}

void Save(const Record& r, const std::filesystem::path& path, const std::optional<std::string>& format) {
  format ? r.Write(path, "." + *format) : r.Write(path);
}

// ------------------------------------------------------------ groups of members

using Class = py::class_<Record>;

void BindFields(Class& c) {
  for (const auto& fields : {std::span<const Field<int>>(kCounts), std::span<const Field<int>>(kIntegers)})
    for (const auto& field : fields)
      Property(c, field.name, [field](const Record& r) { return (*r).*field.member; });
  for (const auto& field : kNumbers)
    Property(c, field.name, [field](const Record& r) { return (*r).*field.member; });
  Property(c, "is_grid", &Record::IsGrid);
  Property(c, "x", [](const py::object& self) { return Stored(self, X); });
  Property(c, "y", [](const py::object& self) { return Stored(self, Y); });
  Property(c, "z", &Grid);
  Property(c, "values", &Values);
  Property(c, "file_name", [](const Record& r) { return Text(r->fileName); });
  Property(c, "label", &Label);
  Property(c, "labels", &Labels);
  Property(c, "comments", &Comments);
}

void BindArithmetic(Class& c) {
  c.def(py::self + py::self, Release()).def(py::self + float(), Release()).def(float() + py::self, Release());
  c.def(py::self - py::self, Release()).def(py::self - float(), Release()).def(float() - py::self, Release());
  c.def(py::self * py::self, Release()).def(py::self * float(), Release()).def(float() * py::self, Release());
  c.def(py::self / py::self, Release()).def(py::self / float(), Release()).def(float() / py::self, Release());
  c.def(-py::self, Release());
  const auto power = [&]<class Exponent>(Record (Record::*of)(Exponent) const) {
    Def(c, "power", of, "exponent"_a, Release());
    c.def("__pow__", of, py::is_operator(), Release());
  };
  power.operator()<const Record&>(&Record::Power);
  power.operator()<float>(&Record::Power);
  Def(c, "product", &Record::Product, "other"_a, Release());
  c.def("__and__", &Record::Product, py::is_operator(), Release());
  for (const auto& [name, member] : kPlain) Def(c, name, member, Release());
  Def(c, "set", &Record::Set, "constant"_a, Release());
  Def(c, "axis_op", &Record::AxisOp, "axis"_a, "operation"_a, "value"_a = 0.0f, Release());
}

// Bounds along X, of grids along Y too.
template <class Result>
void BindBounds(Class& c, const char* name, Result (Record::*curve)(float, float) const,
                Result (Record::*grid)(float, float, float, float) const) {
  Def(c, name, curve, "x1"_a, "x2"_a, Release());
  Def(c, name, grid, "x1"_a, "x2"_a, "y1"_a, "y2"_a, Release());
}

void BindAnalysis(Class& c) {
  Def(
      c, "coordinates",
      [](const Record& r, Along axis) { return ReadOnly(std::span<const float>(r.Coordinates(axis))); }, "axis"_a);
  Def(c, "at", &Record::At, "x"_a, "y"_a = 0.0f);
  Def(c, "nearest", &Record::Nearest, "x"_a, "y"_a = 0.0f);
  Def(c, "same_axes", &Record::SameAxes, "other"_a);
  for (const auto& [name, equal] :
       {std::pair("x_axis_equals", &PrnType::XAxisEqArray), std::pair("y_axis_equals", &PrnType::YAxisEqArray)})
    Def(
        c, name,
        [equal = equal](const Record& r, const Numbers<float>& values) { return HasCoordinates(r, equal, values); },
        "values"_a);
  Def(c, "print_log", &PrintLog, "level"_a = 3);
  Def(c, "resample", &Resample, "x"_a, "y"_a = py::none());
  Def(c, "slice", &Record::Slice, "axis"_a, "start"_a, "stop"_a, "mean"_a = false, Release());
  BindBounds(c, "cut", &Record::Cut, &Record::Cut);
  Def(c, "delete_closest", &Record::DeleteClosest, "x"_a, "y"_a, Release());
  Def(c, "reduce", &Record::Reduce, "fx"_a, "fy"_a = 1, Release());
  Def(c, "median", &Record::Median, "width"_a, Release());
  Def(c, "smooth", &Record::Smooth, "width"_a, "axis"_a = X, Release());
  Def(c, "diff", &Record::Diff, "axis"_a = X, Release());
  BindBounds(c, "integral", &Record::Integral, &Record::Integral);
  BindBounds(c, "abs_integral", &Record::AbsIntegral, &Record::AbsIntegral);
  Def(c, "integral_along", &Record::IntegralAlong, "axis"_a, "start"_a, "stop"_a, Release());
  Def(c, "baseline", &Record::Baseline, "at1"_a, "at2"_a, "axis"_a = X, Release());
  Def(c, "slant", &Record::Slant, "x1"_a, "target1"_a, "x2"_a, "target2"_a, Release());
  Def(c, "noise_level", &Record::NoiseLevel, Release());
  Def(c, "histogram", &Histogram, "parts"_a);
  Def(c, "min_max", &MinMax, "x1"_a, "x2"_a, "y1"_a = py::none(), "y2"_a = py::none());
  Def(
      c, "hpdta_time", [](const Record& r, int day, int month, int year) { return r->HPDTATime(day, month, year); },
      "day"_a, "month"_a, "year"_a);
}

}  // namespace

void BindRecord(py::module_& m) {
  Class c(m, "Record", DocumentationOf("Record"));
  c.def(py::init(&NewRecord), "values"_a, "x"_a = py::none(), "y"_a = py::none());
  BindFields(c);
  BindArithmetic(c);
  BindAnalysis(c);
  c.attr("__array_ufunc__") = py::none();  // numbers of NumPy leave the operators to the record
  Def(c, "to_dataset", &Record::ToDataset, Release());
  Def(c, "save", &Save, "path"_a, "format"_a = py::none(), Release());
  c.def(
      "__eq__", [](const Record& a, const Record& b) { return StateOf(a).equal(StateOf(b)); }, py::is_operator());
  c.def(
      "__ne__", [](const Record& a, const Record& b) { return StateOf(a).not_equal(StateOf(b)); },
      py::is_operator());
  c.def(py::pickle(&StateOf, &OfState));
  m.def("load", &Record::Classic, "path"_a, "item"_a = 1, Release());
}

}  // namespace kem::python
