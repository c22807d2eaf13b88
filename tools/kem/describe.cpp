#include "describe.h"

#include <cmath>

#include "portable.h"

namespace kem::tool {

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
  portable::AppendGeneral(text, value, 10);
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
