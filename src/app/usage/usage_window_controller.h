#pragma once

#include <QObject>

#include "base/job.h"
#include "services/usage_meter.h"

class QuotaClient;

/// What the usage window shows: the counters as far as they are known, and whether they are being fetched. A refresh
/// that fails is silent: what was shown stays. Main thread only.
class UsageWindowController : public QObject {
  Q_OBJECT

 public:
  enum class State { loading, unknown, known };

  UsageWindowController(const QuotaStore& store, QuotaClient& client);

  State state() const;
  /// The plan's name as the service spells it; empty until known.
  QString plan() const { return store_.plan(); }
  bool isPaid() const;
  std::vector<UsageMeter> meters() const { return usageMeters(store_.metrics()); }

  /// Fetches the counters; in place of a refresh that is under way.
  void refresh();

 Q_SIGNALS:
  void changed();

 private:
  const QuotaStore& store_;
  QuotaClient& client_;
  Job refresh_;
};
