#pragma once

#include <QStringList>
#include <QTextStream>

#include <functional>
#include <span>

#include "core/settings/folders.h"
#include "platform/archiver.h"
#include "platform/platform.h"

/// What a subcommand runs with. Results go to `out`, errors to `err`.
struct CommandContext {
  QTextStream& out;
  QTextStream& err;
  Folders folders;
  /// The user's home folder, where the agents keep their transcripts.
  QString home;
  /// Starts the application in the background; false when that fails.
  std::function<bool()> startApplication;
  /// Makes the backends of a display connection; the null ones where there is none.
  std::function<Platform()> makePlatform;
  /// Standard input; null: there is none.
  QIODevice* input = nullptr;
  std::function<std::unique_ptr<Archiver>()> makeArchiver = {};
};

/// Exit codes of every subcommand.
namespace exit_code {
inline constexpr int kSuccess = 0;
inline constexpr int kFailure = 1;
inline constexpr int kUsage = 2;
}  // namespace exit_code

/// One subcommand.
struct Command {
  QLatin1StringView name;
  /// What follows the name in the usage line.
  QLatin1StringView arguments;
  QLatin1StringView summary;
  int (*run)(const QStringList& arguments, CommandContext& context);
};

std::span<const Command> commands();
/// The command of that name, which must exist.
const Command& commandNamed(QLatin1StringView name);
/// Runs "vantle <arguments>"; empty arguments are not for here, they start the application.
int runCommandLine(const QStringList& arguments, CommandContext& context);
/// Prints "vantle: <message>" and the usage line; the exit code for it.
int usageError(const Command& command, const QString& message, CommandContext& context);

/// One file each.
int runSummon(const QStringList& arguments, CommandContext& context);
int runTools(const QStringList& arguments, CommandContext& context);
int runSessions(const QStringList& arguments, CommandContext& context);
int runProjects(const QStringList& arguments, CommandContext& context);
int runResume(const QStringList& arguments, CommandContext& context);
int runInject(const QStringList& arguments, CommandContext& context);
int runOpen(const QStringList& arguments, CommandContext& context);
int runLink(const QStringList& arguments, CommandContext& context);
int runTransform(const QStringList& arguments, CommandContext& context);
int runGenerate(const QStringList& arguments, CommandContext& context);
int runPrompt(const QStringList& arguments, CommandContext& context);
int runFeedback(const QStringList& arguments, CommandContext& context);
int runSuggest(const QStringList& arguments, CommandContext& context);
int runAsk(const QStringList& arguments, CommandContext& context);
int runQuota(const QStringList& arguments, CommandContext& context);
int runUpload(const QStringList& arguments, CommandContext& context);
int runConfig(const QStringList& arguments, CommandContext& context);
int runNew(const QStringList& arguments, CommandContext& context);
int runCompletions(const QStringList& arguments, CommandContext& context);
int runDoctor(const QStringList& arguments, CommandContext& context);
int runHelp(const QStringList& arguments, CommandContext& context);
int runVersion(const QStringList& arguments, CommandContext& context);
