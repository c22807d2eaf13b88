// kem help, and the manual page and shell completion that are made from the same descriptions.
#include <algorithm>
#include <iostream>
#include <memory>
#include <set>
#include <sstream>

#include "command.h"
#include "kem.h"
#include "output.h"

namespace kem::tool {
namespace {

std::vector<const CLI::App*> CommandsOf(const CLI::App& root) {
  return root.get_subcommands([](const CLI::App*) { return true; });
}

const CLI::App* CommandNamed(const CLI::App& root, const std::string& name) {
  const auto found = root.get_subcommands([&name](const CLI::App* command) { return command->get_name() == name; });
  return found.empty() ? nullptr : found.front();
}

std::vector<const CLI::Option*> OptionsOf(const CLI::App& app, bool positional) {
  return app.get_options([positional](const CLI::Option* option) {
    return !option->get_group().empty() && option->get_positional() == positional;
  });
}

// ------------------------------------------------------------ manual page

// Text in which nothing is taken for a request of the formatter.
std::string Troff(const std::string& text) {
  std::string escaped;
  for (const char c : text) {
    if (c == '\\' || c == '-') escaped += '\\';
    if (c == '\\')
      escaped += 'e';
    else
      escaped += c;
  }
  if (escaped.starts_with('.') || escaped.starts_with('\'')) escaped.insert(0, "\\&");
  return escaped;
}

// Paragraphs are filled, indented lines are kept as they are.
void PrintParagraphs(const std::string& text) {
  std::istringstream lines(text);
  bool asIs = false;
  for (std::string line; std::getline(lines, line);) {
    const bool indented = line.starts_with(' ');
    if (indented != asIs) std::cout << (indented ? ".nf\n" : ".fi\n");
    asIs = indented;
    std::cout << (line.empty() ? ".PP" : Troff(line)) << '\n';
  }
  if (asIs) std::cout << ".fi\n";
}

void PrintOption(const CLI::Option& option) {
  std::cout << ".TP\n.B " << Troff(option.get_name(false, true));
  if (!option.get_type_name().empty() && option.get_items_expected_max() > 0)
    std::cout << " \\fI" << Troff(option.get_type_name()) << "\\fR";
  std::cout << '\n' << Troff(option.get_description()) << '\n';
}

void PrintCommand(const CLI::App& command) {
  std::cout << ".SS kem " << command.get_name() << " [\\fIOPTIONS\\fR]";
  for (const CLI::Option* argument : OptionsOf(command, true)) {
    const bool several = argument->get_expected_max() > 1;
    std::cout << " \\fI" << argument->get_name(true) << (several ? "...\\fR" : "\\fR");
  }
  std::cout << '\n' << Troff(command.get_description()) << '\n';
  for (const CLI::Option* option : OptionsOf(command, false)) PrintOption(*option);
  if (!command.get_footer().empty()) std::cout << ".PP\n";
  PrintParagraphs(command.get_footer());
}

void PrintManual(const CLI::App& root) {
  std::cout << ".TH KEM 1 \"\" \"kem " << KemVersion() << "\" \"User Commands\"\n"
            << ".SH NAME\nkem \\- " << Troff(root.get_description()) << '\n'
            << ".SH SYNOPSIS\n.B kem\n.I COMMAND\n[\\fIOPTIONS\\fR] [\\fIFILE\\fR...]\n"
            << ".SH DESCRIPTION\n";
  PrintParagraphs(root.get_footer());
  std::cout << ".SH COMMANDS\n";
  for (const CLI::App* command : CommandsOf(root)) PrintCommand(*command);
  std::cout << ".SH EXIT STATUS\n0 if everything asked for was done, " << kFailed << " if something failed, "
            << kMisused << " if the command line cannot be understood.\n";
}

// ------------------------------------------------------------ completion

// The names of an option, "-o,--output", with another separator.
std::string NamesOf(const CLI::Option& option, char separator) {
  std::string names = option.get_name(false, true);
  std::replace(names.begin(), names.end(), ',', separator);
  return names;
}

std::string OptionWords(const CLI::App& command) {
  std::string words;
  for (const CLI::Option* option : OptionsOf(command, false)) words += NamesOf(*option, ' ') + ' ';
  return words;
}

std::string CommandWords(const CLI::App& root) {
  std::string words;
  for (const CLI::App* command : CommandsOf(root)) words += command->get_name() + ' ';
  return words;
}

std::string FormatWords() {
  std::string words;
  for (const Format& format : Formats()) words += std::string(format.name) + ' ';
  return words;
}

// What follows an option whose value is a folder or a format.
void PrintValueCompletions(const CLI::App& root) {
  std::set<std::string> cases;
  for (const CLI::App* command : CommandsOf(root))
    for (const CLI::Option* option : OptionsOf(*command, false)) {
      const std::string type = option->get_type_name();
      const std::string what = type == "DIR" ? "-d" : type == "FORMAT" ? "-W '" + FormatWords() + '\'' : "";
      if (!what.empty()) cases.insert(NamesOf(*option, '|') + ") mapfile -t COMPREPLY < <(compgen " + what);
    }
  for (const std::string& one : cases) std::cout << "    " << one << " -- \"$cur\"); return ;;\n";
}

void PrintCompletion(const CLI::App& root) {
  std::cout << "# bash completion for kem\n_kem() {\n"
            << "  local cur=${COMP_WORDS[COMP_CWORD]} command=${COMP_WORDS[1]} words=''\n"
            << "  case ${COMP_WORDS[COMP_CWORD - 1]} in\n";
  PrintValueCompletions(root);
  std::cout << "  esac\n  case $command in\n";
  for (const CLI::App* command : CommandsOf(root))
    std::cout << "    " << command->get_name() << ") words='" << OptionWords(*command) << "' ;;\n";
  std::cout << "  esac\n"
            << "  [[ $command != help ]] || words+='" << CommandWords(root) << "'\n"
            << "  ((COMP_CWORD > 1)) || words='" << CommandWords(root) << OptionWords(root) << "'\n"
            << "  if [[ $cur == -* || $command == help ]] || ((COMP_CWORD == 1)); then\n"
            << "    mapfile -t COMPREPLY < <(compgen -W \"$words\" -- \"$cur\")\n"
            << "  else\n    mapfile -t COMPREPLY < <(compgen -f -- \"$cur\")\n  fi\n}\n"
            << "complete -o filenames -F _kem kem\n";
}

// ------------------------------------------------------------ help

struct HelpOptions {
  std::string command;
  bool manual = false;
  bool completion = false;
};

int PrintHelp(const CLI::App& root, const HelpOptions& options) {
  if (options.manual) {
    PrintManual(root);
  } else if (options.completion) {
    PrintCompletion(root);
  } else if (options.command.empty()) {
    std::cout << root.get_formatter()->make_help(&root, "kem", CLI::AppFormatMode::Normal);
  } else if (const CLI::App* command = CommandNamed(root, options.command)) {
    std::cout << command->help("kem");
  } else {
    Complain("help: " + NoCommand(options.command));
    return kMisused;
  }
  return 0;
}

}  // namespace

Run DefineHelp(CLI::App& app) {
  auto options = std::make_shared<HelpOptions>();
  app.add_option("COMMAND", options->command, "Command to explain")->type_name("");
  app.add_flag("--man", options->manual)->group("");
  app.add_flag("--completion", options->completion)->group("");
  const CLI::App& root = *app.get_parent();
  return [options, &root] { return PrintHelp(root, *options); };
}

}  // namespace kem::tool
