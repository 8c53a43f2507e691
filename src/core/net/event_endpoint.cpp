#include "core/net/event_endpoint.h"

#include <QHostAddress>
#include <QJsonObject>

#include "base/json_file.h"
#include "base/json_reader.h"

using namespace Qt::StringLiterals;

namespace {

bool isLoopback(const QString& host) { return host == "localhost"_L1 || QHostAddress(host).isLoopback(); }

bool isAllowed(const QUrl& base) {
  if (!base.isValid() || base.host().isEmpty()) return false;
  return base.scheme() == "https"_L1 || (base.scheme() == "http"_L1 && isLoopback(base.host()));
}

QString builtInBase() {
  const QString host = QStringLiteral(VANTLE_API_HOST);
  return host.isEmpty() ? QString() : u"https://"_s + host;
}

}  // namespace

std::optional<EventEndpoint> EventEndpoint::current(const Folders& folders) {
  QString base = builtInBase();
  QString token = QStringLiteral(VANTLE_SERVICE_TOKEN);
  JsonFile file(folders.file(u"services.json"_s));
  if (const auto document = file.read()) {
    JsonReader reader(document->object());
    reader.read("api"_L1, base);
    reader.read("token"_L1, token);
  }
  QUrl url(base, QUrl::StrictMode);
  if (!isAllowed(url)) return std::nullopt;
  QString path = url.path();
  while (path.endsWith(u'/')) path.chop(1);
  url.setPath(path + u"/v1/events"_s);
  return EventEndpoint{url, token.toUtf8()};
}
