#include "service/accounts/quota_endpoint.h"

#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

void QuotaEndpoint::answer(const Request& request, const QByteArray&, const Reply& reply) {
  const QDateTime now = QDateTime::currentDateTimeUtc();
  const auto standings = quota_.standings(request.caller, now);
  if (!standings) return reply(Response::text(503, standings.error().description().toUtf8()));
  QJsonObject usage;
  for (const Standing& standing : *standings)
    if (standing.limit)
      usage.insert(standing.metric, QJsonObject{{u"used"_s, standing.used}, {u"limit"_s, *standing.limit}});
  const QJsonObject answer{{u"plan"_s, request.caller.plan},
                           {u"resetsAt"_s, Quota::nextReset(now).toString(Qt::ISODate)},
                           {u"usage"_s, usage}};
  reply({.status = 200, .body = QJsonDocument(answer).toJson(QJsonDocument::Compact)});
}
