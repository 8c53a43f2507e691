#include "services/quota_store.h"

#include <cmath>
#include <cstdlib>

#include "base/json_reader.h"

using namespace Qt::StringLiterals;

namespace {

/// The largest number that JSON holds to the unit; sums and differences of two of them never overflow.
constexpr qint64 kLargest = (qint64{1} << 53) - 1;

std::optional<qint64> integer(const std::optional<QByteArray>& header) {
  if (!header) return std::nullopt;
  bool isNumber = false;
  const qint64 number = header->toLongLong(&isNumber);
  return isNumber && std::abs(number) <= kLargest ? std::optional(number) : std::nullopt;
}

std::optional<qint64> integer(const QJsonValue& value) {
  const double number = value.toDouble(std::nan(""));
  if (!(std::abs(number) <= double(kLargest)) || number != std::trunc(number)) return std::nullopt;
  return static_cast<qint64>(number);
}

std::optional<MetricUsage> usage(const QJsonObject& entry) {
  const auto used = integer(entry["used"_L1]);
  const auto limit = integer(entry["limit"_L1]);
  return used && limit ? std::optional(MetricUsage{*used, *limit}) : std::nullopt;
}

}  // namespace

void QuotaStore::record(const HttpResponse& response, const QString& metric) {
  const auto limit = integer(response.header("X-Quota-Limit"));
  const auto remaining = integer(response.header("X-Quota-Remaining"));
  if (!limit || !remaining) return;
  metrics_[metric] = {*limit - *remaining, *limit};
  if (const auto reset = response.header("X-Quota-Reset")) resetsAt_ = QString::fromUtf8(*reset);
  touch();
}

void QuotaStore::apply(const QJsonObject& quota) {
  decode(quota["plan"_L1], plan_);
  decode(quota["resetsAt"_L1], resetsAt_);
  const QJsonObject entries = quota["usage"_L1].toObject();
  for (auto entry = entries.begin(); entry != entries.end(); ++entry)
    if (const auto read = usage(entry.value().toObject())) metrics_[entry.key()] = *read;
  touch();
}

void QuotaStore::touch() {
  lastUpdated_ = clock_.now();
  Q_EMIT changed();
}
