#include "core/net/analytics.h"

#include <QCoreApplication>

#include <array>
#include <utility>

#include "core/net/network_monitor.h"
#include "platform/system_info.h"

using namespace Qt::StringLiterals;

namespace {

constexpr std::array kEventNames = {
    std::pair{UsageEvent::appLaunched, "app_launched"_L1},
    std::pair{UsageEvent::toolActivated, "tool_activated"_L1},
};

QString name(UsageEvent event) {
  for (const auto& [value, text] : kEventNames)
    if (value == event) return text;
  return {};
}

}  // namespace

QJsonObject Analytics::event(UsageEvent what, const QString& toolID) const {
  QJsonObject event{{u"event"_s, name(what)},
                    {u"installId"_s, services_.identity.id()},
                    {u"appVersion"_s, QCoreApplication::applicationVersion()},
                    {u"osVersion"_s, services_.system.osVersion()}};
  if (!toolID.isEmpty()) event.insert("tool"_L1, toolID);
  return event;
}

void Analytics::track(UsageEvent what, const QString& toolID) {
  if (!services_.preferences.value().shareUsageStats || !services_.network.isOnline()) return;
  services_.deliver(event(what, toolID));
}
