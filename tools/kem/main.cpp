// The kem command: how a command line reaches one of the commands.
#include <algorithm>
#include <iostream>
#include <new>
#include <string>
#include <string_view>

#include "command.h"
#include "each_file.h"
#include "kem.h"
#include "output.h"

namespace kem::tool {
namespace {

constexpr const char* kDescription =
    "Shows, converts and analyses the data files of laboratory spectrometers and cameras";

constexpr const char* kDetails =
    R"(A file is recognised by its name, then by its first bytes. Messages go to
standard error, one sentence for each file that fails; the other files are done
nevertheless. "kem help COMMAND" explains a command.

Examples:
  kem info scan.DSC
  kem info --json *.DSC | jq '.[].parameters.bes3tMwFrequency'
  kem convert scan.DSC -o scan.prn
  kem convert --to csv --all-items --dir tables *.par
  kem smooth -w 9 --to b2d --dir smooth *.prn
  kem calc "scan.DSC - 0.5 * empty.DSC" -o difference.prn
  kem stats --json *.DSC)";

void Define(CLI::App& app, int& status) {
  app.set_help_flag("-h,--help", "Show this help");
  app.set_version_flag("-V,--version", std::string("kem ") + KemVersion(), "Show the version");
  app.footer(kDetails);
  app.get_formatter()->column_width(28);
  app.get_formatter()->label("Positionals", "Arguments");
  app.get_formatter()->label("REQUIRED", "");
  app.get_formatter()->label("SUBCOMMAND", "COMMAND");
  app.allow_windows_style_options(false);  // a file may be named /data/x there too
  app.require_subcommand(1);
  for (const Command& command : Commands()) {
    CLI::App& one = *app.add_subcommand(command.name, command.summary)->group("Commands");
    one.footer(command.details);
    one.callback([run = command.define(one), &status] { status = run(); });
  }
}

bool IsCommand(std::string_view name) {
  return std::ranges::any_of(Commands(), [name](const Command& c) { return name == c.name; });
}

int Parse(CLI::App& app, int argc, char** argv) {
  const std::string first = argc > 1 ? argv[1] : "";
  if (!first.starts_with('-') && !IsCommand(first)) {
    Complain((first.empty() ? "a command is expected" : "there is no command " + first) + kSeeHelp);
    return kMisused;
  }
  try {
    app.parse(argc, argv);
  } catch (const CLI::Success& request) {  // help or version
    app.exit(request);
  } catch (const CLI::ParseError& misuse) {
    const auto commands = app.get_subcommands();
    Complain((commands.empty() ? "" : commands.front()->get_name() + ": ") + misuse.what());
    return kMisused;
  }
  return 0;
}

int Main(int argc, char** argv) {
  int status = 0;
  CLI::App app(kDescription, "kem");
  Define(app, status);
  if (const int misuse = Parse(app, argc, argv)) return misuse;
  std::cout.flush();
  if (std::cout) return status;
  Complain("standard output cannot be written");
  return kFailed;
}

}  // namespace

void RequireAny(CLI::App& app, const CLI::Option* first, const CLI::Option* second) {
  app.parse_complete_callback([first, second] {
    if (first->count() + second->count() == 0)
      throw CLI::RequiredError(first->get_name() + " or " + second->get_name());
  });
}

void RequireOne(CLI::App& app, CLI::Option* first, CLI::Option* second) {
  first->excludes(second);
  RequireAny(app, first, second);
}

void AddFiles(CLI::App& app, std::vector<std::string>& files) {
  app.add_option("FILE", files, "Files of any format that kem knows")->type_name("")->required();
}

CLI::Option* AddItem(CLI::App& app, int& item) {
  return app.add_option("-i,--item", item, "Item of a file that holds several, counted from 1")
      ->type_name("N")
      ->check(CLI::Range(1, 1000000).description(""));
}

}  // namespace kem::tool

int main(int argc, char** argv) {
  kem::tool::HandleInterrupts();
  try {
    return kem::tool::Main(argc, argv);
  } catch (const std::bad_alloc&) {
    kem::tool::Complain("there is not enough memory");
  } catch (const std::exception& error) {
    kem::tool::Complain(error.what());
  }
  return kem::tool::kFailed;
}
