// kem help, and the manual page and shell completion that are made from the same descriptions.
#include <algorithm>
#include <iostream>
#include <memory>
#include <sstream>

#include "command.h"
#include "completion.h"
#include "kem.h"
#include "options.h"
#include "output.h"
#include "system.h"

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

// ------------------------------------------------------------ help

// Where a line of help may go on: below the description of an option, else below its first character.
std::size_t IndentOf(const std::string& line) {
  constexpr std::size_t kColumn = 28;  // of the descriptions
  const std::size_t first = std::min(line.find_first_not_of(' '), line.size());
  const bool described = first == 2 && line.size() > kColumn && line[kColumn - 1] == ' ' && line[kColumn] != ' ';
  return described || first == kColumn ? kColumn : first;
}

// Breaks a line between its words.
void AddBroken(std::string& text, std::string line, std::size_t width) {
  const std::size_t indent = IndentOf(line);
  while (line.size() > width) {
    const std::size_t end = line.rfind(' ', width);
    if (end == line.npos || end <= indent) break;
    text += line.substr(0, end) + '\n';
    line = std::string(indent, ' ') + line.substr(end + 1);
  }
  text += line + '\n';
}

// Joins the lines of each paragraph that begin at the margin; examples and options stay as they are.
std::string Filled(const std::string& text) {
  std::string filled;
  std::istringstream lines(text);
  bool open = false;
  for (std::string line; std::getline(lines, line);) {
    const bool plain = !line.empty() && line.front() != ' ';
    filled += !filled.empty() && plain && open ? " " : filled.empty() ? "" : "\n";
    filled += line;
    open = plain && !line.ends_with(':');
  }
  return filled;
}

std::string InWidth(const std::string& help, std::size_t width) {
  std::string text;
  std::istringstream lines(help);
  for (std::string line; std::getline(lines, line);) AddBroken(text, std::move(line), width);
  return text;
}

struct HelpOptions {
  std::string command;
  bool manual = false;
  std::string completion;  // the shell
};

int PrintHelp(CLI::App& root, const HelpOptions& options) {
  if (options.manual) {
    PrintManual(root);
  } else if (!options.completion.empty()) {
    std::cout << CompletionFor(options.completion, root);
  } else if (options.command.empty()) {
    std::cout << HelpText(root);
  } else if (const CLI::App* command = CommandNamed(root, options.command)) {
    std::cout << HelpText(*command);
  } else {
    Complain("help: " + NoCommand(options.command));
    return kMisused;
  }
  return 0;
}

}  // namespace

std::string HelpText(const CLI::App& app) {
  const int width = std::clamp(SizeOfTerminal(stdout).columns, 40, 120);
  const bool command = app.get_parent() != nullptr;
  const std::string help =
      command ? app.help("kem") : app.get_formatter()->make_help(&app, "kem", CLI::AppFormatMode::Normal);
  const std::string& footer = app.get_footer();
  const auto at = footer.empty() ? help.npos : help.rfind(footer);
  return InWidth(at == help.npos ? help : help.substr(0, at) + Filled(footer), static_cast<std::size_t>(width));
}

Run DefineHelp(CLI::App& app) {
  auto options = std::make_shared<HelpOptions>();
  app.add_option("COMMAND", options->command, "Command to explain")->type_name("");
  app.add_flag("--man", options->manual)->group("");
  app.add_option("--completion", options->completion,
                 "Print the completion of command lines for a shell: bash, zsh or fish")
      ->type_name("SHELL")
      ->check(OneOf(Shells()));
  CLI::App& root = *app.get_parent();
  return [options, &root] { return PrintHelp(root, *options); };
}

}  // namespace kem::tool
