#pragma once

#include <QJsonObject>
#include <QString>

#include <functional>

#include "core/net/install_identity.h"
#include "core/settings/app_preferences.h"

class NetworkMonitor;
class SystemInfo;

/// The usage events there are.
enum class UsageEvent { appLaunched, toolActivated };

/// Reports which tools are opened, with the user's consent only, never while offline, and with nothing in it but an
/// anonymous install id, two versions and the tool's id. Events are neither queued nor retried. Main thread only.
class Analytics {
 public:
  struct Services {
    const AppPreferences& preferences;
    const NetworkMonitor& network;
    InstallIdentity& identity;
    const SystemInfo& system;
    /// Brings one event to the service, or does not; nobody waits for it.
    std::function<void(const QJsonObject& event)> deliver;
  };

  explicit Analytics(Services services) : services_(std::move(services)) {}

  /// All that is sent for it; also for whoever wants to see that.
  QJsonObject event(UsageEvent what, const QString& toolID = {}) const;
  /// Returns at once and never fails to the caller. `toolID` is empty for events of the application.
  void track(UsageEvent what, const QString& toolID = {});

 private:
  Services services_;
};
