#include <QJsonArray>
#include <QJsonDocument>

#include "base/visible_text.h"
#include "cli/options.h"
#include "cli/session_output.h"
#include "tools/projects/project_folders.h"
#include "tools/session_history/vibe_history_settings.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kShownPath = 300;

QStringList agentNames(const ProjectFolder& folder) {
  QStringList names;
  for (const SessionAgent agent : folder.agents) names.append(text(agent).rawValue);
  return names;
}

QJsonObject toJson(const ProjectFolder& folder) {
  return {{u"path"_s, folder.path},
          {u"kind"_s, QString(text(folder.kind).rawValue)},
          {u"agents"_s, QJsonArray::fromStringList(agentNames(folder))},
          {u"sessionCount"_s, folder.sessionCount},
          {u"lastActivity"_s, secondsSince1970(folder.lastActivity)},
          {u"resumeCommand"_s, folder.resumeCommand}};
}

void printRow(const ProjectFolder& folder, QTextStream& out) {
  const QString sessions = folder.sessionCount == 1 ? u"1 session"_s : u"%1 sessions"_s.arg(folder.sessionCount);
  out << agoColumn(folder.lastActivity) << QString(text(folder.kind).tag).leftJustified(5)
      << agentNames(folder).join(u',').leftJustified(14) << sessions.leftJustified(14)
      << visibleLine(folder.path, kShownPath) << '\n';
}

}  // namespace

int runProjects(const QStringList& arguments, CommandContext& context) {
  const Command& command = commandNamed("projects"_L1);
  const auto options = Options::parse(arguments, {{"limit"_L1, "N"_L1}, {"json"_L1, {}}});
  if (!options) return usageError(command, options.error(), context);
  if (!options->words().isEmpty()) return usageError(command, u"it takes no words"_s, context);
  const auto limit = options->count("limit"_L1, std::numeric_limits<int>::max());
  if (!limit) return usageError(command, limit.error(), context);

  const VibeHistoryStore history(context.folders.file(u"VibeHistory/settings.json"_s));
  const SessionTraceScanner scanner(context.home);
  auto folders = ProjectFolders(scanner).recent(history.value().includeClaude, history.value().includeCodex);
  folders.resize(std::min(folders.size(), static_cast<std::size_t>(*limit)));
  QJsonArray rows;
  for (const ProjectFolder& folder : folders) {
    if (options->has("json"_L1))
      rows.append(toJson(folder));
    else
      printRow(folder, context.out);
  }
  if (options->has("json"_L1)) context.out << QJsonDocument(rows).toJson();
  return exit_code::kSuccess;
}
