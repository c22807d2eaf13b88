#include "lost.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "describe.h"
#include "input.h"
#include "jcamp.h"
#include "system.h"

namespace kem::tool {
namespace {

bool Differ(double a, double b) { return !(a == b || (std::isnan(a) && std::isnan(b))); }

// Fifteen digits of a coordinate that is computed are the same.
bool Rounded(const kem::Axis& before, const kem::Axis& after) {
  const double tolerance = 1e-14 * std::max(std::fabs(before.Start()), std::fabs(before.End()));
  for (std::size_t k = 0; k < before.Count(); ++k)
    if (Differ(before[k], after[k]) && !(std::fabs(before[k] - after[k]) <= tolerance)) return true;
  return false;
}

// Text tells single precision by the digits that it needs.
bool Rounded(const Values& before, const Values& after) {
  const bool single = before.Type() == NumberType::F32;
  for (std::size_t k = 0; k < before.Count(); ++k) {
    const double read = after.Real(k);
    if (Differ(before.Real(k), single ? static_cast<float>(read) : read)) return true;
  }
  return false;
}

// A file may hold a parameter with its unit, or under a label of its own.
bool Holds(const Dataset& d, const Parameter& parameter) {
  return IsJcampLabel(parameter.key) ||
         std::any_of(d.parameters.begin(), d.parameters.end(), [&parameter](const Parameter& p) {
           const bool same = p.key == parameter.key || p.key == '$' + parameter.key;
           return same && (p.text == parameter.text || (p.number && p.number == parameter.number));
         });
}

class Comparison {
 public:
  Comparison(const Dataset& before, const Dataset& after) {
    if (before.values.IsComplex() && after.items < 2) Say("imaginary parts are", "left out");
    if (before.axes.size() != after.axes.size() || before.values.Count() != after.values.Count()) {
      Say("dimensions are", "not kept");
      return;
    }
    if (Rounded(before.values, after.values)) Say("values are", "rounded");
    for (std::size_t a = before.axes.size(); a-- > 0;) {
      const std::string name = a + 1 == before.axes.size() ? "X" : "Y";
      if (Rounded(before.axes[a], after.axes[a])) Say(name + " is", "rounded");
      Compare(name, Named(before.axes[a].name, before.axes[a].unit), Named(after.axes[a].name, after.axes[a].unit));
    }
    const bool part = before.values.IsComplex();  // "I re (V)"
    if (!part) Compare("the values", Named(before.name, before.unit), Named(after.name, after.unit));
    if (!before.title.empty() && before.title != after.title) Say("the title is", "left out");
    const auto missing = std::count_if(before.parameters.begin(), before.parameters.end(),
                                       [&after](const Parameter& p) { return !Holds(after, p); });
    if (missing > 0)
      Say(std::to_string(missing) + (missing == 1 ? " parameter is" : " parameters are"), "left out");
  }

  const std::string& Text() const { return text_; }

 private:
  void Say(const std::string& what, const char* how) { text_ += (text_.empty() ? "" : ", ") + what + ' ' + how; }
  void Compare(const std::string& what, const std::string& before, const std::string& after) {
    if (!before.empty() && before != after) Say("name or unit of " + what + " is", "not kept");
  }

  std::string text_;
};

}  // namespace

std::string LostIn(const std::string& file, const Dataset& dataset) {
  std::string lost;
  const Problem problem = Attempted(PathOf(file), [&] { lost = Comparison(dataset, Open(PathOf(file))).Text(); });
  return problem.empty() ? lost : "it does not read back: " + problem;
}

}  // namespace kem::tool
