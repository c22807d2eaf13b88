// Units of axes and what they are worth in each other: one table.
#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>
#include <utility>

#include "dataset/source.h"
#include "text/words.h"

namespace kem {
namespace dataset {
using namespace text;
namespace {

// ------------------------------------------------------------ table

// What an axis shows. The last four tell the same of light: its energy over 1, hc and h, and hc over it.
enum class Quantity { Field, Time, Energy, Wavenumber, Frequency, Wavelength };

struct Unit {
  const char* name;
  Quantity quantity;
  int power;              // of ten: how much it is of T, s, eV, 1/m, Hz and m
  const char* spellings;  // others that files have, in any case
};

constexpr Unit kUnits[] = {
    {"T", Quantity::Field, 0, "tesla"},
    {"mT", Quantity::Field, -3, "millitesla"},
    {"uT", Quantity::Field, -6, "\u00B5T \u03BCT microtesla"},
    {"G", Quantity::Field, -4, "gauss"},
    {"kG", Quantity::Field, -1, "kilogauss"},
    {"s", Quantity::Time, 0, "sec sec. second seconds"},
    {"ms", Quantity::Time, -3, "msec millisecond milliseconds"},
    {"us", Quantity::Time, -6, "\u00B5s \u03BCs usec \u00B5sec microsecond microseconds"},
    {"ns", Quantity::Time, -9, "nsec nanosecond nanoseconds"},
    {"ps", Quantity::Time, -12, "psec picosecond picoseconds"},
    {"fs", Quantity::Time, -15, "fsec femtosecond femtoseconds"},
    {"eV", Quantity::Energy, 0, "ev electronvolt electronvolts"},
    {"meV", Quantity::Energy, -3, "millielectronvolt millielectronvolts"},
    {"keV", Quantity::Energy, 3, "kev kiloelectronvolt kiloelectronvolts"},
    {"cm-1", Quantity::Wavenumber, 2, "1/cm cm^-1 /cm cm**-1 cm^{-1} cm\u207B\u00B9 wavenumber wavenumbers"},
    {"Hz", Quantity::Frequency, 0, "hz hertz"},
    {"kHz", Quantity::Frequency, 3, "khz kilohertz"},
    {"MHz", Quantity::Frequency, 6, "mhz megahertz"},
    {"GHz", Quantity::Frequency, 9, "ghz gigahertz"},
    {"THz", Quantity::Frequency, 12, "thz terahertz"},
    {"nm", Quantity::Wavelength, -9, "nanometer nanometers nanometre nanometres"},
    {"um", Quantity::Wavelength, -6,
     "\u00B5m \u03BCm micron microns micrometer micrometers micrometre micrometres"},
    {"\u00C5", Quantity::Wavelength, -10, "\u212B angstrom angstroms"},
};

// The exact constants of the SI, and the Bohr magneton of CODATA 2022.
constexpr double kPlanck = 6.62607015e-34;      // J s
constexpr double kLight = 299792458;            // m/s
constexpr double kCharge = 1.602176634e-19;     // J/eV
constexpr double kMagneton = 9.2740100657e-24;  // J/T

// What one of a quantity is worth in waves per metre.
double PerMetre(Quantity quantity) {
  if (quantity == Quantity::Energy) return kCharge / (kPlanck * kLight);
  return quantity == Quantity::Frequency ? 1 / kLight : 1;
}

bool IsLight(const Unit& unit) { return unit.quantity >= Quantity::Energy; }
bool IsLength(const Unit& unit) { return unit.quantity == Quantity::Wavelength; }

// Whether one is the larger the smaller the other is.
bool Inverts(const Unit& from, const Unit& to) { return IsLength(from) != IsLength(to); }

// Letters beyond ASCII differ in their bytes.
bool IsSpelling(const Unit& unit, std::string_view text) {
  const auto others = SplitList(unit.spellings, ' ');
  return text == unit.name ||
         std::any_of(others.begin(), others.end(), [text](const std::string& s) { return EqualButCase(s, text); });
}

// A name counts before other spellings, whose letters may be of any size.
const Unit* UnitOf(std::string_view text) {
  text = Trimmed(text, " \t[]");
  const auto with = [](auto holds) {
    const auto* found = std::find_if(std::begin(kUnits), std::end(kUnits), holds);
    return found == std::end(kUnits) ? nullptr : found;
  };
  const Unit* named = with([text](const Unit& u) { return text == u.name; });
  return named ? named : with([text](const Unit& u) { return IsSpelling(u, text); });
}

// ------------------------------------------------------------ numbers

double Power(int exponent) {
  double power = 1;
  for (; exponent > 0; --exponent) power *= 10;
  return power;
}

// A number is kept as a fraction, so that powers of ten, which are exact, round nothing.
double Convert(double number, const Unit& from, const Unit& to) {
  double over = number;
  double under = 1;
  if (IsLength(from)) std::swap(over, under);
  if (from.quantity != to.quantity) {
    over *= PerMetre(from.quantity);
    under *= PerMetre(to.quantity);
  }
  const int power = (IsLength(from) ? -from.power : from.power) - (IsLength(to) ? -to.power : to.power);
  over *= Power(power);
  under *= Power(-power);
  return IsLength(to) ? under / over : over / under;
}

[[noreturn]] void Refuse(const std::string& why) { throw Error(ErrorCode::DoesNotFit, why); }

std::string Quoted(std::string_view text) { return "'" + std::string(text) + "'"; }

const Unit& Known(std::string_view text) {
  if (const Unit* unit = UnitOf(text)) return *unit;
  Refuse(text.empty() ? "there is no unit to convert from" : Quoted(text) + " is no unit that converts");
}

void CheckConverts(const Unit& from, const Unit& to) {
  if (from.quantity != to.quantity && !(IsLight(from) && IsLight(to)))
    Refuse(std::string(from.name) + " cannot be converted into " + to.name);
}

// An axis whose coordinates a function takes one by one; it goes through none that is 0 or less.
template <class Function>
Axis Inverted(const Axis& axis, std::string name, std::string unit, Function function) {
  std::vector<double> coordinates = axis.Coordinates();
  for (double& x : coordinates) {
    if (!(x > 0))
      Refuse("coordinates that are not positive have no counterpart in " + (unit.empty() ? name : unit));
    x = function(x);
  }
  return Axis::Stored(std::move(name), std::move(unit), std::move(coordinates));
}

// What an axis that changes its quantity is called from then on.
std::string NameIn(const std::string& name, const Unit& from, const Unit& to) {
  constexpr const char* kNames[] = {"Field", "Time", "Energy", "Wavenumber", "Frequency", "Wavelength"};
  return from.quantity == to.quantity ? name : kNames[static_cast<std::size_t>(to.quantity)];
}

}  // namespace
}  // namespace dataset

using namespace dataset;

std::vector<std::string> Units() {
  std::vector<std::string> names;
  for (const Unit& unit : kUnits) names.emplace_back(unit.name);
  return names;
}

std::string UnitNamed(std::string_view spelling) {
  const Unit* unit = UnitOf(spelling);
  return unit ? unit->name : std::string();
}

double InUnit(double number, std::string_view from, std::string_view to) {
  const Unit& source = Known(from);
  const Unit& target = Known(to);
  CheckConverts(source, target);
  return Convert(number, source, target);
}

Axis Axis::In(std::string_view unitName) const {
  const Unit& from = Known(unit);
  const Unit& to = Known(unitName);
  CheckConverts(from, to);
  std::string title = NameIn(name, from, to);
  const auto convert = [&](double x) { return Convert(x, from, to); };
  if (Inverts(from, to)) {
    if (text::Lower(name).find("shift") != name.npos)
      Refuse("a shift has no " + std::string(IsLength(to) ? "wavelength" : "energy") + " of its own");
    return Inverted(*this, std::move(title), to.name, convert);
  }
  if (IsLinear()) return Linear(std::move(title), to.name, count_, convert(start_), convert(end_));
  std::vector<double> coordinates = stored_;
  for (double& x : coordinates) x = convert(x);
  return Stored(std::move(title), to.name, std::move(coordinates));
}

Axis Axis::InGValues(double frequency) const {
  if (!(frequency > 0)) Refuse("g values need the frequency of the microwave");
  const Unit& from = Known(unit);
  const Unit& tesla = Known("T");
  if (from.quantity != tesla.quantity) Refuse("g values are those of a field, not of " + std::string(from.name));
  return Inverted(*this, "g", {},
                  [&](double x) { return kPlanck * frequency / (kMagneton * Convert(x, from, tesla)); });
}

std::optional<double> Dataset::MicrowaveFrequency() const {
  for (const Parameter& p : parameters) {
    constexpr std::string_view kKeys[] = {"MWFQ", "MF", "FrequencyMon"};
    const std::string_view key = Trimmed(p.key, "$");
    if (std::find(std::begin(kKeys), std::end(kKeys), key) == std::end(kKeys) || !p.number) continue;
    const Unit* known = UnitOf(p.unit);
    if (known && known->quantity == Quantity::Frequency && *p.number > 0)
      return Convert(*p.number, *known, Known("Hz"));
  }
  return std::nullopt;
}

}  // namespace kem
