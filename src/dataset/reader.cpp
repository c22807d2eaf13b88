#include "dataset/reader.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>

#include "text/words.h"

namespace kem::dataset {
using namespace text;

std::string Begins(Source& source, std::string_view mark) {
  if (!source.Head().starts_with(mark)) return {};
  const bool readable = std::all_of(mark.begin(), mark.end(), [](char c) { return c >= ' ' && c < 0x7F; });
  return readable ? "begins with " + std::string(mark) : "its first " + std::to_string(mark.size()) + " bytes";
}

std::vector<std::string> OneItem(Source&) { return {std::string()}; }

NamedUnit SplitTitle(std::string_view title) {
  title = Trimmed(title);
  if (title.size() > 1 && title.front() == '"' && title.back() == '"') title = title.substr(1, title.size() - 2);
  for (const std::string_view brackets : {"()", "[]"}) {
    const auto open = title.rfind(brackets[0]);
    if (open == title.npos || !title.ends_with(brackets[1])) continue;
    return {std::string(Trimmed(title.substr(0, open))),
            std::string(Trimmed(title.substr(open + 1, title.size() - open - 2)))};
  }
  return {std::string(title), {}};
}

void AddParameter(Dataset& dataset, std::string_view section, std::string_view key, std::string_view text,
                  std::string_view unit) {
  Parameter parameter{.section = Utf8(section), .key = Utf8(key), .text = Utf8(text), .unit = Utf8(unit)};
  parameter.number = NumberIn(text);
  const auto open = key.rfind(" (");
  if (parameter.number && unit.empty() && open != key.npos && key.back() == ')')
    parameter.unit = Utf8(key.substr(open + 2, key.size() - open - 3));
  const auto blank = text.find(' ');
  if (!parameter.number && unit.empty() && blank != text.npos && text.find(' ', blank + 1) == text.npos) {
    parameter.number = NumberIn(text.substr(0, blank));
    if (parameter.number) parameter.unit = Utf8(text.substr(blank + 1));
  }
  dataset.parameters.push_back(std::move(parameter));
}

std::uint64_t CountOf(std::span<const Axis> axes) {
  std::uint64_t count = 1;
  for (const Axis& axis : axes) {
    if (axis.Count() == 0) return 0;
    if (count > std::numeric_limits<std::uint64_t>::max() / 16 / axis.Count()) throw std::bad_alloc();
    count *= axis.Count();
  }
  return count;
}

std::size_t FitToFile(Dataset& dataset, std::uint64_t held, std::string_view place) {
  const std::uint64_t announced = CountOf(dataset.axes);
  if (held < announced) {
    Axis& slowest = dataset.axes.front();
    const std::uint64_t slice = announced / slowest.Count();
    slowest = slowest.First(static_cast<std::size_t>(held / slice));
    dataset.notes.push_back({Severity::Damaged, std::string(place) + " holds " + std::to_string(held) + " of " +
                                                    std::to_string(announced) + " points"});
  }
  return static_cast<std::size_t>(CountOf(dataset.axes));
}

}  // namespace kem::dataset
