#pragma once

#include <QCoreApplication>
#include <QTemporaryDir>

#include "core/hotkeys/hotkey_center.h"
#include "core/net/analytics.h"
#include "core/net/network_monitor.h"
#include "core/settings/app_preferences.h"
#include "core/settings/folders.h"
#include "core/tools/tool_registry.h"
#include "platform/platform.h"
#include "support/fake_clock.h"
#include "support/fake_platform.h"
#include "support/fake_presenters.h"

/// A whole core over a temporary folder and recording fakes; each test builds its own.
struct World {
  class RecordingTool final : public Tool {
   public:
    RecordingTool(const ToolInfo& info, World& world) : Tool(info, {}), world_(world) {}
    void activate() override {
      world_.activated.append(id());
      if (world_.onActivate) world_.onActivate();
    }

   private:
    World& world_;
  };

  /// The fourteen tools of the table.
  std::vector<std::unique_ptr<Tool>> makeTools() {
    std::vector<std::unique_ptr<Tool>> tools;
    for (const ToolInfo& info : toolTable()) tools.push_back(std::make_unique<RecordingTool>(info, *this));
    return tools;
  }
  void bootstrap() { registry.bootstrap(makeTools()); }
  qsizetype activations(const QString& id) const { return activated.count(id); }
  QStringList order() const {
    QStringList ids;
    for (const ToolItem& item : registry.items()) ids.append(item.id());
    return ids;
  }
  void setOnline(bool online) {
    networkPath.report(online);
    QCoreApplication::processEvents();
  }

  QTemporaryDir directory;
  Folders folders{directory.path()};
  FakeClock clock;
  FakeHotkeys hotkeyBackend;
  FakeNetworkPath networkPath;
  FakeToasts toasts;
  FakeSounds sounds;
  Platform system = makeNullPlatform();
  SettingsStore settings{folders.file(QStringLiteral("settings.json"))};
  AppPreferences preferences{folders.file(QStringLiteral("app-settings.json"))};
  NetworkMonitor network{networkPath};
  HotkeyCenter hotkeys{hotkeyBackend, settings, clock};
  InstallIdentity identity{folders.file(QStringLiteral("install-id"))};
  Analytics analytics{{preferences, network, identity, *system.systemInfo,
                       [this](const QJsonObject& event) { events.push_back(event); }}};
  ToolRegistry registry{{settings, hotkeys, network, analytics, toasts, clock}};
  QStringList activated;
  /// What was handed over to be sent.
  std::vector<QJsonObject> events;
  std::function<void()> onActivate;
};

/// The same with the tools registered; starting one runs `onActivate`.
struct ToolWorld : World {
  ToolWorld() { bootstrap(); }
};
