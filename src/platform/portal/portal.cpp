#include "platform/portal/portal.h"

#include <QDBusMessage>
#include <QDBusVariant>

#include "platform/portal/portal_names.h"
#include "platform/portal/portal_request.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// A portal that runs answers within a few milliseconds.
constexpr auto kVersionPatience = 500ms;

}  // namespace

Portal::Portal(QDBusConnection bus)
    : bus_(std::move(bus)), watcher_(portal_names::kService, bus_, QDBusServiceWatcher::WatchForOwnerChange) {
  QObject::connect(&watcher_, &QDBusServiceWatcher::serviceOwnerChanged, &watcher_, [this] { offered_.clear(); });
}

bool Portal::offers(const QString& interface) {
  if (!bus_.isConnected()) return false;
  const auto known = offered_.find(interface);
  if (known != offered_.end()) return known->second;
  auto question = QDBusMessage::createMethodCall(portal_names::kService, portal_names::kObject,
                                                 u"org.freedesktop.DBus.Properties"_s, u"Get"_s);
  question << QString(portal_names::kPrefix + interface) << u"version"_s;
  const QDBusMessage answer = bus_.call(question, QDBus::Block, static_cast<int>(kVersionPatience.count()));
  const QVariant version = answer.arguments().value(0).value<QDBusVariant>().variant();
  return offered_[interface] = answer.type() == QDBusMessage::ReplyMessage && version.toUInt() > 0;
}

void Portal::request(PortalCall call, const JobRef& job, Done done) {
  if (!job.isRunning()) return;
  // Ends with the job, or by itself.
  auto* request = new PortalRequest(bus_, std::move(call), job.bind(std::move(done)), job.scope());
  request->start();
}
