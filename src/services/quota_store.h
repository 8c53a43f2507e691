#pragma once

#include <QDateTime>
#include <QJsonObject>
#include <QObject>

#include <map>
#include <optional>

#include "base/clock.h"
#include "core/net/http_client.h"

/// One metered counter.
struct MetricUsage {
  qint64 used = 0;
  qint64 limit = 0;

  bool operator==(const MetricUsage&) const = default;
};

/// The latest known counters of the user's monthly allowance. Starts empty at every launch and is never saved. Main
/// thread only.
class QuotaStore : public QObject {
  Q_OBJECT

 public:
  explicit QuotaStore(const Clock& clock) : clock_(clock) {}

  /// The plan's name as the service spells it; empty until known.
  const QString& plan() const { return plan_; }
  /// ISO 8601, as the service sent it; empty until known.
  const QString& resetsAt() const { return resetsAt_; }
  /// By the service's name of the counter: "answers", "text", "image_answers", "image_generate".
  const std::map<QString, MetricUsage>& metrics() const { return metrics_; }
  /// Since 1970; none before the first update.
  std::optional<Clock::Seconds> lastUpdated() const { return lastUpdated_; }

  /// Takes over the quota headers of a metered response; changes nothing unless limit and remaining are both there.
  void record(const HttpResponse& response, const QString& metric);
  /// Takes over a quota response. Counters that it does not name keep their values.
  void apply(const QJsonObject& quota);

 Q_SIGNALS:
  void changed();

 private:
  void touch();

  const Clock& clock_;
  QString plan_;
  QString resetsAt_;
  std::map<QString, MetricUsage> metrics_;
  std::optional<Clock::Seconds> lastUpdated_;
};
