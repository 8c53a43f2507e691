#include <QDir>
#include <QEventLoop>
#include <QFileInfo>

#include <optional>

#include "base/visible_text.h"
#include "cli/options.h"
#include "tools/open_project/open_project_settings.h"
#include "tools/open_project/project_launcher.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kShown = 300;

/// What the options make of the settings, or what is wrong with them.
std::expected<LaunchRequest, QString> requestFor(const Options& options, const ProjectLauncher& launcher,
                                                 OpenProjectSettings settings) {
  QString command = launcher.commandOr(settings.command);
  const LaunchPreset* preset = presetOf(launcher.presets(), command);
  if (options.has("with"_L1)) {
    preset = presetNamed(launcher.presets(), options.value("with"_L1));
    QStringList names;
    for (const LaunchPreset& known : launcher.presets()) names.append(known.name);
    if (!preset)
      return std::unexpected(u"there is no preset '%1'; there are %2"_s.arg(
          visibleLine(options.value("with"_L1), kShown), names.join(u", "_s)));
    command = preset->command;
  }
  if (options.has("agent"_L1) && (!preset || !preset->isTerminal()))
    return std::unexpected(u"only a terminal can start an agent: %1"_s.arg(terminalNames(launcher.presets())));
  settings.autoRunAgent = settings.autoRunAgent || options.has("agent"_L1);
  if (options.has("agent"_L1) && settings.effectiveAgentCommand().isEmpty())
    return std::unexpected(u"the settings of Open Project name no agent"_s);
  const QString folder = QFileInfo(options.words().first()).absoluteFilePath();
  return LaunchRequest{QDir::cleanPath(folder), command, settings.effectiveAgentCommand()};
}

std::expected<void, LaunchError> openAndWait(ProjectLauncher& launcher, const LaunchRequest& request) {
  QEventLoop loop;
  std::optional<std::expected<void, LaunchError>> outcome;
  launcher.open(request, [&](const std::expected<void, LaunchError>& result) {
    outcome = result;
    loop.quit();
  });
  if (!outcome) loop.exec();
  return *outcome;
}

}  // namespace

int runOpen(const QStringList& arguments, CommandContext& context) {
  const Command& command = commandNamed("open"_L1);
  const auto options = Options::parse(arguments, {{"with"_L1, "PRESET"_L1}, {"agent"_L1, {}}});
  if (!options) return usageError(command, options.error(), context);
  if (options->words().size() != 1 || options->words().first().isEmpty())
    return usageError(command, u"name one folder"_s, context);
  const Platform platform = context.makePlatform();
  SystemClock clock;
  ProjectLauncher launcher(ProjectLauncher::Settings::standard(*platform.systemInfo), clock);
  const OpenProjectStore store(context.folders.file(u"open-project.json"_s));
  const auto request = requestFor(*options, launcher, store.value());
  if (!request) return usageError(command, request.error(), context);
  if (const QFileInfo folder(request->folder); !folder.isDir()) {
    context.err << "vantle: " << visibleLine(request->folder, kShown)
                << (folder.exists() ? ": this is not a folder\n" : ": there is no such folder\n");
    return exit_code::kFailure;
  }
  if (const auto opened = openAndWait(launcher, *request); !opened) {
    context.err << "vantle: " << opened.error().description() << '\n';
    return exit_code::kFailure;
  }
  return exit_code::kSuccess;
}
