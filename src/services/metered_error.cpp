#include "services/metered_error.h"

#include <QDateTime>
#include <QJsonDocument>
#include <QJsonObject>
#include <QRegularExpression>

#include <array>
#include <cmath>

#include "services/service_error.h"

using namespace Qt::StringLiterals;

namespace {

constexpr std::array kMetricLabels = {
    std::pair{"answers"_L1, "questions"_L1},
    std::pair{"text"_L1, "text transforms"_L1},
    std::pair{"image_answers"_L1, "image questions"_L1},
    std::pair{"image_generate"_L1, "image generations"_L1},
};

/// A number without a fraction that an int holds.
std::optional<int> integer(const QJsonValue& value) {
  const double number = value.toDouble(std::nan(""));
  if (!(std::abs(number) <= std::numeric_limits<int>::max()) || number != std::trunc(number)) return std::nullopt;
  return static_cast<int>(number);
}

/// A point in time with its zone; Qt alone would take a text without one as local.
QDateTime internetDateTime(const QString& text) {
  static const QRegularExpression form(u"^\\d{4}-\\d\\d-\\d\\dT\\d\\d:\\d\\d:\\d\\d(\\.\\d+)?(Z|[+-]\\d\\d:\\d\\d)$"_s);
  return form.match(text).hasMatch() ? QDateTime::fromString(text, Qt::ISODateWithMs) : QDateTime();
}

}  // namespace

QString metricLabel(const QString& metric) {
  for (const auto& [name, label] : kMetricLabels)
    if (name == metric) return label;
  return metric;
}

QString resetLabel(const QString& resetsAt, const QLocale& locale, const QTimeZone& zone) {
  const QDateTime reset = internetDateTime(resetsAt);
  return reset.isValid() ? locale.toString(reset.toTimeZone(zone).date(), u"MMM d"_s) : u"next month"_s;
}

std::optional<QuotaExceededError> quotaError(const QByteArray& body) {
  const QJsonObject refusal = QJsonDocument::fromJson(body).object();
  const QJsonValue metric = refusal.value("metric"_L1);
  const QJsonValue plan = refusal.value("plan"_L1);
  const auto limit = integer(refusal.value("limit"_L1));
  if (!metric.isString() || !plan.isString() || !limit) return std::nullopt;
  const int used = integer(refusal.value("used"_L1)).value_or(*limit);
  return QuotaExceededError{metric.toString(), plan.toString(), used, *limit, refusal.value("resetsAt"_L1).toString()};
}

QString QuotaExceededError::description() const {
  return u"You've used all %1 %2 this month on the %3 plan. Resets %4."_s.arg(
      QString::number(limit), metricLabel(metric), plan, resetLabel(resetsAt));
}

QString MeteredError::description() const { return httpFailure(u"Request failed"_s, {status, {}, body}); }

QString description(const MeteredFailure& failure) {
  return std::visit([](const auto& error) { return error.description(); }, failure);
}
