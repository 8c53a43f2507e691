#include <QJsonArray>
#include <QJsonDocument>

#include "base/visible_text.h"
#include "cli/options.h"
#include "cli/session_output.h"
#include "tools/session_history/session_scanner.h"
#include "tools/session_history/transcript_search.h"
#include "tools/session_history/vibe_history_settings.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kShownTitle = 60;
constexpr int kShownID = 200;

/// Prints sessions as they come: rows of a table, or the elements of one JSON array.
class SessionPrinter {
 public:
  SessionPrinter(QTextStream& out, bool json) : out_(out), json_(json) {
    if (json_) out_ << '[';
  }

  void print(const VibeSession& session, const QString& excerpt = {}) {
    if (json_)
      printJson(session, excerpt);
    else
      printRow(session, excerpt);
    out_.flush();
  }

  void finish() {
    if (json_) out_ << (count_ == 0 ? "]\n" : "\n]\n");
  }

 private:
  void printJson(const VibeSession& session, const QString& excerpt) {
    QJsonObject object = toJson(session);
    if (!excerpt.isNull()) object.insert(u"excerpt"_s, excerpt);
    out_ << (count_++ == 0 ? "\n" : ",\n") << QJsonDocument(object).toJson(QJsonDocument::Compact);
  }

  void printRow(const VibeSession& session, const QString& excerpt) {
    out_ << agoColumn(session.lastActivity) << QString(text(session.agent).rawValue).leftJustified(8)
         << visibleLine(session.projectName(), kShownTitle).leftJustified(20) << ' '
         << visibleLine(session.title, kShownTitle).leftJustified(kShownTitle) << ' '
         << visibleLine(session.id, kShownID) << '\n';
    if (!excerpt.isNull()) out_ << "              " << excerpt << '\n';
  }

  QTextStream& out_;
  bool json_;
  int count_ = 0;
};

}  // namespace

int runSessions(const QStringList& arguments, CommandContext& context) {
  const Command& command = commandNamed("sessions"_L1);
  const auto options = Options::parse(
      arguments, {{"limit"_L1, "N"_L1}, {"agent"_L1, "agent"_L1}, {"search"_L1, "text"_L1}, {"json"_L1, {}}});
  if (!options) return usageError(command, options.error(), context);
  if (!options->words().isEmpty()) return usageError(command, u"it takes no words"_s, context);
  const bool searches = options->has("search"_L1);
  const auto limit = options->count("limit"_L1, searches ? std::numeric_limits<int>::max() : kSessionLimit);
  if (!limit) return usageError(command, limit.error(), context);
  const auto agent = sessionAgent(options->value("agent"_L1));
  if (options->has("agent"_L1) && !agent) return usageError(command, u"--agent is claude or codex"_s, context);
  const QString searched = options->value("search"_L1);
  if (searches && searched.trimmed().isEmpty()) return usageError(command, u"--search takes a text"_s, context);

  const bool claude = agent.value_or(SessionAgent::claude) == SessionAgent::claude;
  const bool codex = agent.value_or(SessionAgent::codex) == SessionAgent::codex;
  SessionPrinter printer(context.out, options->has("json"_L1));
  const auto most = static_cast<std::size_t>(*limit);
  if (searches) {
    searchTranscripts(context.home, {searched, claude, codex, most},
                      [&](const SearchHit& hit) { printer.print(hit.session, hit.excerpt); });
  } else {
    for (const VibeSession& session : SessionTraceScanner(context.home).recentSessions(most, claude, codex))
      printer.print(session);
  }
  printer.finish();
  return exit_code::kSuccess;
}
