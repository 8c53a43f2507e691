#include "platform/portal/portal_session.h"

#include <QDBusMessage>
#include <QDBusObjectPath>

#include <utility>

#include "platform/portal/portal_names.h"

using namespace Qt::StringLiterals;

namespace {

/// Whether the portal calls it a path or a text, as some do.
QString pathIn(const QVariant& handle) {
  return handle.canConvert<QDBusObjectPath>() ? handle.value<QDBusObjectPath>().path() : handle.toString();
}

}  // namespace

PortalSession::PortalSession(QDBusConnection bus, std::shared_ptr<Portal> portal, QString interface)
    : bus_(std::move(bus)), portal_(std::move(portal)), interface_(std::move(interface)) {}

PortalSession::~PortalSession() { close(); }

void PortalSession::open(const JobRef& job, Opened opened) {
  close();
  const QString token = portal_names::newToken();
  portal_->request({interface_, u"CreateSession"_s, {}, {{u"session_handle_token"_s, token}}}, job,
                   [this, opened = std::move(opened)](const auto& answer) {
                     if (!answer) return opened(std::unexpected(answer.error()));
                     keep(answer->value(u"session_handle"_s), opened);
                   });
}

void PortalSession::keep(const QVariant& handle, const Opened& opened) {
  const QString path = pathIn(handle);
  if (!path.startsWith(u'/'))
    return opened(std::unexpected(PortalError{PortalError::Kind::failed, u"The desktop portal gave no session"_s}));
  path_ = path;
  bus_.connect(portal_names::kService, path_, portal_names::kSession, u"Closed"_s, this, SLOT(takeEnd()));
  opened({});
}

void PortalSession::request(PortalCall call, const JobRef& job, Portal::Done done) {
  call.arguments.prepend(handle());
  portal_->request(std::move(call), job, std::move(done));
}

QVariant PortalSession::handle() const { return QVariant::fromValue(QDBusObjectPath(path_)); }

void PortalSession::close() {
  if (!isOpen()) return;
  bus_.send(QDBusMessage::createMethodCall(portal_names::kService, path_, portal_names::kSession, u"Close"_s));
  forget();
}

void PortalSession::forget() {
  if (!isOpen()) return;
  bus_.disconnect(portal_names::kService, std::exchange(path_, {}), portal_names::kSession, u"Closed"_s, this,
                  SLOT(takeEnd()));
}

void PortalSession::takeEnd() {
  forget();
  Q_EMIT closed();
}
