#include "platform/portal/portal_request.h"

#include <QDBusObjectPath>

#include <utility>

#include "platform/portal/portal_names.h"

using namespace Qt::StringLiterals;

namespace {

PortalError unavailable(const QString& reason) { return {PortalError::Kind::unavailable, reason}; }

}  // namespace

PortalRequest::PortalRequest(QDBusConnection bus, PortalCall call, Portal::Done done, QObject* parent)
    : QObject(parent),
      bus_(std::move(bus)),
      call_(std::move(call)),
      done_(std::move(done)),
      watcher_(portal_names::kService, bus_, QDBusServiceWatcher::WatchForUnregistration) {
  patience_.setSingleShot(true);
  connect(&patience_, &QTimer::timeout, this,
          [this] { finish(std::unexpected(unavailable(u"The desktop portal does not answer"_s))); });
  connect(&watcher_, &QDBusServiceWatcher::serviceUnregistered, this,
          [this] { finish(std::unexpected(unavailable(u"The desktop portal has ended"_s))); });
}

PortalRequest::~PortalRequest() {
  if (path_.isEmpty()) return;
  bus_.send(QDBusMessage::createMethodCall(portal_names::kService, path_, portal_names::kRequest, u"Close"_s));
}

void PortalRequest::start() {
  const QString token = portal_names::newToken();
  path_ = expectedPath(token);
  // Before the question: the answer may be there as soon as it is asked, at a path that is not known yet.
  bus_.connect(portal_names::kService, {}, portal_names::kRequest, u"Response"_s, this,
               SLOT(respond(uint, QVariantMap, QDBusMessage)));
  call_.options.insert(u"handle_token"_s, token);
  auto question = QDBusMessage::createMethodCall(portal_names::kService, portal_names::kObject,
                                                 portal_names::kPrefix + call_.interface, call_.method);
  question.setArguments(call_.arguments + QVariantList{call_.options});
  auto* answer = new QDBusPendingCallWatcher(bus_.asyncCall(question, static_cast<int>(call_.patience.count())), this);
  connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] { accept(answer->reply()); });
  patience_.start(call_.patience);
}

void PortalRequest::respond(uint code, const QVariantMap& results, const QDBusMessage& signal) {
  if (signal.path() == path_) return end({code, results});
  if (!isAccepted_) early_[signal.path()] = {code, results};
}

void PortalRequest::end(const Response& response) {
  const auto& [code, results] = response;
  path_.clear();
  if (code == 0) return finish(results);
  if (code == 1) return finish(std::unexpected(PortalError{PortalError::Kind::refused, u"It was not allowed"_s}));
  finish(std::unexpected(PortalError{PortalError::Kind::failed, u"The desktop portal failed"_s}));
}

QString PortalRequest::expectedPath(const QString& token) const {
  const QString sender = bus_.baseService().mid(1).replace(u'.', u'_');
  return u"%1/request/%2/%3"_s.arg(portal_names::kObject, sender, token);
}

/// Portals of before 2017 choose the path themselves.
void PortalRequest::accept(const QDBusMessage& handle) {
  if (handle.type() == QDBusMessage::ErrorMessage) {
    path_.clear();
    return finish(std::unexpected(unavailable(handle.errorMessage())));
  }
  const QString path = handle.arguments().value(0).value<QDBusObjectPath>().path();
  isAccepted_ = true;
  if (path.isEmpty() || path_.isEmpty()) return;
  path_ = path;
  if (const auto early = early_.find(path); early != early_.end()) end(early->second);
}

void PortalRequest::finish(std::expected<QVariantMap, PortalError> result) {
  if (!done_) return;
  deleteLater();
  std::exchange(done_, nullptr)(std::move(result));
}
