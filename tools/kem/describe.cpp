#include "describe.h"

#include <cmath>
#include <limits>

#include "portable.h"

namespace kem::tool {
namespace {

// What the digits of a number in single precision say: 19.8, not 19.79999924.
double Meant(double value) {
  if (!(std::fabs(value) <= std::numeric_limits<float>::max())) return value;
  const auto single = static_cast<float>(value);
  if (single != value) return value;
  std::string digits;
  portable::AppendShortest(digits, single);
  portable::FromChars(digits.data(), digits.data() + digits.size(), value);
  return value;
}

}  // namespace

// A NaN does not count beside numbers.
Range::Range(const Values& values) {
  const auto see = [this](double v) {
    if (v < min || std::isnan(min)) min = v;
    if (v > max || std::isnan(max)) max = v;
  };
  values.Visit([&](auto numbers) {
    const std::size_t step = values.IsComplex() ? 2 : 1;
    for (std::size_t k = 0; k < numbers.size(); k += step) {
      const double re = numbers[k];
      see(step == 2 ? std::hypot(re, static_cast<double>(numbers[k + 1])) : re);
    }
  });
}

std::string NumberText(double value) {
  std::string text;
  portable::AppendGeneral(text, Meant(value), 10);
  return text;
}

std::string WithUnit(const Parameter& p) {
  const bool told = p.unit.empty() || p.text.ends_with(p.unit) || p.key.ends_with('(' + p.unit + ')');
  return told ? p.text : p.text + ' ' + p.unit;
}

std::string Named(const std::string& name, const std::string& unit) {
  if (unit.empty()) return name;
  return name + (name.empty() ? "(" : " (") + unit + ')';
}

}  // namespace kem::tool
