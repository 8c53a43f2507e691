#pragma once

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

/// Keeps the requests that would be sent.
class FakeHttp final : public HttpClient {
 public:
  void sendAndForget(const HttpRequest& request) override { sent.push_back(request); }
  std::vector<HttpRequest> sent;
};

/// Counts its activations.
class FakeTool final : public Tool {
 public:
  explicit FakeTool(const ToolInfo& info) : Tool(info, {}) {}
  void activate() override { ++activations; }
  int activations = 0;
};

/// A whole core over a temporary folder and recording fakes, with the fourteen tools; each test builds its own.
struct World {
  QTemporaryDir directory;
  Folders folders{directory.path()};
  FakeClock clock;
  FakeHotkeys hotkeyBackend;
  FakeNetworkPath networkPath;
  FakeToasts toasts;
  FakeHttp http;
  Platform system = makeNullPlatform();
  SettingsStore settings{folders.file(QStringLiteral("settings.json"))};
  AppPreferences preferences{folders.file(QStringLiteral("app-settings.json"))};
  NetworkMonitor network{networkPath};
  HotkeyCenter hotkeys{hotkeyBackend, settings, clock};
  InstallIdentity identity{folders.file(QStringLiteral("install-id"))};
  Analytics analytics{{preferences, network, http, identity, *system.systemInfo, [this] { return endpoint; }}};
  ToolRegistry registry{{settings, hotkeys, network, analytics, toasts, clock}};
  std::optional<EventEndpoint> endpoint =
      EventEndpoint{QUrl(QStringLiteral("https://api.example/v1/events")), "secret"};

  void bootstrap() { registry.bootstrap(makeTools()); }
  static std::vector<std::unique_ptr<Tool>> makeTools() {
    std::vector<std::unique_ptr<Tool>> tools;
    for (const ToolInfo& info : toolTable()) tools.push_back(std::make_unique<FakeTool>(info));
    return tools;
  }
  FakeTool& tool(const QString& id) { return *dynamic_cast<FakeTool*>(registry.tool(id)); }
  QStringList shownIDs() const {
    QStringList ids;
    for (const ToolItem& item : registry.items()) ids.append(item.id());
    return ids;
  }
  void setOnline(bool online) {
    networkPath.report(online);
    QCoreApplication::processEvents();
  }
};
