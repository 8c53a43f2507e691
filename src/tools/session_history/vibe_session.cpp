#include "tools/session_history/vibe_session.h"

#include <algorithm>
#include <array>

#include "base/shell_quote.h"

using namespace Qt::StringLiterals;

namespace {

constexpr std::array kAgents = {
    SessionAgentText{SessionAgent::claude, "claude"_L1, "Claude Code"_L1},
    SessionAgentText{SessionAgent::codex, "codex"_L1, "Codex"_L1},
};

}  // namespace

std::span<const SessionAgentText> sessionAgents() { return kAgents; }

const SessionAgentText& text(SessionAgent agent) { return kAgents[static_cast<std::size_t>(agent)]; }

QString VibeSession::resumeCommand() const {
  const QString resume = (agent == SessionAgent::claude ? u"claude --resume "_s : u"codex resume "_s) + id;
  return cwd.isEmpty() ? resume : u"cd %1 && %2"_s.arg(shellQuote(cwd), resume);
}

QString VibeSession::projectName() const {
  const QString name = cwd.section(u'/', -1, -1, QString::SectionSkipEmpty);
  return name.isEmpty() ? u"unknown project"_s : name;
}

QDateTime localTime(FileTime time) {
  const auto sinceEpoch = std::chrono::floor<std::chrono::milliseconds>(time.time_since_epoch());
  return QDateTime::fromMSecsSinceEpoch(sinceEpoch.count());
}
