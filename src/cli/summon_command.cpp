#include <QThread>

#include <algorithm>
#include <chrono>

#include "cli/command.h"
#include "core/hotkeys/app_shortcuts.h"
#include "core/net/app_channel.h"
#include "core/presenters/window_opener.h"
#include "core/tools/tool.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// How long a start may take before we give up, and how often we look.
constexpr auto kStartPatience = 5s;
constexpr auto kPollInterval = 20ms;

bool isKnown(const QString& target) {
  if (target == "menu"_L1 || std::ranges::find(kAppShortcuts, target, &AppShortcut::target) != kAppShortcuts.end())
    return true;
  if (std::ranges::any_of(kAppWindowNames, [&](const AppWindowName& entry) { return entry.name == target; }))
    return true;
  return std::ranges::any_of(toolTable(), [&](const ToolInfo& info) { return info.id == target; });
}

std::expected<QJsonObject, AppClient::Error> requestWithPatience(const QJsonObject& request) {
  const auto deadline = std::chrono::steady_clock::now() + kStartPatience;
  for (;;) {
    auto answer = AppClient::request(request);
    if (answer || std::chrono::steady_clock::now() > deadline) return answer;
    QThread::msleep(static_cast<unsigned long>(kPollInterval.count()));
  }
}

}  // namespace

int runSummon(const QStringList& arguments, CommandContext& context) {
  const Command& command = commandNamed("summon"_L1);
  if (arguments.size() != 1) return usageError(command, u"name one tool"_s, context);
  if (!isKnown(arguments.first()))
    return usageError(command, u"there is no tool '%1'; 'vantle tools' lists them"_s.arg(arguments.first()), context);

  const QJsonObject request{{u"do"_s, u"summon"_s}, {u"what"_s, arguments.first()}};
  auto answer = AppClient::request(request);
  if (!answer && answer.error().kind == AppClient::Error::Kind::notRunning) {
    if (!context.startApplication()) {
      context.err << "vantle: the application cannot be started\n";
      return exit_code::kFailure;
    }
    answer = requestWithPatience(request);
  }
  if (answer) return exit_code::kSuccess;
  context.err << "vantle: " << answer.error().description() << '\n';
  return exit_code::kFailure;
}
