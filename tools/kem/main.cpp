// The kem command: how a command line reaches one of the commands.
#include <algorithm>
#include <filesystem>
#include <iostream>
#include <memory>
#include <new>
#include <string>
#include <string_view>
#include <system_error>
#include <vector>

#include "command.h"
#include "each_file.h"
#include "kem.h"
#include "options.h"
#include "system.h"
#include "temporary_file.h"

namespace kem::tool {
namespace {

constexpr const char* kDescription =
    "Shows, converts and analyses the data files of laboratory spectrometers and cameras";

constexpr const char* kDetails =
    R"(A file is recognised by its name, then by its first bytes. Messages go to
standard error, one sentence for each file that fails; the other files are done
nevertheless. "kem help COMMAND" explains a command; "kem FILE" is "kem info FILE".

Examples:
  kem info scan.DSC
  kem info --json *.DSC | jq '.[].title'
  kem convert --to csv -r measurements --dir tables --update
  kem calc "scan.DSC - 0.5 * empty.DSC" -o difference.prn)";

constexpr const char* kNoCommand = "a command is expected; kem --help lists the commands";

void Define(CLI::App& app, int& status) {
  app.set_help_flag("-h,--help", "Show this help");
  app.set_version_flag("-V,--version", std::string("kem ") + KemVersion(), "Show the version");
  app.footer(kDetails);
  app.get_formatter()->column_width(28);
  app.get_formatter()->label("Positionals", "Arguments");
  app.get_formatter()->label("REQUIRED", "(required)");
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
  const auto commands = Commands();
  return std::any_of(commands.begin(), commands.end(), [name](const Command& c) { return name == c.name; });
}

// Whether the first word is a file rather than a command: one that exists, or that looks like a path.
bool NamesFile(const std::string& word) {
  if (word == "-") return true;
  if (word.starts_with('-') || IsCommand(word)) return false;
  std::error_code error;
  return word.find_first_of("./") != word.npos || std::filesystem::exists(PathOf(word), error);
}

// What is wrong with a command line, in our words where the parser's are hard to follow.
std::string Sentence(const CLI::App& app, const CLI::ParseError& misuse) {
  const auto commands = app.get_subcommands();
  if (commands.empty()) return kNoCommand;
  const CLI::App& command = *commands.front();
  std::string sentence = misuse.what();
  if (misuse.get_exit_code() == static_cast<int>(CLI::ExitCodes::ArgumentMismatch))
    if (const auto* option = command.get_option_no_throw(sentence.substr(0, sentence.find(':'))))
      sentence = TakesMore(*option);
  return command.get_name() + ": " + sentence;
}

// A formula may begin with a minus that begins no option; it goes behind all of them, where none is looked for.
void MoveFormula(const CLI::App& calc, std::vector<std::string>& words) {
  for (std::size_t k = 1; k < words.size() && words[k] != "--"; ++k) {
    const CLI::Option* before = calc.get_option_no_throw(words[k - 1]);
    const bool isValue = before && before->get_items_expected_max() > 0;
    const std::string word = words[k];
    if (isValue || word.size() < 2 || word[0] != '-' || word[1] == '-' ||
        calc.get_option_no_throw(word.substr(0, 2)))
      continue;
    words.erase(words.begin() + static_cast<std::ptrdiff_t>(k));
    words.insert(words.end(), {"--", word});
    return;
  }
}

int Parse(CLI::App& app, std::vector<std::string> words) {
  const std::string first = words.empty() ? "" : words.front();
  if (first.empty()) {
    Complain(kNoCommand);
    return kMisused;
  }
  if (NamesFile(first)) words.insert(words.begin(), "info");
  if (!first.starts_with('-') && !IsCommand(words.front())) {
    Complain(NoCommand(first));
    return kMisused;
  }
  if (words.front() == "calc") MoveFormula(*app.get_subcommand("calc"), words);
  try {
    std::reverse(words.begin(), words.end());  // the order in which the parser takes them
    app.parse(words);
  } catch (const CLI::CallForHelp&) {
    const auto commands = app.get_subcommands();
    std::cout << HelpText(commands.empty() ? app : *commands.front());
  } catch (const CLI::Success& request) {  // the version
    app.exit(request);
  } catch (const CLI::ParseError& misuse) {
    Complain(Sentence(app, misuse));
    return kMisused;
  }
  return 0;
}

int Main(int argc, char** argv) {
  int status = 0;
  CLI::App app(kDescription, "kem");
  Define(app, status);
  if (const int misuse = Parse(app, {argv + 1, argv + argc})) return misuse;
  std::cout.flush();
  if (std::cout) return status;
  Complain("standard output cannot be written");
  return kFailed;
}

}  // namespace
}  // namespace kem::tool

int main(int argc, char** argv) {
  const std::shared_ptr<void> console = kem::tool::Utf8Console();
  kem::tool::HandleInterrupts();
  ReadMostMissing = 1 << 18;  // the patience of kem::Open, for --classic as well
  try {
    return kem::tool::Main(argc, argv);
  } catch (const std::bad_alloc&) {
    kem::tool::Complain("there is not enough memory");
  } catch (const std::exception& error) {
    kem::tool::Complain(error.what());
  }
  return kem::tool::kFailed;
}
