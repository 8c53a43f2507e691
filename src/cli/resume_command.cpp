#include <algorithm>

#include "base/visible_text.h"
#include "cli/options.h"
#include "platform/replace_process.h"
#include "tools/session_history/session_scanner.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kShownID = 200;

/// Newest first, so that the usual case is found soon; then all there are.
std::optional<VibeSession> findSession(const QString& home, const QString& id) {
  for (const std::size_t limit : {std::size_t{100}, std::size_t{SIZE_MAX}}) {
    const std::vector<VibeSession> sessions = SessionTraceScanner(home).recentSessions(limit, true, true);
    const auto found = std::ranges::find(sessions, id, &VibeSession::id);
    if (found != sessions.end()) return *found;
    if (sessions.size() < limit) break;
  }
  return std::nullopt;
}

}  // namespace

int runResume(const QStringList& arguments, CommandContext& context) {
  const Command& command = commandNamed("resume"_L1);
  const auto options = Options::parse(arguments, {{"print"_L1, {}}});
  if (!options) return usageError(command, options.error(), context);
  if (options->words().size() != 1) return usageError(command, u"name one session"_s, context);
  const QString id = options->words().first();
  const auto session = findSession(context.home, id);
  if (!session) {
    context.err << "vantle: there is no session '" << visibleLine(id, kShownID) << "'; 'vantle sessions' lists them\n";
    return exit_code::kFailure;
  }
  if (options->has("print"_L1)) {
    context.out << session->resumeCommand() << '\n';
    return exit_code::kSuccess;
  }
  context.out.flush();
  const ShellCall call = loginShellCall(session->resumeCommand(), qEnvironmentVariable("SHELL"));
  context.err << "vantle: " << call.program << ": " << replaceProcess(call) << '\n';
  return exit_code::kFailure;
}
