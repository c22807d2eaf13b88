#include "describe.h"

#include <cmath>

#include "portable.h"

namespace kem::tool {

Range::Range(const Values& values) {
  for (std::size_t k = 0; k < values.Count(); ++k) {
    const double v = values.IsComplex() ? std::hypot(values.Real(k), values.Imaginary(k)) : values.Real(k);
    min = std::fmin(min, v);
    max = std::fmax(max, v);
  }
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
