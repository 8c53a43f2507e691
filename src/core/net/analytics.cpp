#include "core/net/analytics.h"

#include <QCoreApplication>
#include <QJsonDocument>
#include <QJsonObject>

#include <array>
#include <utility>

#include "core/net/network_monitor.h"
#include "platform/system_info.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

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

void Analytics::track(UsageEvent event, const QString& toolID) {
  if (!services_.preferences.value().shareUsageStats || !services_.network.isOnline()) return;
  const auto endpoint = services_.endpoint();
  if (!endpoint) return;

  QJsonObject body{{u"event"_s, name(event)},
                   {u"installId"_s, services_.identity.id()},
                   {u"appVersion"_s, QCoreApplication::applicationVersion()},
                   {u"osVersion"_s, services_.system.osVersion()}};
  if (!toolID.isEmpty()) body.insert("tool"_L1, toolID);
  HttpRequest request{.method = "POST",
                      .url = endpoint->url,
                      .headers = {{"Content-Type", "application/json"}},
                      .body = QJsonDocument(body).toJson(QJsonDocument::Compact),
                      .timeout = 15s};
  if (!endpoint->bearer.isEmpty()) request.headers.emplace_back("Authorization", "Bearer " + endpoint->bearer);
  services_.http.sendAndForget(request);
}
