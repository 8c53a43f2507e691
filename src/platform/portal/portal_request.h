#pragma once

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusServiceWatcher>
#include <QObject>
#include <QTimer>

#include <map>

#include "platform/portal/portal.h"

/// One question to the portal and its answer, which comes as a signal of an object that is made for it. Deletes itself
/// once it is done; deleted before, it takes the question back.
class PortalRequest : public QObject {
  Q_OBJECT

 public:
  PortalRequest(QDBusConnection bus, PortalCall call, Portal::Done done, QObject* parent);
  ~PortalRequest() override;

  void start();

 private Q_SLOTS:
  /// The portal's answer: 0 and results, 1 for a no of the user's, 2 for everything else.
  void respond(uint code, const QVariantMap& results, const QDBusMessage& signal);

 private:
  using Response = std::pair<uint, QVariantMap>;

  QString expectedPath(const QString& token) const;
  void end(const Response& response);
  void accept(const QDBusMessage& handle);
  void finish(std::expected<QVariantMap, PortalError> result);

  QDBusConnection bus_;
  PortalCall call_;
  Portal::Done done_;
  QDBusServiceWatcher watcher_;
  QTimer patience_;
  /// The object that answers; empty when nothing is to be taken back.
  QString path_;
  bool isAccepted_ = false;
  /// What objects have answered before the portal has told which one is ours.
  std::map<QString, Response> early_;
};
