// The kem command: the table of commands, and how a command line reaches one of them.
#include <algorithm>
#include <iostream>
#include <iterator>
#include <new>
#include <string>
#include <string_view>

#include "command.h"
#include "each_file.h"
#include "kem.h"
#include "output.h"

namespace kem::tool {
namespace {

constexpr Command kCommands[] = {
    {"info", "Show what files hold: shape, axes, titles and acquisition parameters",
     R"(The item, if a file holds several, counts from 1. A number in the JSON document
is null where a file holds none that is finite. Texts that are no UTF-8 are
taken for Latin-1.)",
     DefineInfo},
    {"items", "List the items of files that hold several",
     R"(Prints for each item its number, its shape and the title of its values, with a
tab in between.)",
     DefineItems},
    {"convert", "Write files in another format",
     R"(Results go beside their sources, with the extension of the format, unless
--output or --dir say otherwise. Existing files are left alone without --force,
and a file appears only when it is complete. Of several items the first is
converted; another one is picked by --item, and _NN put behind its name.

A csv table begins with the axis titles. A curve has a line X,Y for each point, a
grid a line X,Y,Z for each point with X varying fastest, as plotting programs,
spreadsheets and data frames load it. Its numbers read back without loss, those
of the other text formats have six digits.)",
     DefineConvert},
    {"help", "Explain a command", "", DefineHelp},
};

constexpr const char* kDescription = "Shows and converts the data files of laboratory spectrometers and cameras";

constexpr const char* kDetails =
    R"(A file is recognised by its name, then by its first bytes. Messages go to
standard error, one sentence for each file that fails; the other files are done
nevertheless. "kem help COMMAND" explains a command.

Examples:
  kem info scan.DSC
  kem info --json *.DSC | jq '.[].parameters.bes3tMwFrequency'
  kem convert scan.DSC -o scan.prn
  kem convert --to csv --all-items --dir tables *.par)";

void Define(CLI::App& app, int& status) {
  app.set_help_flag("-h,--help", "Show this help");
  app.set_version_flag("-V,--version", std::string("kem ") + KemVersion(), "Show the version");
  app.footer(kDetails);
  app.get_formatter()->column_width(28);
  app.get_formatter()->label("Positionals", "Arguments");
  app.get_formatter()->label("REQUIRED", "");
  app.get_formatter()->label("SUBCOMMAND", "COMMAND");
  app.require_subcommand(1);
  for (const Command& command : kCommands) {
    CLI::App& one = *app.add_subcommand(command.name, command.summary)->group("Commands");
    one.footer(command.details);
    one.callback([run = command.define(one), &status] { status = run(); });
  }
}

bool IsCommand(std::string_view name) {
  return std::any_of(std::begin(kCommands), std::end(kCommands),
                     [name](const Command& c) { return name == c.name; });
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
