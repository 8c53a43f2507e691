#include "service/status_endpoints.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>

using namespace Qt::StringLiterals;

namespace {

/// Counters are kept by calendar month, UTC.
QString nextMonth() {
  const QDate today = QDateTime::currentDateTimeUtc().date();
  const QDate first = QDate(today.year(), today.month(), 1).addMonths(1);
  return QDateTime(first, QTime(0, 0), Qt::UTC).toString(Qt::ISODate);
}

}  // namespace

Response QuotaEndpoint::answer(const Request&) {
  const QJsonObject quota{{u"plan"_s, plan_}, {u"resetsAt"_s, nextMonth()}, {u"usage"_s, QJsonObject()}};
  return {200, QJsonDocument(quota).toJson(QJsonDocument::Compact)};
}
