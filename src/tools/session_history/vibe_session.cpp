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

/// What no shell takes for more than itself. Ids are the agents' own and plain; those of a forged transcript need not
/// be.
bool isPlain(QChar character) {
  return character.unicode() < 0x80 && (character.isLetterOrNumber() || QStringView(u"-_.").contains(character));
}

}  // namespace

std::span<const SessionAgentText> sessionAgents() { return kAgents; }

const SessionAgentText& text(SessionAgent agent) { return kAgents[static_cast<std::size_t>(agent)]; }

QString VibeSession::resumeCommand() const {
  const QString word = std::ranges::all_of(id, isPlain) ? id : shellQuote(id);
  const QString resume = (agent == SessionAgent::claude ? u"claude --resume "_s : u"codex resume "_s) + word;
  // A shell takes newlines from the end of what a command has printed, and the folder would be another one.
  const QString folder = cwd.endsWith(u'\n') ? cwd + u'/' : cwd;
  return cwd.isEmpty() ? resume : u"cd %1 && %2"_s.arg(shellQuote(folder), resume);
}

QString VibeSession::projectName() const {
  const QString name = cwd.section(u'/', -1, -1, QString::SectionSkipEmpty);
  return name.isEmpty() ? u"unknown project"_s : name;
}

QDateTime localTime(FileTime time) {
  const auto sinceEpoch = std::chrono::floor<std::chrono::milliseconds>(time.time_since_epoch());
  return QDateTime::fromMSecsSinceEpoch(sinceEpoch.count());
}
