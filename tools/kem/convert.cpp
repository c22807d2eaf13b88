// kem convert: files in another format.
#include "join.h"

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
  app.add_flag("--header", task->output.header, "csv: begin with the title and the parameters, # key: value unit");
  app.add_flag("--metadata", task->output.metadata, "Write axes, parameters and notes beside each file, as JSON");
  auto resample = std::make_shared<bool>(false);
  CLI::Option* join = app.add_flag("--join")->description("csv: one table of curves, X and a column for each");
  for (const char* other : {"--dir", "--update", "--report", "--matrix", "--header", "--metadata", "--classic"})
    join->excludes(app.get_option(other));
  app.add_flag("--resample", *resample, "Join curves whose X differ, at the coordinates of the first")->needs(join);
  return [&app, task, join, resample] {
    return join->count() > 0 ? Join(app, *task, *resample) : Transform(app, *task, nullptr);
  };
}

}  // namespace kem::tool
