#include <QRegularExpression>

#include <algorithm>
#include <array>

#include "base/shell_quote.h"
#include "cli/command.h"
#include "core/hotkeys/app_shortcuts.h"
#include "core/presenters/window_opener.h"
#include "core/tools/tool.h"
#include "tools/text_transform/text_transform_mode.h"

using namespace Qt::StringLiterals;

namespace {

/// What can follow the name of a command.
struct Completion {
  QString command;
  QString summary;
  QStringList words;
  /// "<folder>", or "<image>", "<path>" or "FILE", in its usage line.
  bool takesFolder = false;
  bool takesFile = false;

  bool isPlain() const { return words.isEmpty() && !takesFolder && !takesFile; }
};

QStringList summonTargets() {
  QStringList targets{u"menu"_s};
  for (const AppShortcut& shortcut : kAppShortcuts) targets.append(shortcut.target);
  for (const AppWindowName& window : kAppWindowNames)
    if (!targets.contains(window.name)) targets.append(window.name);
  for (const ToolInfo& tool : toolTable()) targets.append(tool.id);
  return targets;
}

QStringList actions() {
  QStringList actions;
  for (const TextTransformModeNames& names : textTransformModes())
    if (!names.action.isEmpty()) actions.append(names.action);
  return actions;
}

/// The options that the usage line names, so that there is one place for both.
QStringList options(const Command& command) {
  QStringList found;
  const QRegularExpression option(u"(?<= )-[a-z]\\b|--[a-z-]+"_s);
  for (const auto& match : option.globalMatch(command.arguments)) found.append(match.captured());
  return found;
}

std::vector<Completion> completions() {
  std::vector<Completion> all;
  for (const Command& command : commands()) {
    Completion& entry = all.emplace_back(command.name, command.summary, options(command));
    entry.takesFolder = QString(command.arguments).contains("<folder>"_L1);
    entry.takesFile = QString(command.arguments).contains(QRegularExpression(u"<image>|<path>|FILE"_s));
    if (command.name == "config"_L1) entry.words += {u"show"_s, u"set"_s, u"service"_s};
    if (command.name == "transform"_L1) entry.words += actions();
    if (command.name == "summon"_L1) entry.words = summonTargets();
    if (command.name == "completions"_L1) entry.words = {u"bash"_s, u"zsh"_s, u"fish"_s};
    if (command.name == "help"_L1)
      for (const Command& other : commands()) entry.words.append(other.name);
  }
  return all;
}

QStringList names(const std::vector<Completion>& all) {
  QStringList names;
  for (const Completion& entry : all) names.append(entry.command);
  return names;
}

void printBash(const std::vector<Completion>& all, QTextStream& out) {
  out << "_vantle() {\n"
         "  local current=${COMP_WORDS[COMP_CWORD]} paths= path\n"
         "  if [ \"$COMP_CWORD\" -eq 1 ]; then\n"
         "    COMPREPLY=($(compgen -W '"
      << names(all).join(u' ')
      << "' -- \"$current\"))\n"
         "    return\n"
         "  fi\n"
         "  case ${COMP_WORDS[1]} in\n";
  for (const Completion& entry : all) {
    if (entry.isPlain()) continue;
    out << "    " << entry.command << ") COMPREPLY=($(compgen -W '" << entry.words.join(u' ') << "' -- \"$current\"))";
    if (entry.takesFolder) out << "; paths=d";
    if (entry.takesFile) out << "; paths=f";
    out << " ;;\n";
  }
  // A path with spaces is one line, and one word with "filenames".
  out << "  esac\n"
         "  [ -n \"$paths\" ] || return 0\n"
         "  compopt -o filenames 2>/dev/null\n"
         "  while IFS= read -r path; do COMPREPLY+=(\"$path\"); done < <(compgen \"-$paths\" -- \"$current\")\n"
         "}\ncomplete -F _vantle vantle\n";
}

void printZsh(const std::vector<Completion>& all, QTextStream& out) {
  out << "#compdef vantle\n_vantle() {\n  if (( CURRENT == 2 )); then\n    local -a commands=(\n";
  for (const Completion& entry : all) out << "      " << singleQuoted(entry.command + u':' + entry.summary) << '\n';
  out << "    )\n    _describe command commands\n    return\n  fi\n  case ${words[2]} in\n";
  for (const Completion& entry : all) {
    if (entry.isPlain()) continue;
    out << "    " << entry.command << ") compadd -- " << entry.words.join(u' ');
    if (entry.takesFolder) out << "; _files -/";
    if (entry.takesFile) out << "; _files";
    out << " ;;\n";
  }
  // From a folder of functions the first completion runs this file, otherwise somebody has sourced it.
  out << "  esac\n}\n"
         "if [[ $funcstack[1] == _vantle ]]; then _vantle \"$@\"; else compdef _vantle vantle; fi\n";
}

void printFish(const std::vector<Completion>& all, QTextStream& out) {
  out << "complete -c vantle -f\n";
  for (const Completion& entry : all) {
    out << "complete -c vantle -n __fish_use_subcommand -a " << entry.command << " -d " << singleQuoted(entry.summary)
        << '\n';
    const QString here = u"complete -c vantle -n '__fish_seen_subcommand_from %1' "_s.arg(entry.command);
    if (!entry.words.isEmpty()) out << here << "-a '" << entry.words.join(u' ') << "'\n";
    if (entry.takesFolder) out << here << "-a '(__fish_complete_directories)'\n";
    if (entry.takesFile) out << here << "-F\n";
  }
}

struct Shell {
  QLatin1StringView name;
  void (*print)(const std::vector<Completion>& all, QTextStream& out);
};

constexpr std::array kShells = {Shell{"bash"_L1, printBash}, Shell{"zsh"_L1, printZsh}, Shell{"fish"_L1, printFish}};

}  // namespace

int runCompletions(const QStringList& arguments, CommandContext& context) {
  const auto shell = std::ranges::find(kShells, arguments.value(0), &Shell::name);
  if (arguments.size() != 1 || shell == kShells.end())
    return usageError(commandNamed("completions"_L1), u"name one shell: bash, zsh or fish"_s, context);
  shell->print(completions(), context.out);
  return exit_code::kSuccess;
}
