#include "services/quota_store.h"

#include "base/json_reader.h"

using namespace Qt::StringLiterals;

namespace {

std::optional<int> integer(const std::optional<QByteArray>& header) {
  if (!header) return std::nullopt;
  bool isNumber = false;
  const int number = header->toInt(&isNumber);
  return isNumber ? std::optional(number) : std::nullopt;
}

std::optional<MetricUsage> usage(const QJsonObject& entry) {
  MetricUsage usage;
  const bool isWhole = decode(entry["used"_L1], usage.used) && decode(entry["limit"_L1], usage.limit);
  return isWhole ? std::optional(usage) : std::nullopt;
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
