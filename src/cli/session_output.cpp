#include "cli/session_output.h"

#include <QDateTime>

#include <algorithm>

#include "base/relative_time.h"

using namespace Qt::StringLiterals;

QJsonObject toJson(const VibeSession& session) {
  return {{u"id"_s, session.id},
          {u"agent"_s, QString(text(session.agent).rawValue)},
          {u"title"_s, session.title},
          {u"cwd"_s, session.cwd},
          {u"gitBranch"_s, session.gitBranch ? QJsonValue(*session.gitBranch) : QJsonValue(QJsonValue::Null)},
          {u"lastActivity"_s, secondsSince1970(session.lastActivity)},
          {u"resumeCommand"_s, session.resumeCommand()}};
}

double secondsSince1970(FileTime time) { return std::chrono::duration<double>(time.time_since_epoch()).count(); }

QString agoColumn(FileTime time) {
  constexpr int kWidth = 14;
  const auto milliseconds = std::chrono::floor<std::chrono::milliseconds>(time.time_since_epoch()).count();
  return relativeTime(QDateTime::fromMSecsSinceEpoch(milliseconds), QDateTime::currentDateTime()).leftJustified(kWidth);
}

std::optional<SessionAgent> sessionAgent(const QString& rawValue) {
  const auto agents = sessionAgents();
  const auto found = std::ranges::find(agents, rawValue, &SessionAgentText::rawValue);
  return found == agents.end() ? std::nullopt : std::optional(found->agent);
}
