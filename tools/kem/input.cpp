#include "input.h"

#include <charconv>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <system_error>

#include "classic.h"
#include "files.h"
#include "options.h"
#include "source.h"
#include "system.h"

namespace kem::tool {
namespace {

namespace fs = std::filesystem;

Reading reading;
bool takesComplex = false;

constexpr std::pair<const char*, Part> kParts[] = {
    {"real", Part::Real}, {"imaginary", Part::Imaginary}, {"magnitude", Part::Magnitude}, {"phase", Part::Phase}};

void MakeRecord(Input& input) {
  const Dataset& d = *input.dataset;
  if (d.values.IsComplex() && !reading.part && !takesComplex)
    Tell(input.file, "values are complex; --part tells which part to take, and the real one is the default");
  input.record = d.ToRecord(reading.part.value_or(Part::Real)).Release();
  std::snprintf(input.record->fileName, sizeof input.record->fileName, "%s", input.file.c_str());
}

// Makes the record and prints the notes that cast doubt on it.
void Load(Input& input) {
  if (!input.dataset) return;
  input.problem = Attempted(input.dataset->file, [&] { MakeRecord(input); });
  if (!input.problem.empty()) return;
  for (const Note& note : input.dataset->notes)
    if (note.severity != Severity::Remark) Tell(input.file, note.text);
}

Axis GValues(const Dataset& d) {
  const Axis& x = d.axes.back();
  const double frequency = reading.frequency > 0 ? reading.frequency : d.MicrowaveFrequency().value_or(0);
  if (!(frequency > 0)) {
    (void)x.In("T");  // what is no field needs no frequency either
    throw Error(ErrorCode::DoesNotFit, "the file tells no frequency of the microwave; --frequency does");
  }
  return x.InGValues(frequency);
}

// X in the unit that was asked for.
void ConvertX(Dataset& d) {
  if (d.axes.empty() || (reading.xUnit.empty() && !reading.gValues)) return;
  Axis& x = d.axes.back();
  const std::string before = "its X axis" + (x.name.empty() ? "" : " '" + x.name + '\'') + ": ";
  try {
    x = reading.gValues ? GValues(d) : x.In(reading.xUnit);
  } catch (const Error& error) {
    throw Error(error.Code(), before + error.what());
  }
}

Input Opened(const std::string& file, Dataset dataset) {
  dataset.file = PathOf(file);
  ConvertX(dataset);
  Input input = {
      .file = file, .item = dataset.item, .more = dataset.item < dataset.items, .name = dataset.itemName};
  input.dataset = std::move(dataset);
  return input;
}

// Opens a file by its path. Returns why that fails.
Problem AttemptedOn(const std::string& file, const std::function<void(const fs::path&)>& open) {
  const Source source(file, Source::Names::Any);
  if (!source.WhyNot().empty()) return source.WhyNot();
  const fs::path path = PathOf(source.Name());
  Problem problem = Attempted(path, [&] { open(path); });
  return !problem.empty() && IsPattern(file) ? "no file matches this pattern" : problem;
}

}  // namespace

const Reading& HowToRead() { return reading; }
void TakeComplexValues() { takesComplex = true; }

void AddReading(CLI::App& app) {
  app.add_flag("--classic", reading.classic, "Read files as hosts of the record receive them");
  std::vector<std::string> names;
  for (const auto& [name, part] : kParts) names.emplace_back(name);
  app.add_option_function<std::string>(
         "--part",
         [](const std::string& wanted) {
           for (const auto& [name, part] : kParts)
             if (name == wanted) reading.part = part;
         },
         "Part of complex values: real (default), imaginary, magnitude or phase")
      ->type_name("PART")
      ->check(OneOf(names));
  app.add_flag("--quiet", reading.quiet, "Print no notes on files");
}

void AddUnits(CLI::App& app) {
  CLI::Option* classic = app.get_option("--classic");
  const std::string units = CLI::detail::join(Units(), ", ");
  CLI::Option* unit =
      app.add_option("--x-unit", reading.xUnit, "Convert X into this unit, where that has a meaning: " + units)
          ->type_name("UNIT")
          ->check(Needed("one of " + units, [](const std::string& text) { return !UnitNamed(text).empty(); })
                      .name(CLI::detail::join(Units(), " ")))
          ->excludes(classic);
  CLI::Option* axis = app.add_option_function<std::string>(
                             "--axis", [](const std::string&) { reading.gValues = true; },
                             "g: show a field as g factors, which takes the frequency of the microwave")
                          ->type_name("g")
                          ->check(OneOf({"g"}))
                          ->excludes(unit)
                          ->excludes(classic);
  app.add_option("--frequency", reading.frequency, "Frequency of the microwave, where the file's does not count")
      ->type_name("HZ")
      ->check(Needed("a number above 0",
                     [](const std::string& text) { return NumberIn(text) > 0 && std::isfinite(NumberIn(text)); }))
      ->needs(axis);
}

void Tell(std::string_view file, const std::string& note) {
  if (Turn* turn = ThisTurn()) turn->notes.push_back(note);
  if (!reading.quiet) Complain(std::string(file) + ": " + note);
}

NamedItem ItemNamed(const std::string& name) {
  const auto mark = name.rfind('#');
  std::error_code error;
  if (mark == name.npos || fs::exists(PathOf(name), error)) return {name};
  int item = 0;
  const char* const end = name.data() + name.size();
  const auto read = std::from_chars(name.data() + mark + 1, end, item);
  if (read.ec != std::errc() || read.ptr != end || item < 1) return {name};
  return {name.substr(0, mark), item};
}

std::vector<double> NumbersOf(const Input& input, bool imaginary) {
  const Values& values = input.dataset->values;
  if (values.IsComplex() && reading.part) {
    const Values part = input.dataset->Only(*reading.part).values;
    return {part.As<double>().begin(), part.As<double>().end()};
  }
  std::vector<double> numbers(values.Count());
  for (std::size_t k = 0; k < numbers.size(); ++k) numbers[k] = imaginary ? values.Imaginary(k) : values.Real(k);
  return numbers;
}

Input OpenItem(const std::string& file, int item) {
  Input input{.file = file, .item = item, .record = nullptr};
  input.problem = AttemptedOn(file, [&](const fs::path& path) { input = Opened(file, Open(path, item)); });
  return input;
}

void OpenItems(const std::string& file, const std::function<void(Input&)>& take) {
  Input next{.file = file, .item = 1, .record = nullptr};
  next.problem = AttemptedOn(file, [&](const fs::path& path) {
    OpenEach(path, [&](Dataset dataset) {
      Input input = Opened(file, std::move(dataset));
      next.item = input.item + 1;
      take(input);
      return true;
    });
  });
  if (!next.problem.empty()) take(next);
}

Input LoadItem(const std::string& file, int item) {
  if (reading.classic) return LoadClassic(file, item);
  Input input = OpenItem(file, item);
  Load(input);
  return input;
}

bool EachItem(const std::string& file, const std::function<bool(Input&)>& action) {
  if (reading.classic) return EachClassic(file, action);
  bool succeeded = true;
  OpenItems(file, [&](Input& input) {
    Load(input);
    const bool numbered = input.item > 1 && !input.problem.empty();
    const bool loaded =
        NoProblem(file, (numbered ? "item " + std::to_string(input.item) + ": " : "") + input.problem);
    succeeded = loaded && action(input) && succeeded;
  });
  return succeeded;
}

}  // namespace kem::tool
