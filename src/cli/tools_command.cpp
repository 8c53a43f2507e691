#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "base/clock.h"
#include "cli/command.h"
#include "core/hotkeys/hotkey_center.h"
#include "core/net/analytics.h"
#include "core/net/network_monitor.h"
#include "core/presenters/toast_presenter.h"
#include "core/tools/tool_registry.h"

using namespace Qt::StringLiterals;

namespace {

/// A row of the table: facts only, it cannot be started from here.
class ListedTool final : public Tool {
 public:
  explicit ListedTool(const ToolInfo& info) : Tool(info, {}) {}
  void activate() override {}
};

class SilentToasts final : public ToastPresenter {
 public:
  void show(ToastContent, std::chrono::milliseconds) override {}
  void dismiss(bool) override {}
};

std::vector<std::unique_ptr<Tool>> listedTools() {
  std::vector<std::unique_ptr<Tool>> tools;
  for (const ToolInfo& info : toolTable()) tools.push_back(std::make_unique<ListedTool>(info));
  return tools;
}

QJsonObject toJson(const ToolRegistry& registry, const Tool& tool) {
  const QString shortcut = registry.shortcutDisplay(tool);
  return {{u"id"_s, tool.id()},
          {u"name"_s, tool.name()},
          {u"shortcut"_s, shortcut.isEmpty() ? QJsonValue(QJsonValue::Null) : QJsonValue(shortcut)},
          {u"enabled"_s, registry.isEnabled(tool.id())},
          {u"pinned"_s, registry.isPinned(tool.id())},
          {u"uses"_s, registry.usageCount(tool.id())}};
}

void printJson(const ToolRegistry& registry, QTextStream& out) {
  QJsonArray rows;
  for (const ToolItem& item : registry.items()) rows.append(toJson(registry, *item.tool));
  out << QJsonDocument(rows).toJson(QJsonDocument::Indented);
}

void printTable(const ToolRegistry& registry, QTextStream& out) {
  for (const ToolItem& item : registry.items()) {
    const Tool& tool = *item.tool;
    QStringList marks;
    if (!registry.isEnabled(tool.id())) marks.append(u"disabled"_s);
    if (registry.isPinned(tool.id())) marks.append(u"pinned"_s);
    const int uses = registry.usageCount(tool.id());
    if (uses > 0) marks.append(uses == 1 ? u"1 use"_s : u"%1 uses"_s.arg(uses));
    const QString row = tool.id().leftJustified(18) + tool.name().leftJustified(20) +
                        registry.shortcutDisplay(tool).leftJustified(8) + marks.join(u", "_s);
    out << row.trimmed() << '\n';
  }
}

}  // namespace

int runTools(const QStringList& arguments, CommandContext& context) {
  const bool json = arguments == QStringList{u"--json"_s};
  if (!arguments.isEmpty() && !json) return usageError(commandNamed("tools"_L1), u"it takes only --json"_s, context);

  Platform platform = makeNullPlatform();
  SystemClock clock;
  SettingsStore settings(context.folders.file(u"settings.json"_s));
  AppPreferences preferences(context.folders.file(u"app-settings.json"_s));
  NetworkMonitor network(*platform.networkPath);
  HotkeyCenter hotkeys(*platform.hotkeys, settings, clock);
  InstallIdentity identity(context.folders.file(u"install-id"_s));
  Analytics analytics({preferences, network, identity, *platform.systemInfo, [](const QJsonObject&) {}});
  SilentToasts toasts;
  ToolRegistry registry({settings, hotkeys, network, analytics, toasts, clock});
  registry.bootstrap(listedTools());

  if (json)
    printJson(registry, context.out);
  else
    printTable(registry, context.out);
  return exit_code::kSuccess;
}
