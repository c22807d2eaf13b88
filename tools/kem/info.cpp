// kem info and kem items: what a file holds.
#include <algorithm>
#include <cmath>
#include <iostream>
#include <memory>

#include "classic_info.h"
#include "command.h"
#include "describe.h"
#include "document.h"
#include "input.h"
#include "json.h"
#include "options.h"
#include "portable.h"
#include "source.h"
#include "system.h"
#include "text.h"

namespace kem::tool {
namespace {

struct InfoOptions {
  FileList files;
  int item = 1;
  int level = 3;
  bool json = false;
};

// ------------------------------------------------------------ report

std::string TypeOf(const Values& values) {
  return std::string(values.IsComplex() ? "complex " : "") + kem::NameOf(values.Type());
}

void PrintLine(const std::string& label, const std::string& text) {
  constexpr std::size_t kWidth = 10;
  if (!text.empty())
    std::cout << label << std::string(std::max(kWidth, label.size() + 1) - label.size(), ' ') << Printable{text}
              << '\n';
}

std::string Described(const Axis& axis) {
  std::string text = Named(axis.name, axis.unit);
  text += (text.empty() ? "" : ": ") + std::to_string(axis.Count()) + (axis.Count() == 1 ? " point" : " points");
  if (axis.Count() == 0) return text;
  text += ", " + NumberText(axis.Start()) + " to " + NumberText(axis.End());
  return text + (axis.IsLinear() ? " in steps of " + NumberText(axis.Step()) : ", stored");
}

std::string DescribedValues(const Dataset& d) {
  std::string shape;
  for (const Axis& axis : d.axes) shape += (shape.empty() ? "" : " x ") + std::to_string(axis.Count());
  const Range range(d.values);
  const std::string name = Named(d.name, d.unit);
  const std::string text = name + (name.empty() ? "" : ": ") + shape + ' ' + TypeOf(d.values) + ", ";
  if (d.values.Count() == 0) return text + "no values";
  if (std::isnan(range.min)) return text + "none of them a number";
  return text + NumberText(range.min) + " to " + NumberText(range.max) +
         (d.values.IsComplex() ? " in magnitude" : "");
}

// Those of no section come first, whatever stands between them.
void PrintParameters(const Dataset& d) {
  std::string section;
  for (const bool inSections : {false, true})
    for (const Parameter& p : d.parameters) {
      if (p.section.empty() == inSections) continue;
      if (p.section != section) std::cout << '[' << Printable{section = p.section} << "]\n";
      std::cout << "  " << Printable{p.key} << " = " << Printable{WithUnit(p)} << '\n';
    }
}

void PrintReport(const Input& input) {
  const Dataset& d = *input.dataset;
  std::cout << Printable{input.file} << '\n';
  PrintLine("format", d.format);
  if (d.items > 1) PrintLine("item", std::to_string(d.item) + " of " + std::to_string(d.items) + ' ' + d.itemName);
  PrintLine("title", d.title);
  PrintLine("values", DescribedValues(d));
  for (const Axis& axis : d.axes) PrintLine("axis", Described(axis));
  PrintParameters(d);
}

// ------------------------------------------------------------ commands

// Opens each file and runs an action on it.
int EachOpened(const InfoOptions& options, const std::function<void(const Input&)>& action) {
  return EachFile(options.files, {}, [&](const std::string& file) {
    const Input input = HowToRead().classic ? LoadItem(file, options.item) : OpenItem(file, options.item);
    if (!NoProblem(file, input.problem)) return false;
    action(input);
    return true;
  });
}

int PrintReports(const InfoOptions& options) {
  bool first = true;
  return EachOpened(options, [&](const Input& input) {
    if (!first) std::cout << '\n';
    first = false;
    if (!input.dataset) return PrintRecord(*input.record, options.level);
    PrintReport(input);
    std::cout.flush();
    for (const Note& note : input.dataset->notes) Tell(input.file, note.text);
  });
}

int PrintJson(const InfoOptions& options) {
  Json document = Json::array();
  const int status = EachOpened(options, [&](const Input& input) { document.push_back(Describe(input)); });
  std::cout << document.dump(2) << '\n';
  return status;
}

struct ItemsOptions {
  FileList files;
  bool json = false;
};

// The items of a file, or the problem.
std::vector<ItemInfo> ItemsOf(const std::string& file, Problem& problem) {
  const Source source(file, Source::Names::Any);
  problem = source.WhyNot();
  std::vector<ItemInfo> items;
  if (problem.empty()) problem = Attempted(PathOf(source.Name()), [&] { items = Items(PathOf(source.Name())); });
  return items;
}

int PrintItems(const ItemsOptions& options) {
  Json document = Json::array();
  const int status = EachFile(options.files, {}, [&](const std::string& file) {
    if (HowToRead().classic) return PrintClassicItems(file);
    Problem problem;
    const auto items = ItemsOf(file, problem);
    if (!NoProblem(file, problem)) return false;
    if (options.json) {
      Json list = Json::array();
      for (const ItemInfo& item : items) list.push_back({{"item", item.number}, {"name", item.name}});
      document.push_back({{"file", Utf8(file)}, {"items", std::move(list)}});
      return true;
    }
    std::cout << Printable{file} << ": " << items.size() << (items.size() == 1 ? " item" : " items") << '\n';
    for (const ItemInfo& item : items) std::cout << item.number << '\t' << Printable{item.name} << '\n';
    return true;
  });
  if (options.json) std::cout << document.dump(2) << '\n';
  return status;
}

}  // namespace

Run DefineInfo(CLI::App& app) {
  auto options = std::make_shared<InfoOptions>();
  AddFiles(app, options->files);
  AddUnits(app);
  AddItem(app, options->item);
  app.add_option(
         "-l,--level", options->level,
         "How much of the classic report to print: 1 shape, 2 also ranges, 3 also titles and parameters, 5 also "
         "all values (default 3)")
      ->type_name("N")
      ->check(WholeNumber(1, 5))
      ->needs(app.get_option("--classic"));
  app.add_flag("-j,--json", options->json, "Print one JSON document, a list with one record per file");
  return [options] { return options->json ? PrintJson(*options) : PrintReports(*options); };
}

Run DefineItems(CLI::App& app) {
  auto options = std::make_shared<ItemsOptions>();
  AddFiles(app, options->files);
  app.add_flag("-j,--json", options->json, "Print one JSON document, a list with one entry per file")
      ->excludes(app.get_option("--classic"));
  return [options] { return PrintItems(*options); };
}

}  // namespace kem::tool
