// kem in a page: datasets as objects of JavaScript, the operations of records on them, and files to save.
//
// What fails throws an Error with the library's sentence.
#include <emscripten/bind.h>
#include <emscripten/emscripten.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <fstream>

#include "../tools/kem/csv.h"
#include "../tools/kem/describe.h"
#include "../tools/kem/format.h"
#include "../tools/kem/jcamp.h"
#include "kem/dataset.h"

// clang-format off
EM_JS(void, throwSentence, (const char* sentence), { throw new Error(UTF8ToString(sentence)); })
// clang-format on

namespace kem::viewer {
namespace {

using emscripten::val;

// ------------------------------------------------------------ to JavaScript

template <class T>
val ViewOf(std::span<const T> numbers) {
  return val(emscripten::typed_memory_view(numbers.size(), numbers.data()));
}

template <class Rows, class ToVal>
val ArrayOf(const Rows& rows, ToVal toVal) {
  val array = val::array();
  for (const auto& row : rows) array.call<void>("push", toVal(row));
  return array;
}

val TextsOf(const std::vector<std::string>& texts) {
  return ArrayOf(texts, [](const std::string& text) { return val(text); });
}

val NameOf(const std::filesystem::path& path) { return val(path.string()); }

val ToVal(const Axis& axis) {
  val made = val::object();
  made.set("name", axis.name);
  made.set("unit", axis.unit);
  made.set("count", axis.Count());
  made.set("linear", axis.IsLinear());
  made.set("start", axis.Start());
  made.set("end", axis.End());
  return made;
}

val ToVal(const Parameter& p) {
  val made = val::object();
  made.set("section", p.section);
  made.set("key", p.key);
  made.set("text", tool::WithUnit(p));
  return made;
}

val ToVal(const Note& note) {
  constexpr const char* kSeverities[] = {"remark", "doubtful", "damaged"};
  val made = val::object();
  made.set("severity", std::string(kSeverities[static_cast<std::size_t>(note.severity)]));
  made.set("text", note.text);
  return made;
}

constexpr std::pair<const char*, std::string Dataset::*> kTexts[] = {{"title", &Dataset::title},
                                                                     {"name", &Dataset::name},
                                                                     {"unit", &Dataset::unit},
                                                                     {"format", &Dataset::format},
                                                                     {"itemName", &Dataset::itemName}};

// All of a dataset but its numbers.
val FactsOf(const Dataset& d) {
  const auto toVal = [](const auto& row) { return ToVal(row); };
  val facts = val::object();
  for (const auto& [key, text] : kTexts) facts.set(key, d.*text);
  facts.set("file", NameOf(d.file));
  facts.set("companions", ArrayOf(d.companions, NameOf));
  facts.set("item", d.item);
  facts.set("items", d.items);
  facts.set("type", std::string(kem::NameOf(d.values.Type())));
  facts.set("complex", d.values.IsComplex());
  facts.set("axes", ArrayOf(d.axes, toVal));
  facts.set("parameters", ArrayOf(d.parameters, toVal));
  facts.set("notes", ArrayOf(d.notes, toVal));
  return facts;
}

template <class... Types>
void WithNumbersAs(const Values& values, auto work) {
  ((values.Type() == NumberTypeOf<Types>() ? work(values.As<Types>()) : void()), ...);
}

// Hands the numbers over in the type that they have.
void WithNumbers(const Values& values, auto work) {
  WithNumbersAs<std::uint8_t, std::uint16_t, std::uint32_t, std::int8_t, std::int16_t, std::int32_t, float, double>(
      values, work);
}

// The numbers where they are, until memory grows; complex ones as neighbours, real and imaginary.
val NumbersOf(const Dataset& d) {
  val view = val::undefined();
  WithNumbers(d.values, [&](auto numbers) { view = ViewOf(numbers); });
  return view;
}

// Smallest and largest of the values, or of their magnitudes.
val RangeOf(const Dataset& d) {
  const tool::Range range(d.values);
  val made = val::object();
  made.set("min", range.min);
  made.set("max", range.max);
  return made;
}

val CoordinatesOf(const Dataset& d, std::size_t axis) {
  const std::vector<double> computed = d.axes.at(axis).Coordinates();
  return ViewOf(std::span<const double>(computed)).call<val>("slice");
}

// ------------------------------------------------------------ files

// The items of a file, and what ended the reading before the last of them.
val OpenAll(const std::string& file) {
  val items = val::array();
  val opened = val::object();
  opened.set("problem", std::string());
  try {
    OpenEach(file, [&](Dataset item) {
      items.set(items["length"], val(std::move(item)));
      return true;
    });
  } catch (const Error& error) {
    opened.set("problem", std::string(error.what()));
  }
  opened.set("items", items);
  return opened;
}

val FormatsRead() {
  return ArrayOf(Formats(), [](const FormatInfo& format) {
    val made = val::object();
    made.set("name", format.name);
    made.set("extensions", TextsOf(format.extensions));
    made.set("pair", format.pair);
    made.set("companions", TextsOf(format.companions));
    return made;
  });
}

// ------------------------------------------------------------ axes

constexpr const char* kG = "g";  // a field as g factors

Axis Converted(const Dataset& d, const Axis& axis, const std::string& unit) {
  return unit == kG ? axis.InGValues(d.MicrowaveFrequency().value_or(0)) : axis.In(unit);
}

Dataset InUnitOf(const Dataset& d, std::size_t axis, const std::string& unit) {
  Dataset made = d;
  made.axes.at(axis) = Converted(d, d.axes.at(axis), unit);
  return made;
}

// The units that an axis can be shown in; its first coordinate tells.
val UnitsOf(const Dataset& d, std::size_t axis) {
  const Axis first = d.axes.at(axis).First(1);
  std::vector<std::string> fitting;
  std::vector<std::string> units = Units();
  units.emplace_back(kG);
  for (const std::string& unit : units) try {
      (void)Converted(d, first, unit);
      fitting.push_back(unit);
    } catch (const Error&) {  // not in this one
    }
  return TextsOf(fitting);
}

std::string UnitOf(const Dataset& d, std::size_t axis) { return UnitNamed(d.axes.at(axis).unit); }

// One place on the slowest axis.
Dataset PlaneOf(const Dataset& d, std::size_t k) {
  Dataset made = d;
  const std::size_t count = d.values.Count() / std::max<std::size_t>(d.axes.at(0).Count(), 1);
  made.axes.erase(made.axes.begin());
  WithNumbers(d.values, [&](auto numbers) {
    const bool complex = d.values.IsComplex();
    const std::size_t width = complex ? 2 * count : count;
    made.values = Values::Of(numbers.subspan(k * width, width), complex);
  });
  return made;
}

// ------------------------------------------------------------ operations

// The dataset of a record that came of another dataset, whose texts it keeps; titles of axes where there are as
// many.
Dataset Derived(const Dataset& from, const Record& record) {
  Dataset made = record.ToDataset();
  for (const auto& [key, text] : kTexts) made.*text = from.*text;
  for (std::size_t k = 0; made.axes.size() == from.axes.size() && k < from.axes.size(); ++k) {
    made.axes[k].name = from.axes[k].name;
    made.axes[k].unit = from.axes[k].unit;
  }
  made.parameters = from.parameters;
  made.file = from.file;
  made.companions = from.companions;
  return made;
}

constexpr Along AlongOf(bool y) { return y ? Along::Y : Along::X; }

Dataset Smoothed(const Dataset& d, int width, bool alongY) {
  return Derived(d, d.ToRecord().Smooth(width, AlongOf(alongY)));
}

Dataset Median(const Dataset& d, int width) { return Derived(d, d.ToRecord().Median(width)); }

Dataset WithoutBaseline(const Dataset& d, float at1, float at2, bool alongY) {
  return Derived(d, d.ToRecord().Baseline(at1, at2, AlongOf(alongY)));
}

Dataset Cut(const Dataset& d, float x1, float x2, float y1, float y2) {
  return Derived(d, d.ToRecord().Cut(x1, x2, y1, y2));
}

std::vector<float> Steps(float from, float to, float step) {
  const double count = std::floor(std::abs((double{to} - from) / step)) + 1;
  if (!(count >= 1 && count <= 1 << 24)) throw Error(ErrorCode::DoesNotFit, "a step does not fit its bounds");
  std::vector<float> steps(static_cast<std::size_t>(count));
  for (std::size_t k = 0; k < steps.size(); ++k)
    steps[k] = static_cast<float>(from + static_cast<double>(k) * std::copysign(double{step}, double{to} - from));
  return steps;
}

// In steps of an axis, and of a grid those of Y, too.
Dataset Resampled(const Dataset& d, float x1, float x2, float xStep, float y1, float y2, float yStep) {
  const Record record = d.ToRecord();
  if (!record.IsGrid()) return Derived(d, record.Resample(x1, x2, xStep));
  return Derived(d, record.Resample(Steps(x1, x2, xStep), Steps(y1, y2, yStep)));
}

// The curve along an axis of a grid: the mean of a band of the other one.
Dataset Section(const Dataset& d, bool alongY, float from, float to) {
  Dataset made = d.ToRecord().Slice(AlongOf(alongY), from, to, true).ToDataset();
  const Axis& axis = d.axes[alongY ? 0 : 1];
  made.axes[0].name = axis.name;
  made.axes[0].unit = axis.unit;
  made.name = d.name;
  made.unit = d.unit;
  made.parameters = d.parameters;
  made.format = d.format;
  made.file = d.file;
  return made;
}

template <class B>
Dataset Calculated(const Dataset& a, const std::string& sign, const B& b) {
  const auto calculated = [&](const auto& other) -> Record {
    const Record record = a.ToRecord();
    if (sign == "+") return record + other;
    if (sign == "-") return record - other;
    if (sign == "*") return record * other;
    return record / other;
  };
  if constexpr (std::is_same_v<B, Dataset>)
    return Derived(a, calculated(b.ToRecord()));
  else
    return Derived(a, calculated(b));
}

// ------------------------------------------------------------ saving

[[noreturn]] void Refuse(const std::string& why) { throw Error(ErrorCode::DoesNotFit, why); }

// What the command writes of a dataset: csv and JCAMP-DX whole, else its record.
void Write(const Dataset& d, const std::string& name, const tool::Format& format) {
  if (std::string_view(format.name) == "csv") {
    if (!tool::WriteCsv(d, name.c_str(), false)) Refuse("there is not enough memory for the file");
    return;
  }
  const auto record = d.ToRecord().Release();
  tool::NameByTitle(*record, format, d.title);
  if (tool::Problem problem = tool::CannotHold(format, *record); !problem.empty()) Refuse(problem);
  if (std::string_view(format.name) == "dx")
    std::ofstream(name, std::ios::binary) << tool::JcampOf(d.values.IsComplex() ? d.Only(Part::Real) : d);
  else if (tool::Problem problem = tool::WriteRecord(*record, format, name); !problem.empty())
    Refuse(problem);
}

void Save(const Dataset& d, const std::string& name, const std::string& format) {
  const tool::Format* found = tool::FormatNamed(format);
  if (!found) Refuse("there is no format " + format);
  Write(d, name, *found);
}

// The formats that take a curve, or a grid.
val FormatsWritten(const Dataset& d) {
  std::vector<std::string> names;
  for (const tool::Format& format : tool::Formats())
    if (d.axes.size() == 1   ? format.curves
        : d.axes.size() == 2 ? format.grids
                             : std::string_view(format.name) == "csv")
      names.emplace_back(format.name);
  return TextsOf(names);
}

Dataset Only(const Dataset& d, Part part) { return d.Only(part); }

std::string Version() { return KemVersion(); }

// A function whose exceptions become errors of JavaScript.
template <auto kFunction>
struct Told;
template <class Result, class... Arguments, Result (*kFunction)(Arguments...)>
struct Told<kFunction> {
  static Result Call(Arguments... arguments) {
    try {
      return kFunction(arguments...);
    } catch (const std::bad_alloc&) {
      throwSentence("there is not enough memory");
    } catch (const std::exception& error) {
      throwSentence(error.what());
    }
    std::abort();  // never reached
  }
};

EMSCRIPTEN_BINDINGS(kem) {
  using emscripten::function;
  emscripten::enum_<Part>("Part")
      .value("Real", Part::Real)
      .value("Imaginary", Part::Imaginary)
      .value("Magnitude", Part::Magnitude)
      .value("Phase", Part::Phase);
  emscripten::class_<Dataset>("Dataset")
      .function("facts", &Told<&FactsOf>::Call)
      .function("values", &Told<&NumbersOf>::Call)
      .function("range", &Told<&RangeOf>::Call)
      .function("coordinates", &Told<&CoordinatesOf>::Call)
      .function("units", &Told<&UnitsOf>::Call)
      .function("unit", &Told<&UnitOf>::Call)
      .function("inUnit", &Told<&InUnitOf>::Call)
      .function("only", &Told<&Only>::Call)
      .function("plane", &Told<&PlaneOf>::Call)
      .function("smooth", &Told<&Smoothed>::Call)
      .function("median", &Told<&Median>::Call)
      .function("baseline", &Told<&WithoutBaseline>::Call)
      .function("cut", &Told<&Cut>::Call)
      .function("resample", &Told<&Resampled>::Call)
      .function("section", &Told<&Section>::Call)
      .function("with", &Told<&Calculated<Dataset>>::Call)
      .function("withNumber", &Told<&Calculated<float>>::Call)
      .function("formats", &Told<&FormatsWritten>::Call)
      .function("save", &Told<&Save>::Call);
  function("open", &Told<&OpenAll>::Call);
  function("formats", &Told<&FormatsRead>::Call);
  function("version", &Told<&Version>::Call);
}

}  // namespace
}  // namespace kem::viewer
