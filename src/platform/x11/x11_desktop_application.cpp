#include "platform/x11/x11_desktop_application.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>

#include "platform/portal/portal_names.h"

using namespace Qt::StringLiterals;

using portal_names::kObject;
using portal_names::kService;

namespace {

constexpr auto kInterface = "org.freedesktop.portal.Settings"_L1;
constexpr auto kGroup = "org.freedesktop.appearance"_L1;
constexpr auto kKey = "color-scheme"_L1;

/// 0: no preference, 1: dark, 2: light.
constexpr uint kDark = 1;
constexpr uint kNoPreference = 0;

}  // namespace

void X11DesktopApplication::watchAppearance(std::function<void(bool dark)> changed) {
  changed_ = std::move(changed);
  QDBusConnection bus = QDBusConnection::sessionBus();
  if (!bus.isConnected()) return;
  bus.connect(kService, kObject, kInterface, u"SettingChanged"_s, this,
              SLOT(settingChanged(QString, QString, QDBusVariant)));
  QDBusMessage question = QDBusMessage::createMethodCall(kService, kObject, kInterface, u"Read"_s);
  question << kGroup << kKey;
  auto* watcher = new QDBusPendingCallWatcher(bus.asyncCall(question), this);
  connect(watcher, &QDBusPendingCallWatcher::finished, this, [this, watcher] {
    const QDBusPendingReply<QDBusVariant> reply = *watcher;
    if (!reply.isError()) take(reply.value().variant());
    watcher->deleteLater();
  });
}

void X11DesktopApplication::settingChanged(const QString& group, const QString& key, const QDBusVariant& value) {
  if (group == kGroup && key == kKey) take(value.variant());
}

void X11DesktopApplication::take(const QVariant& scheme) {
  // Read() wraps the value in a second variant.
  const QVariant value = scheme.canConvert<QDBusVariant>() ? scheme.value<QDBusVariant>().variant() : scheme;
  if (const uint wanted = value.toUInt(); wanted != kNoPreference) changed_(wanted == kDark);
}
