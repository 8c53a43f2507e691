#pragma once

#include <QDBusConnection>
#include <QObject>
#include <QVariant>

#include <expected>
#include <functional>
#include <memory>

#include "platform/portal/portal.h"

/// A session of one of the portal's interfaces, one at a time: what the portal gives is given to it, until either side
/// ends it. Ends its own with itself. Main thread only.
class PortalSession final : public QObject {
  Q_OBJECT

 public:
  using Opened = std::function<void(std::expected<void, PortalError>)>;

  /// `interface` as in PortalCall.
  PortalSession(QDBusConnection bus, std::shared_ptr<Portal> portal, QString interface);
  ~PortalSession() override;

  /// Opens one in place of the one before, unless the job ends first.
  void open(const JobRef& job, Opened opened);
  /// Asks for something within it: the session comes before the call's arguments.
  void request(PortalCall call, const JobRef& job, Portal::Done done);

  bool isOpen() const { return !path_.isEmpty(); }
  const QString& path() const { return path_; }
  /// As the portal's methods take it.
  QVariant handle() const;

  void close();
  /// Its portal has ended, and knows nothing of it any more.
  void forget();

 Q_SIGNALS:
  /// The desktop has closed it, whose user may not want it any more.
  void closed();

 private Q_SLOTS:
  void takeEnd();

 private:
  void keep(const QVariant& handle, const Opened& opened);

  QDBusConnection bus_;
  std::shared_ptr<Portal> portal_;
  QString interface_;
  /// Of the session's object; empty without one.
  QString path_;
};
