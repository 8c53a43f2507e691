#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCall>
#include <QDBusServiceWatcher>
#include <QDeadlineTimer>
#include <QObject>
#include <QVariantMap>

#include <chrono>
#include <expected>
#include <functional>
#include <map>
#include <optional>

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
class Portal : public QObject {
  Q_OBJECT

 public:
  using Done = std::function<void(std::expected<QVariantMap, PortalError>)>;

  /// Who asks starts it, where nobody else is about to.
  static constexpr std::chrono::milliseconds kBeforeReviving{2'000};

  /// One that has ended is asked for again after `beforeReviving`, and after twice as long each time it does not last.
  explicit Portal(QDBusConnection bus, std::chrono::milliseconds beforeReviving = kBeforeReviving);

  /// Whether the portal has that interface (as in PortalCall), as far as that is known. Never waits: asks if nobody
  /// has, and `told` says when the answer is there. It holds until another portal takes its place.
  std::optional<bool> offer(const QString& interface);
  /// The same for those who cannot wait for a signal: waits for the answer, half a second at most from when it was
  /// asked for.
  bool offers(const QString& interface);
  /// Asks, and calls `done` with the results once the portal has them, unless the job ends before, which takes the
  /// question back.
  void request(PortalCall call, const JobRef& job, Done done);

 Q_SIGNALS:
  /// An answer to `offer` is there, or is another one: the portal has ended, or a new one has come, which knows nothing
  /// of what was agreed with the old one.
  void told(const QString& interface, bool isOffered);

 private:
  struct Answer {
    std::optional<bool> isOffered;
    std::optional<QDBusPendingCall> question;
  };

  void ask(const QString& interface, std::chrono::milliseconds patience);
  void take(const QString& interface, const QDBusMessage& answer);
  void followOwner(const QString& service, const QString& before, const QString& after);
  void endAll();
  void askAgain();
  void reviveLater();
  QStringList interfaces() const;

  QDBusConnection bus_;
  QDBusServiceWatcher watcher_;
  std::map<QString, Answer> answers_;
  /// To the portal that is there now.
  Job questions_ = Job::start();
  /// After its end.
  Job revival_;
  const std::chrono::milliseconds beforeReviving_;
  std::chrono::milliseconds revivalWait_{};
  /// Until then a portal's life has been a short one.
  QDeadlineTimer shortLife_;
};
