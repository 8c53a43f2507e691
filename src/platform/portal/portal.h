#pragma once

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QVariantMap>

#include <chrono>
#include <expected>
#include <functional>
#include <map>

#include "base/job.h"

/// Why the desktop portal has not done what it was asked for.
struct PortalError {
  enum class Kind {
    /// There is none, it has gone, or it does not answer.
    unavailable,
    /// The user has said no, or has closed the question.
    refused,
    failed,
  };
  Kind kind = Kind::failed;
  QString reason;
};

/// One question to the portal.
struct PortalCall {
  /// Without the "org.freedesktop.portal." that all begin with.
  QString interface;
  QString method;
  /// What comes before the options.
  QVariantList arguments = {};
  QVariantMap options = {};
  /// For the whole of it; the portal may ask the user.
  std::chrono::milliseconds patience{60'000};
};

/// The desktop portal on a message bus: what a desktop offers to programs that it does not trust with more. Main thread
/// only.
class Portal {
 public:
  using Done = std::function<void(std::expected<QVariantMap, PortalError>)>;

  explicit Portal(QDBusConnection bus);

  /// Whether the portal has that interface (as in PortalCall). Waits for the first answer, half a second at most;
  /// what was answered holds until another portal takes its place.
  bool offers(const QString& interface);
  /// Asks, and calls `done` with the results once the portal has them, unless the job ends before, which takes the
  /// question back.
  void request(PortalCall call, const JobRef& job, Done done);

 private:
  QDBusConnection bus_;
  QDBusServiceWatcher watcher_;
  std::map<QString, bool> offered_;
};
