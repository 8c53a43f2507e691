#include "service/reports/event_endpoint.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>

#include <array>

#include "service/links/form_exchange.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kLongestValue = 200;

struct Key {
  QLatin1StringView name;
  bool isRequired;
};

constexpr std::array kKeys = {
    Key{"event"_L1, true},     Key{"installId"_L1, true}, Key{"appVersion"_L1, true},
    Key{"osVersion"_L1, true}, Key{"tool"_L1, false},
};

bool isValid(const QJsonObject& event) {
  qsizetype known = 0;
  for (const Key& key : kKeys) {
    const QJsonValue value = event.value(key.name);
    if (value.isUndefined() && !key.isRequired) continue;
    const QString text = value.toString();
    if (!value.isString() || text.isEmpty() || text.size() > kLongestValue || text.contains(QChar::Null)) return false;
    ++known;
  }
  return known == event.size();
}

}  // namespace

void EventEndpoint::answer(const Request&, const QByteArray& body, const Reply& reply) {
  const auto document = QJsonDocument::fromJson(body);
  if (!document.isObject() || !isValid(document.object())) return reply(Response::text(400, "This is no usage event."));
  const QString text = QString::fromUtf8(document.toJson(QJsonDocument::Compact));
  writes_.add(
      [text, now = QDateTime::currentSecsSinceEpoch()](Connection& connection) -> Stored<void> {
        const auto done = connection.run(u"INSERT INTO events (received_at, body) VALUES (?, ?)"_s, {now, text});
        if (!done) return std::unexpected(done.error());
        return {};
      },
      [reply](const Stored<void>& written) {
        reply(written ? Response{.status = 204, .contentType = {}} : FormExchange::storageFailure(written.error()));
      });
}
