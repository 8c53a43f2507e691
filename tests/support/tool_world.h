#pragma once

#include <QCoreApplication>
#include <QTemporaryDir>

#include <memory>
#include <vector>

#include "core/hotkeys/hotkey_center.h"
#include "core/net/analytics.h"
#include "core/net/network_monitor.h"
#include "core/settings/folders.h"
#include "core/tools/tool_registry.h"
#include "platform/system_info.h"
#include "support/fake_clock.h"
#include "support/fake_platform.h"
#include "support/fake_presenters.h"

/// Sends nothing and remembers what it was given.
class FakeHttp final : public HttpClient {
 public:
  void sendAndForget(const HttpRequest& request) override { sent.push_back(request); }
  std::vector<HttpRequest> sent;
};

class FakeSystem final : public SystemInfo {
 public:
  QString osVersion() const override { return QStringLiteral("Testix 1"); }
  QString thisComputer() const override { return QStringLiteral("this computer"); }
  QString systemName() const override { return QStringLiteral("Testix"); }
  QString fileManager() const override { return QStringLiteral("file manager"); }
  QString systemSettings() const override { return QStringLiteral("Settings"); }
  bool isMotionReduced() const override { return motionReduced; }
  QString shortcutOwnerHint() const override { return {}; }
  bool motionReduced = true;
};

/// The fourteen tools over a real registry in a folder of their own; starting one runs `onActivate`.
struct ToolWorld {
  class RecordingTool final : public Tool {
   public:
    RecordingTool(const ToolInfo& info, ToolWorld& world) : Tool(info, {}), world_(world) {}
    void activate() override {
      world_.activated.append(id());
      if (world_.onActivate) world_.onActivate();
    }

   private:
    ToolWorld& world_;
  };

  /// `tools`: how many of the table's tools there are.
  explicit ToolWorld(std::size_t tools = 14) {
    std::vector<std::unique_ptr<Tool>> made;
    for (const ToolInfo& info : toolTable().first(tools)) made.push_back(std::make_unique<RecordingTool>(info, *this));
    registry.bootstrap(std::move(made));
  }

  void setOnline(bool online) {
    path.report(online);
    QCoreApplication::processEvents();
  }
  QStringList order() const {
    QStringList ids;
    for (const ToolItem& item : registry.items()) ids.append(item.id());
    return ids;
  }

  QTemporaryDir folder;
  Folders folders{folder.path()};
  FakeClock clock;
  FakeHotkeys hotkeyBackend;
  FakeNetworkPath path;
  FakeToasts toasts;
  FakeSounds sounds;
  FakeHttp http;
  FakeSystem system;
  SettingsStore settings{folders.file(QStringLiteral("settings.json"))};
  AppPreferences preferences{folders.file(QStringLiteral("app-settings.json"))};
  InstallIdentity identity{folders.file(QStringLiteral("install-id"))};
  HotkeyCenter hotkeys{hotkeyBackend, settings, clock};
  NetworkMonitor network{path};
  Analytics analytics{{preferences, network, http, identity, system, [] { return std::nullopt; }}};
  ToolRegistry registry{{settings, hotkeys, network, analytics, toasts, clock}};
  QStringList activated;
  std::function<void()> onActivate;
};
