#include "completion.h"

#include <algorithm>
#include <set>

#include "kem/dataset.h"
#include "text.h"

namespace kem::tool {
namespace {

// ------------------------------------------------------------ description

struct Word {
  std::vector<std::string> names;  // "-t", "--to"
  std::string help;
  std::vector<std::string> labels;  // of the values that it takes, "FROM", "TO"
  std::vector<std::string> values;  // of which one is expected; empty for any
  bool folders = false;
  bool files = false;
};

struct Line {
  std::string command;
  std::string help;
  std::vector<Word> options;
  std::vector<std::string> values;  // of its arguments; empty for files
};

std::vector<std::string> Split(const std::string& text, char separator) {
  std::vector<std::string> words;
  std::istringstream in(text);
  for (std::string word; std::getline(in, word, separator);) words.push_back(word);
  return words;
}

// The words that a check of an option allows.
std::vector<std::string> ValuesOf(CLI::Option& option) try {
  return Split(option.get_validator(0)->get_name(), ' ');
} catch (const CLI::OptionNotFound&) {
  return {};
}

Word Described(CLI::Option& option) {
  Word word{Split(option.get_name(false, true), ','), option.get_description(), {}, {}};
  if (option.get_items_expected_max() == 0) return word;
  const std::string type = option.get_type_name();
  word.labels = Split(type, ' ');
  word.values = ValuesOf(option);
  word.folders = type == "DIR";
  word.files = type == "FILE";
  return word;
}

std::vector<Line> LinesOf(CLI::App& root) {
  std::vector<Line> lines;
  std::vector<std::string> commands;
  for (CLI::App* command : root.get_subcommands([](CLI::App*) { return true; })) {
    commands.push_back(command->get_name());
    lines.push_back({command->get_name(), command->get_description(), {}, {}});
    for (CLI::Option* option : command->get_options([](CLI::Option*) { return true; }))
      if (!option->get_positional() && !option->get_group().empty())
        lines.back().options.push_back(Described(*option));
  }
  for (Line& line : lines)
    if (line.command == "help") line.values = commands;
  return lines;
}

// In small letters, without dots.
std::vector<std::string> KnownExtensions() {
  std::set<std::string> known;
  for (const FormatInfo& format : kem::Formats())
    for (const std::string& extension : format.extensions) known.insert(LowerCase(extension.substr(1)));
  return {known.begin(), known.end()};
}

std::string Joined(const std::vector<std::string>& words, const std::string& separator) {
  return CLI::detail::join(words, separator);
}

std::string Replaced(std::string text, const std::string& characters, const std::string& front) {
  for (std::size_t at = 0; (at = text.find_first_of(characters, at)) != text.npos; at += front.size() + 1)
    text.insert(at, front);
  return text;
}

// Within single quotes of a shell; how it spells a quote itself.
std::string Quoted(const std::string& text, const std::string& quote) {
  std::string quoted = "'";
  for (const char c : text)
    if (c == '\'')
      quoted += quote;
    else
      quoted += c;
  return quoted + '\'';
}

// ------------------------------------------------------------ bash

std::string BashAction(const std::vector<std::string>& values, bool folders) {
  if (!values.empty()) return "mapfile -t COMPREPLY < <(compgen -W '" + Joined(values, " ") + "' -- \"$cur\")";
  return folders ? "mapfile -t COMPREPLY < <(compgen -d -- \"$cur\")" : "_kem_files";
}

std::string Bash(CLI::App& root) {
  const auto lines = LinesOf(root);
  std::string commands;
  std::string values;
  std::string options;
  for (const Line& line : lines) {
    commands += line.command + ' ';
    std::string names;
    for (const Word& word : line.options) {
      names += Joined(word.names, " ") + ' ';
      std::string pattern;
      for (const std::string& name : word.names)
        pattern += (pattern.empty() ? "'" : " | '") + line.command + ' ' + name + '\'';
      if (word.labels.empty()) continue;
      const bool known = !word.values.empty() || word.folders || word.files;
      values += "    " + pattern + ") " + (known ? BashAction(word.values, word.folders) : "COMPREPLY=()") +
                "; return ;;\n";
    }
    options += "    " + line.command + ") words='" + names + "' ;;\n";
    if (!line.values.empty())
      values +=
          "    '" + line.command + " " + line.command + "') " + BashAction(line.values, false) + "; return ;;\n";
  }
  return "# bash completion for kem\n_kem_files() {\n"
         "  local file\n  COMPREPLY=()\n"
         "  while IFS= read -r file; do\n"
         "    [[ -d $file || ${file,,} =~ \\.(" +
         Joined(KnownExtensions(), "|") +
         ")$ ]] && COMPREPLY+=(\"$file\")\n"
         "  done < <(compgen -f -- \"$cur\")\n"
         "  ((${#COMPREPLY[@]} > 0)) || mapfile -t COMPREPLY < <(compgen -f -- \"$cur\")\n}\n"
         "_kem() {\n  local cur=${COMP_WORDS[COMP_CWORD]} command=${COMP_WORDS[1]} words=''\n"
         "  if ((COMP_CWORD == 1)); then\n    _kem_files\n"
         "    mapfile -t -O ${#COMPREPLY[@]} COMPREPLY < <(compgen -W '" +
         commands +
         "--help --version' -- \"$cur\")\n"
         "    return\n  fi\n"
         "  case \"$command ${COMP_WORDS[COMP_CWORD - 1]}\" in\n" +
         values +
         "  esac\n"
         "  case $command in\n" +
         options +
         "  esac\n"
         "  if [[ $cur == -* ]]; then\n    mapfile -t COMPREPLY < <(compgen -W \"$words\" -- \"$cur\")\n"
         "  else\n    _kem_files\n  fi\n}\ncomplete -o filenames -F _kem kem\n";
}

// ------------------------------------------------------------ zsh

std::string ZshText(const std::string& text) { return Replaced(text, "[]:\\", "\\"); }

std::string ZshValue(const Word& word) {
  std::string values;
  for (const std::string& label : word.labels) {
    values += ':' + ZshText(label) + ':';
    if (!word.values.empty()) values += '(' + Joined(word.values, " ") + ')';
    if (word.folders) values += "_files -/";
    if (word.files) values += "_files";
  }
  return values;
}

std::string Zsh(CLI::App& root) {
  std::string commands;
  std::string cases;
  for (const Line& line : LinesOf(root)) {
    commands += "    " + Quoted(line.command + ':' + ZshText(line.help), "'\\''") + '\n';
    cases += "    " + line.command + ")\n      _arguments -s \\\n";
    for (const Word& word : line.options) {
      const std::string names = word.names.size() > 1 ? '{' + Joined(word.names, ",") + '}' : word.names.front();
      const std::string others = word.names.size() > 1 ? "'(" + Joined(word.names, " ") + ")'" : "";
      const std::string text = Quoted('[' + ZshText(word.help) + ']' + ZshValue(word), "'\\''");
      cases.append("        ").append(others).append(names).append(text) += " \\\n";
    }
    cases += "        '*:" + (line.values.empty() ? "file:_kem_files" : "word:(" + Joined(line.values, " ") + ')') +
             "' ;;\n";
  }
  return "#compdef kem\n"
         "_kem_files() { _files -g '*.(#i)(" +
         Joined(KnownExtensions(), "|") +
         ")(-.)' || _files; }\n"
         "_kem() {\n  local -a commands=(\n" +
         commands +
         "  )\n"
         "  if ((CURRENT == 2)); then\n    _describe command commands\n    _kem_files\n    return\n  fi\n"
         "  shift words\n  ((CURRENT--))\n  case $words[1] in\n" +
         cases +
         "  esac\n}\n"
         "if [[ $zsh_eval_context[-1] == loadautofunc ]]; then _kem \"$@\"; else compdef _kem kem; fi\n";
}

// ------------------------------------------------------------ fish

std::string FishOption(const std::string& command, const Word& word) {
  std::string text = "complete -c kem -n '__fish_seen_subcommand_from " + command + '\'';
  for (const std::string& name : word.names)
    text += name.starts_with("--") ? " -l " + name.substr(2) : " -s " + name.substr(1);
  if (!word.values.empty()) text += " -x -a '" + Joined(word.values, " ") + '\'';
  if (word.folders) text += " -x -a '(__fish_complete_directories (commandline -ct))'";
  if (word.files) text += " -r -F";
  if (word.values.empty() && !word.folders && !word.files && !word.labels.empty()) text += " -x";
  return text + " -d " + Quoted(word.help, "\\'") + '\n';
}

std::string Fish(CLI::App& root) {
  std::string text =
      "# fish completion for kem\nfunction __kem_files\n"
      "  __fish_complete_path (commandline -ct) | string match -ri '^(.*/|.*\\.(?:" +
      Joined(KnownExtensions(), "|") +
      "))(?:\\t.*)?$' | string match -rv '\\t' | sort -u\nend\n"
      "complete -c kem -f\n"
      "complete -c kem -n 'not __fish_seen_subcommand_from help' -a '(__kem_files)'\n";
  for (const Line& line : LinesOf(root)) {
    text +=
        "complete -c kem -n __fish_use_subcommand -a " + line.command + " -d " + Quoted(line.help, "\\'") + '\n';
    for (const Word& word : line.options) text += FishOption(line.command, word);
    if (!line.values.empty())
      text += "complete -c kem -n '__fish_seen_subcommand_from " + line.command + "' -a '" +
              Joined(line.values, " ") + "'\n";
  }
  return text;
}

struct Shell {
  const char* name;
  std::string (*completion)(CLI::App& root);
};
constexpr Shell kShells[] = {{"bash", Bash}, {"zsh", Zsh}, {"fish", Fish}};

}  // namespace

const std::vector<std::string>& Shells() {
  static const std::vector<std::string> names = [] {
    std::vector<std::string> made;
    for (const Shell& shell : kShells) made.emplace_back(shell.name);
    return made;
  }();
  return names;
}

std::string CompletionFor(const std::string& shell, CLI::App& root) {
  const auto* found =
      std::find_if(std::begin(kShells), std::end(kShells), [&](const Shell& s) { return shell == s.name; });
  return found->completion(root);
}

}  // namespace kem::tool
