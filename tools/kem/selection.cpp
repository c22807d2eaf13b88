#include "selection.h"

#include <algorithm>

#include "options.h"

namespace kem::tool {

void AddSelection(CLI::App& app, Selection& selection) {
  AddFiles(app, selection.files);
  AddUnits(app);
  CLI::Option* item = AddItem(app, selection.item);
  app.add_flag("-a,--all-items", selection.allItems, "Take every item of a file")->excludes(item);
}

bool NoProblem(const Input& input, const Problem& problem) {
  const bool name = input.IsOneOfSeveral() && !problem.empty();
  const std::string of = input.name.empty() ? "" : " '" + input.name + '\'';
  return NoProblem(input.file, (name ? "item " + std::to_string(input.item) + of + ": " : "") + problem);
}

int EachSelected(const Selection& selection, const Pass& pass, const std::function<bool(Input&)>& action) {
  return EachFile(selection.files, pass, [&](const std::string& file) {
    if (selection.allItems) return EachItem(file, action);
    Input input = LoadItem(file, std::max(selection.item, 1));
    if (!NoProblem(file, input.problem) || !action(input)) return false;
    if (selection.item == 0 && input.more) Tell(file, "holds further items; --all-items takes them too");
    return true;
  });
}

}  // namespace kem::tool
