// kem convert: files in another format.
#include <memory>

#include "command.h"
#include "output.h"

namespace kem::tool {
namespace {

struct ConvertOptions {
  std::vector<std::string> files;
  Output output;
  int item = 0;  // 0: the first, under a name without number
  bool allItems = false;
};

bool ConvertItem(const Input& input, int number, const Format& format, Output& output) {
  const Problem problem = Save(*input.record, input.file, number, format, output);
  const bool name = input.IsOneOfSeveral() && !problem.empty();
  return NoProblem(input.file, (name ? "item " + std::to_string(input.item) + ": " : "") + problem);
}

bool ConvertOne(const std::string& file, const Format& format, ConvertOptions& options) {
  const Input input = LoadItem(file, options.item == 0 ? 1 : options.item);
  if (!NoProblem(file, input.problem)) return false;
  const bool numbered = options.item > 0 && input.IsOneOfSeveral() && options.output.file.empty();
  if (!ConvertItem(input, numbered ? input.item : 0, format, options.output)) return false;
  if (options.item == 0 && input.more) Complain(file + ": holds further items; --all-items converts them too");
  return true;
}

bool ConvertAll(const std::string& file, const Format& format, Output& output) {
  return EachItem(file, [&](const Input& input) {
    return ConvertItem(input, input.IsOneOfSeveral() ? input.item : 0, format, output);
  });
}

int Convert(ConvertOptions& options) {
  const Format* format = FormatOf(options.output);
  if (!format) {
    Complain("convert: name a format by --to or by the extension of the output");
    return kMisused;
  }
  if (!options.output.file.empty() && options.files.size() > 1) {
    Complain("convert: --output is for one file, --dir for several");
    return kMisused;
  }
  return EachFile(options.files, "converted", [&](const std::string& file) {
    return options.allItems ? ConvertAll(file, *format, options.output) : ConvertOne(file, *format, options);
  });
}

std::string FormatList() {
  std::string list = "\n\nFormats:\n";
  for (const Format& format : Formats()) {
    list += "  " + std::string(format.name) + "  " + format.what;
    if (!format.grids) list += ", curves only";
    if (!format.curves) list += ", grids only";
    if (format.mostPoints > 0) list += ", at most " + std::to_string(format.mostPoints) + " points along an axis";
    list += '\n';
  }
  return list;
}

}  // namespace

Run DefineConvert(CLI::App& app) {
  auto options = std::make_shared<ConvertOptions>();
  AddFiles(app, options->files);
  AddOutput(app, options->output);
  CLI::Option* item = AddItem(app, options->item);
  app.add_flag("-a,--all-items", options->allItems, "Convert every item of a file, numbered _01, _02, ...")
      ->excludes(item);
  app.footer(app.get_footer() + FormatList());
  return [options] { return Convert(*options); };
}

}  // namespace kem::tool
