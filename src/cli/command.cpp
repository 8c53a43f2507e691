#include "cli/command.h"

#include <QCoreApplication>

#include <algorithm>
#include <array>

using namespace Qt::StringLiterals;

namespace {

constexpr std::array kCommands = {
    Command{"summon"_L1, "<tool-id>|launcher|menu|settings|shortcuts|usage"_L1,
            "start a tool in the running application"_L1, runSummon},
    Command{"tools"_L1, "[--json]"_L1, "list the tools in the grid's order"_L1, runTools},
    Command{"sessions"_L1, "[--limit N] [--agent claude|codex] [--search TEXT] [--json]"_L1,
            "list recent conversations, or search them all"_L1, runSessions},
    Command{"projects"_L1, "[--limit N] [--json]"_L1, "list the folders that agents have worked in"_L1, runProjects},
    Command{"resume"_L1, "<session-id> [--print]"_L1, "take a conversation up again in its folder"_L1, runResume},
    Command{"inject"_L1, "<file-name> <folder> [--force]"_L1, "write an instruction file for agents into a folder"_L1,
            runInject},
    Command{"open"_L1, "<folder> [--with PRESET] [--agent]"_L1, "open a project as the tool Open Project does"_L1,
            runOpen},
    Command{"new"_L1, "<boilerplate> <folder>"_L1, "make a project from a template folder"_L1, runNew},
    Command{"link"_L1, "<image>|- [--json]"_L1, "upload an image and print its link"_L1, runLink},
    Command{"upload"_L1, "<path>... [--json]"_L1, "upload files and folders and print the one link"_L1, runUpload},
    Command{"transform"_L1, "--mode improve|enhance-prompt|shorten|fix-grammar | --instruction TEXT"_L1,
            "rewrite the text on standard input"_L1, runTransform},
    Command{
        "generate"_L1,
        "<prompt>|- -o FILE [--image FILE]... [--edit] [--size auto|1024x1024|1536x1024|1024x1536] "
        "[--quality auto|low|medium|high] [--no-history]"_L1,
        "generate an image, or with --edit change the first one given, write it as PNG, and keep it in the history"_L1,
        runGenerate},
    Command{"prompt"_L1, "<image>|- [--mode ui|general|image]"_L1, "print the prompt that would recreate an image"_L1,
            runPrompt},
    Command{"feedback"_L1, "--category bug|feedback|question <text>|- [--image FILE]..."_L1,
            "send a bug report, feedback or a question"_L1, runFeedback},
    Command{"suggest"_L1, "<text>|- [--image FILE]..."_L1, "send an idea for the next tool"_L1, runSuggest},
    Command{"ask"_L1, "<question>|- [--image FILE]... [--history FILE.json]"_L1, "ask the AI and print its answer"_L1,
            runAsk},
    Command{"quota"_L1, "[--json]"_L1, "show what is left of this month's allowance"_L1, runQuota},
    Command{"config"_L1, "show [--json] | set [<setting> <value>] | service [<what> [<value>]]"_L1,
            "show and change settings, hosts and credential; 'set' and 'service' alone list what there is"_L1,
            runConfig},
    Command{"completions"_L1, "bash|zsh|fish"_L1, "print the completions of a shell"_L1, runCompletions},
    Command{"doctor"_L1, "[--json] [--bindings gnome|kde|sway|hyprland|session|all]"_L1,
            "check display, shortcuts, permissions, network and data"_L1, runDoctor},
    Command{"help"_L1, "[command]"_L1, "explain a command"_L1, runHelp},
    Command{"version"_L1, ""_L1, "print the version"_L1, runVersion},
};

const Command* findCommand(const QString& name) {
  const auto found = std::ranges::find(kCommands, name, &Command::name);
  return found == kCommands.end() ? nullptr : &*found;
}

void printUsage(const Command& command, QTextStream& stream) {
  stream << "usage: vantle " << command.name;
  if (!command.arguments.isEmpty()) stream << ' ' << command.arguments;
  stream << '\n';
}

void printOverview(QTextStream& out) {
  out << "Fourteen small tools for people who work with terminal coding agents.\n\n"
         "usage: vantle                start the application, or bring it forward\n";
  for (const Command& command : kCommands) {
    const QString call = u"vantle %1 %2"_s.arg(command.name, command.arguments).trimmed();
    out << "       " << call << '\n' << "           " << command.summary << '\n';
  }
}

}  // namespace

std::span<const Command> commands() { return kCommands; }

const Command& commandNamed(QLatin1StringView name) { return *std::ranges::find(kCommands, name, &Command::name); }

int usageError(const Command& command, const QString& message, CommandContext& context) {
  context.err << "vantle: " << message << '\n';
  printUsage(command, context.err);
  return exit_code::kUsage;
}

int runCommandLine(const QStringList& arguments, CommandContext& context) {
  QString name = arguments.value(0);
  if (name == "--version"_L1) name = u"version"_s;
  if (name == "--help"_L1 || name == "-h"_L1) name = u"help"_s;
  if (const Command* command = findCommand(name)) return command->run(arguments.mid(1), context);
  context.err << "vantle: there is no command '" << name << "'; 'vantle help' lists them\n";
  return exit_code::kUsage;
}

int runHelp(const QStringList& arguments, CommandContext& context) {
  if (arguments.isEmpty()) {
    printOverview(context.out);
    return exit_code::kSuccess;
  }
  const Command* command = findCommand(arguments.first());
  if (!command) {
    context.err << "vantle: there is no command '" << arguments.first() << "'; 'vantle help' lists them\n";
    return exit_code::kUsage;
  }
  printUsage(*command, context.out);
  context.out << command->summary << '\n';
  return exit_code::kSuccess;
}

int runVersion(const QStringList& arguments, CommandContext& context) {
  if (!arguments.isEmpty()) return usageError(*findCommand(u"version"_s), u"it takes no arguments"_s, context);
  context.out << "vantle " << QCoreApplication::applicationVersion() << '\n';
  return exit_code::kSuccess;
}
