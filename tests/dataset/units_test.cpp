// Axes and numbers in other units.
#include "support/datasets.h"

using namespace kem;
using namespace kem::test;

namespace {

Axis Even(std::string unit, double start = 1, double end = 3, std::string name = "x") {
  return Axis::Linear(std::move(name), std::move(unit), 3, start, end);
}

std::string Described(const Axis& axis) {
  std::ostringstream text;
  text.precision(10);
  text << axis.name << " (" << axis.unit << (axis.IsLinear() ? ")" : ") stored");
  for (const double x : axis.Coordinates()) text << ' ' << x;
  return text.str();
}

}  // namespace

TEST_CASE("units: an axis in another unit, or why there is none") {
  const std::tuple<Axis, const char*, const char*> cases[] = {
      {Even("G", 3400, 3500), "mT", "x (mT) 340 345 350"},
      {Even("mT", 340, 350), "T", "x (T) 0.34 0.345 0.35"},
      {Even("\u00B5s"), "ns", "x (ns) 1000 2000 3000"},
      {Even("NANOMETERS", 500, 1000, "Wavelength"), "cm-1", "Wavenumber (cm-1) stored 20000 13333.33333 10000"},
      {Even("1/CM", 20000, 10000), "nm", "Wavelength (nm) stored 500 666.6666667 1000"},
      {Even("eV"), "nm", "Wavelength (nm) stored 1239.841984 619.9209922 413.2806614"},
      {Even("eV"), "cm-1", "Wavenumber (cm-1) 8065.543937 16131.08787 24196.63181"},
      {Even("GHZ", 299.792458, 599.584916), "cm-1", "Wavenumber (cm-1) 10 15 20"},
      {Axis::Stored("x", "um", {2, 1}), "nm", "x (nm) stored 2000 1000"},
      {Even("cm-1", 100, 300, "Raman shift"), "meV", "Energy (meV) 12.39841984 24.79683969 37.19525953"},
      {Even("cm-1", 100, 300, "Raman shift"), "nm", "a shift has no wavelength of its own"},
      {Even("nm", 0, 2), "eV", "coordinates that are not positive have no counterpart in eV"},
      {Even("G"), "nm", "G cannot be converted into nm"},
      {Even(""), "nm", "there is no unit to convert from"},
      {Even("m/z"), "nm", "'m/z' is no unit that converts"},
      {Even("nm"), "furlong", "'furlong' is no unit that converts"},
  };
  for (const auto& [axis, unit, expected] : cases) {
    std::string got;
    try {
      got = Described(axis.In(unit));
    } catch (const Error& error) {
      CHECK(error.Code() == ErrorCode::DoesNotFit);
      got = error.what();
    }
    CHECK(got == expected);
  }
}

TEST_CASE("units: every one is its own spelling, and those that convert give a number back") {
  std::size_t pairs = 0;
  for (const std::string& from : Units()) {
    CHECK(UnitNamed(' ' + from) == from);
    for (const std::string& to : Units()) try {
        const double back = InUnit(InUnit(1.25, from, to), to, from);
        CHECK(back == doctest::Approx(1.25).epsilon(1e-15));
        ++pairs;
      } catch (const Error&) {
      }
  }
  CHECK(pairs == 5 * 5 + 6 * 6 + 12 * 12);  // fields, times, light
  CHECK(UnitNamed("arb. units").empty());
}

TEST_CASE("units: g factors of a field, by the frequency that the file tells") {
  Dataset d;
  CHECK(!d.MicrowaveFrequency());
  d.parameters = {{.section = "", .key = "MF", .text = "9.5", .number = 9.5, .unit = "GHz"}};
  CHECK(*d.MicrowaveFrequency() == 9.5e9);
  CHECK(Described(Even("G", 3390, 3400).InGValues(9.5e9)) == "g () stored 2.002222667 1.999273885 1.996333776");
  CHECK_THROWS_AS((void)Even("nm").InGValues(9.5e9), Error);
  CHECK_THROWS_AS((void)Even("G").InGValues(0), Error);
}
