// Datasets and their axes in Python.
#include <cstring>

#include "module.h"

namespace kem::python {
namespace {

// ------------------------------------------------------------ values

struct NumberRow {
  NumberType type;
  py::dtype (*real)();
  Values (*of)(const py::array& array);  // copies an array of this type
};

template <class T>
Values Copied(const py::array& array) {
  const Numbers<T> numbers(array);
  return Values::Of(SpanOf(numbers));
}

template <class T>
constexpr NumberRow Row() {
  return {NumberTypeOf<T>(), &py::dtype::of<T>, &Copied<T>};
}

constexpr NumberRow kNumbers[] = {Row<std::uint8_t>(), Row<std::uint16_t>(), Row<std::uint32_t>(),
                                  Row<std::int8_t>(),  Row<std::int16_t>(),  Row<std::int32_t>(),
                                  Row<float>(),        Row<double>()};

template <class T>
Values CopiedPairs(const py::array& array) {
  const Numbers<std::complex<T>> numbers(array);
  return Values::Of(
      std::span<const T>(reinterpret_cast<const T*>(numbers.data()), static_cast<std::size_t>(2 * numbers.size())),
      true);
}

Values ValuesOf(const py::array& array) {
  const py::dtype type = array.dtype();
  if (type.kind() == 'c') return type.itemsize() == 8 ? CopiedPairs<float>(array) : CopiedPairs<double>(array);
  for (const NumberRow& row : kNumbers)
    if (row.real().is(type) || row.real().equal(type)) return row.of(array);
  if (std::string("biuf").find(type.kind()) == std::string::npos)
    throw py::type_error("values must be an array of numbers");
  return Copied<double>(array);
}

std::vector<py::ssize_t> ShapeOf(const Dataset& d) {
  std::vector<py::ssize_t> shape;
  for (const Axis& axis : d.axes) shape.push_back(static_cast<py::ssize_t>(axis.Count()));
  return shape;
}

// Complex integers, which NumPy does not know, become complex numbers that hold them exactly.
template <class T>
py::array ComplexIntegers(const Values& values, std::vector<py::ssize_t> shape) {
  py::array_t<std::complex<T>> array(std::move(shape));
  for (std::size_t k = 0; k < values.Count(); ++k)
    array.mutable_data()[k] = {static_cast<T>(values.Real(k)), static_cast<T>(values.Imaginary(k))};
  array.attr("setflags")("write"_a = false);
  return array;
}

py::array ValuesIn(const py::object& self) {
  const auto& d = self.cast<const Dataset&>();
  const Values& values = d.values;
  const void* bytes = values.Bytes().data();
  if (!values.IsComplex()) {
    const auto* row = std::find_if(std::begin(kNumbers), std::end(kNumbers),
                                   [&](const NumberRow& r) { return r.type == values.Type(); });
    return ReadOnly(row->real(), ShapeOf(d), bytes, self);
  }
  switch (values.Type()) {
    case NumberType::F32:
      return ReadOnly(py::dtype::of<std::complex<float>>(), ShapeOf(d), bytes, self);
    case NumberType::F64:
      return ReadOnly(py::dtype::of<std::complex<double>>(), ShapeOf(d), bytes, self);
    case NumberType::U32:
    case NumberType::I32:
      return ComplexIntegers<double>(values, ShapeOf(d));
    default:
      return ComplexIntegers<float>(values, ShapeOf(d));
  }
}

// ------------------------------------------------------------ axes

py::array CoordinatesOf(const py::object& self) {
  const auto& axis = self.cast<const Axis&>();
  if (!axis.IsLinear()) return ReadOnly(axis.StoredCoordinates(), self);
  return ReadOnly(std::span<const double>(axis.Coordinates()));
}

Axis NewAxis(const std::string& name, const std::string& unit, const std::optional<Numbers<double>>& values,
             double start, double end, std::size_t count) {
  if (!values) return Axis::Linear(name, unit, count, start, end);
  if (values->ndim() != 1) throw py::value_error("values must have one dimension");
  const auto coordinates = SpanOf(*values);
  return Axis::Stored(name, unit, {coordinates.begin(), coordinates.end()});
}

py::dict StateOfAxis(const py::object& self) {
  const auto& axis = self.cast<const Axis&>();
  const py::object stored = axis.IsLinear() ? py::none() : py::object(CoordinatesOf(self));
  return py::dict("name"_a = axis.name, "unit"_a = axis.unit, "values"_a = stored, "start"_a = axis.Start(),
                  "end"_a = axis.End(), "count"_a = axis.Count());
}

double CoordinateAt(const Axis& axis, py::ssize_t k) {
  const auto count = static_cast<py::ssize_t>(axis.Count());
  if (k < -count || k >= count) throw py::index_error("the axis has " + std::to_string(count) + " coordinates");
  return axis[static_cast<std::size_t>(k < 0 ? k + count : k)];
}

bool SameNumbers(std::span<const std::byte> a, std::span<const std::byte> b) {
  return a.size() == b.size() && (a.empty() || std::memcmp(a.data(), b.data(), a.size()) == 0);
}

bool SameAxis(const Axis& a, const Axis& b) {
  const double ends[2][2] = {{a.Start(), a.End()}, {b.Start(), b.End()}};
  return a.name == b.name && a.unit == b.unit && a.Count() == b.Count() &&
         SameNumbers(std::as_bytes(a.StoredCoordinates()), std::as_bytes(b.StoredCoordinates())) &&
         SameNumbers(std::as_bytes(std::span(ends[0])), std::as_bytes(std::span(ends[1])));
}

// Axes within a dataset keep it alive.
py::tuple AxesOf(const py::object& self) {
  auto& d = self.cast<Dataset&>();
  py::tuple axes(d.axes.size());
  for (std::size_t k = 0; k < d.axes.size(); ++k)
    axes[k] = py::cast(d.axes[k], py::return_value_policy::reference_internal, self);
  return axes;
}

// ------------------------------------------------------------ parameters, notes

using ParameterRow = std::tuple<std::string, std::string, std::string, std::optional<double>, std::string>;
using NoteRow = std::pair<std::string, Severity>;

std::vector<ParameterRow> ParametersOf(const Dataset& d) {
  std::vector<ParameterRow> rows;
  for (const Parameter& p : d.parameters) rows.emplace_back(p.section, p.key, p.text, p.number, p.unit);
  return rows;
}

std::vector<NoteRow> NotesOf(const Dataset& d) {
  std::vector<NoteRow> rows;
  for (const Note& note : d.notes) rows.emplace_back(note.text, note.severity);
  return rows;
}

// ------------------------------------------------------------ datasets

constexpr std::pair<const char*, std::string Dataset::*> kTexts[] = {{"title", &Dataset::title},
                                                                     {"name", &Dataset::name},
                                                                     {"unit", &Dataset::unit},
                                                                     {"format", &Dataset::format},
                                                                     {"item_name", &Dataset::itemName}};

Dataset NewDataset(const py::object& given, const std::vector<Axis>& axes, std::string title, std::string name,
                   std::string unit, const std::vector<ParameterRow>& parameters, const std::vector<NoteRow>& notes,
                   std::string format, std::filesystem::path file, std::vector<std::filesystem::path> companions,
                   int item, int items, std::string itemName) {
  const py::array values = ArrayOf(given);
  Dataset d{.title = std::move(title),
            .name = std::move(name),
            .unit = std::move(unit),
            .values = ValuesOf(values),
            .axes = axes,
            .parameters = {},
            .notes = {},
            .format = std::move(format),
            .file = std::move(file),
            .companions = std::move(companions),
            .item = item,
            .items = items,
            .itemName = std::move(itemName)};
  const std::vector<py::ssize_t> shape(values.shape(), values.shape() + values.ndim());
  if (shape != ShapeOf(d))
    throw py::value_error("axes must have as many coordinates as values along each dimension");
  for (const auto& [section, key, text, number, of] : parameters)
    d.parameters.push_back({section, key, text, number, of});
  for (const auto& [text, severity] : notes) d.notes.push_back({severity, text});
  return d;
}

Dataset WithAxes(const Dataset& d, const std::vector<Axis>& axes) {
  Dataset made = d;
  made.axes = axes;
  if (ShapeOf(made) != ShapeOf(d)) throw py::value_error("axes must have as many coordinates as those before");
  return made;
}

// What makes the same dataset again.
py::dict StateOfDataset(const py::object& self) {
  const auto& d = self.cast<const Dataset&>();
  py::dict state("values"_a = ValuesIn(self), "axes"_a = d.axes, "parameters"_a = ParametersOf(d),
                 "notes"_a = NotesOf(d), "file"_a = d.file, "companions"_a = d.companions, "item"_a = d.item,
                 "items"_a = d.items);
  for (const auto& [key, text] : kTexts) state[key] = d.*text;
  return state;
}

// What was read is compared, not where it lay.
bool SameDataset(const Dataset& a, const Dataset& b) {
  return a.values.Type() == b.values.Type() && a.values.IsComplex() == b.values.IsComplex() &&
         SameNumbers(a.values.Bytes(), b.values.Bytes()) &&
         std::equal(a.axes.begin(), a.axes.end(), b.axes.begin(), b.axes.end(), SameAxis) &&
         ParametersOf(a) == ParametersOf(b) && NotesOf(a) == NotesOf(b) && a.item == b.item && a.items == b.items &&
         std::all_of(std::begin(kTexts), std::end(kTexts),
                     [&](const auto& text) { return a.*text.second == b.*text.second; });
}

template <class Class, class Same>
void Compare(Class& bound, Same same) {
  using T = typename Class::type;
  bound.def(
      "__eq__", [same](const T& a, const T& b) { return same(a, b); }, py::is_operator());
  bound.def(
      "__ne__", [same](const T& a, const T& b) { return !same(a, b); }, py::is_operator());
}

}  // namespace

void BindDataset(py::module_& m) {
  py::class_<Axis> axis(m, "Axis", DocumentationOf("Axis"));
  axis.def(py::init(&NewAxis), "name"_a = "", "unit"_a = "", "values"_a = py::none(), "start"_a = 0.0,
           "end"_a = 0.0, "count"_a = 0);
  Property(axis, "name", [](const Axis& a) { return a.name; });
  Property(axis, "unit", [](const Axis& a) { return a.unit; });
  Property(axis, "values", &CoordinatesOf);
  Property(axis, "start", &Axis::Start);
  Property(axis, "end", &Axis::End);
  Property(axis, "step", &Axis::Step);
  Property(axis, "is_linear", &Axis::IsLinear);
  Def(axis, "to", &Axis::In, "unit"_a);
  Def(axis, "to_g", &Axis::InGValues, "frequency"_a);
  axis.def("__len__", &Axis::Count);
  axis.def("__getitem__", &CoordinateAt, "k"_a);
  axis.def("_state", &StateOfAxis);
  Compare(axis, SameAxis);

  py::class_<Dataset> dataset(m, "Dataset", DocumentationOf("Dataset"));
  dataset.def(py::init(&NewDataset), "values"_a, "axes"_a, "title"_a = "", "name"_a = "", "unit"_a = "",
              "parameters"_a = py::list(), "notes"_a = py::list(), "format"_a = "", "file"_a = "",
              "companions"_a = py::list(), "item"_a = 1, "items"_a = 1, "item_name"_a = "");
  for (const auto& [key, text] : kTexts)
    Property(dataset, key, [text = text](const Dataset& d) { return d.*text; });
  Property(dataset, "values", &ValuesIn);
  Property(dataset, "axes", &AxesOf);
  Property(dataset, "_parameters", &ParametersOf);
  Property(dataset, "_notes", &NotesOf);
  Property(dataset, "file", [](const Dataset& d) { return d.file; });
  Property(dataset, "companions", [](const Dataset& d) { return d.companions; });
  Property(dataset, "item", [](const Dataset& d) { return d.item; });
  Property(dataset, "items", [](const Dataset& d) { return d.items; });
  Property(dataset, "microwave_frequency", &Dataset::MicrowaveFrequency);
  Def(dataset, "with_axes", &WithAxes, "axes"_a);
  Def(dataset, "to_record", &Dataset::ToRecord, "part"_a = Part::Real, Release());
  dataset.def("_state", &StateOfDataset);
  Compare(dataset, SameDataset);
}

}  // namespace kem::python
