// kem convert: files in another format.
#include "transform.h"

namespace kem::tool {
namespace {

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
  app.footer(app.get_footer() + FormatList());
  auto task = AddTask(app);
  app.add_flag("--matrix", task->output.matrix, "csv: a line for each Y, with the X coordinates in the first line");
  app.add_flag("--metadata", task->output.metadata, "Write axes, parameters and notes beside each file, as JSON");
  return [&app, task] { return Transform(app, *task, nullptr); };
}

}  // namespace kem::tool
