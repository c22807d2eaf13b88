#include "join.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>
#include <set>

#include "csv.h"
#include "describe.h"
#include "system.h"

namespace kem::tool {
namespace {

class Joined {
 public:
  explicit Joined(bool resample) : resample_(resample) {}

  // Adds the columns of an item, or tells why it does not go with the first one.
  Problem Add(const Input& input) {
    const Dataset& d = *input.dataset;
    if (d.axes.size() != 1) return "is no curve, and only curves are joined";
    kem::Axis x = d.axes[0];
    if (columns_.empty()) {
      x_ = x;
      first_ = input.file;
    } else if (Problem problem = resample_ ? Convert(x) : Disagrees(x); !problem.empty()) {
      return problem;
    }
    const std::string name = NameOf(input);
    const bool pairs = d.values.IsComplex() && !HowToRead().part;
    for (int part = 0; part < (pairs ? 2 : 1); ++part)
      columns_.push_back({Named(pairs ? name + (part == 0 ? " re" : " im") : name, d.unit),
                          d.values.IsComplex() && !pairs ? NumberType::F32 : d.values.Type(),
                          OnFirst(x, NumbersOf(input, part == 1))});
    return {};
  }

  bool Write(const std::string& name) const { return WriteColumns(x_, columns_, name.c_str()); }
  bool IsEmpty() const { return columns_.empty(); }

 private:
  Problem Disagrees(const kem::Axis& x) const {
    if (x.unit != x_.unit)
      return "its X is in '" + x.unit + "', that of " + first_ + " in '" + x_.unit + "'; --x-unit converts";
    const std::string of = ", that of " + first_ + ' ';
    const std::string hint = "; --resample takes its values to the coordinates of the first";
    if (x.Count() != x_.Count())
      return "its X has " + std::to_string(x.Count()) + " points" + of + std::to_string(x_.Count()) + hint;
    const double tolerance = 1e-6 * std::fabs(x_.End() - x_.Start());
    for (std::size_t k = 0; k < x.Count(); ++k)
      if (!(std::fabs(x[k] - x_[k]) <= tolerance))
        return std::string("its X coordinate ")
            .append(std::to_string(k + 1) + " is ")
            .append(NumberText(x[k]) + of)
            .append(NumberText(x_[k]) + hint);
    return {};
  }

  // Into the unit of the first one, where that has another.
  Problem Convert(kem::Axis& x) const try {
    if (x.unit != x_.unit) x = x.In(x_.unit);
    return {};
  } catch (const Error& error) {
    return "its X does not go with that of " + first_ + ": " + error.what();
  }

  // The stem of the file, or all of its name where another one has that stem.
  std::string NameOf(const Input& input) {
    const std::string item =
        input.IsOneOfSeveral() ? ' ' + (input.name.empty() ? std::to_string(input.item) : input.name) : "";
    std::string name = PathOf(input.file).stem().string() + item;
    if (!names_.insert(name).second) name = input.file + item;
    return name;
  }

  // At the coordinates of the first one, on the line through two neighbours; nothing where there are no neighbours.
  std::vector<double> OnFirst(const kem::Axis& axis, std::vector<double> y) const {
    if (!resample_ || columns_.empty()) return y;
    const std::vector<double> x = axis.Coordinates();
    std::vector<std::size_t> order(x.size());
    std::iota(order.begin(), order.end(), std::size_t{0});
    std::stable_sort(order.begin(), order.end(), [&x](std::size_t a, std::size_t b) { return x[a] < x[b]; });
    std::vector<double> at(x_.Count(), std::numeric_limits<double>::quiet_NaN());
    for (std::size_t k = 0; k < at.size(); ++k) {
      const double here = x_[k];
      const auto above =
          std::lower_bound(order.begin(), order.end(), here, [&x](std::size_t a, double b) { return x[a] < b; });
      if (above == order.end()) continue;
      if (x[*above] == here)
        at[k] = y[*above];
      else if (above != order.begin()) {
        const std::size_t low = *(above - 1);
        at[k] = y[low] + (here - x[low]) / (x[*above] - x[low]) * (y[*above] - y[low]);
      }
    }
    return at;
  }

  bool resample_;
  std::string first_;
  kem::Axis x_;
  std::set<std::string> names_;
  std::vector<Column> columns_;
};

}  // namespace

int Join(const CLI::App& app, Task& task, bool resample) {
  const Format* format = FormatOf(app, task.output);
  if (!format) return kMisused;
  if (task.output.file.empty() || std::string_view(format->name) != "csv") {
    Complain(app.get_name() + ": --join writes one csv table, to --output");
    return kMisused;
  }
  TakeComplexValues();
  Joined table(resample);
  const int status = EachSelected(task.selection, {.done = "joined"},
                                  [&](const Input& input) { return NoProblem(input, table.Add(input)); });
  if (status == 0 && table.IsEmpty()) return NoProblem(app.get_name(), "there are no curves to join") ? 0 : kFailed;
  if (status != 0) {
    Complain(task.output.file + " is not written, because not all files can be joined");
    return status;
  }
  const auto write = [&table](const std::string& name) {
    return table.Write(name) ? Problem() : "cannot be written completely";
  };
  return NoProblem(app.get_name(), SaveFile(write, task.output)) ? 0 : kFailed;
}

}  // namespace kem::tool
