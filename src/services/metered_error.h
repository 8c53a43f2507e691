#pragma once

#include <QLocale>
#include <QTimeZone>

#include <optional>
#include <variant>

#include "core/net/http_client.h"

/// The refusal of a request because the month's allowance is used up.
struct QuotaExceededError {
  /// The service's name of the counter.
  QString metric;
  /// As the service spells it.
  QString plan;
  int used = 0;
  int limit = 0;
  /// ISO 8601, or empty.
  QString resetsAt;

  bool operator==(const QuotaExceededError&) const = default;
  QString description() const;
};

/// The refusal in the body of a 402 answer; none when it is not well-formed.
std::optional<QuotaExceededError> quotaError(const QByteArray& body);

/// Any other status that is no success.
struct MeteredError {
  int status = 0;
  QByteArray body;

  bool operator==(const MeteredError&) const = default;
  QString description() const;

  static MeteredError badStatus(int status, const QByteArray& body) { return {status, body}; }
};

/// Why a metered request gave no result.
using MeteredFailure = std::variant<QuotaExceededError, MeteredError, HttpError>;
QString description(const MeteredFailure& failure);

/// The words for a counter in messages ("image questions"); an unknown one is shown as it is.
QString metricLabel(const QString& metric);
/// The short date of the next reset ("Dec 1"), in words when `resetsAt` is no point in time.
QString resetLabel(const QString& resetsAt, const QLocale& locale = QLocale(),
                   const QTimeZone& zone = QTimeZone::systemTimeZone());
