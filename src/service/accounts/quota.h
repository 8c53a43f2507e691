#pragma once

#include <QDateTime>
#include <QMap>

#include <variant>

#include "service/http/message.h"
#include "service/storage/write_queue.h"

/// One counter of one credential in the present month.
struct Standing {
  QString metric;
  QString plan;
  qint64 used = 0;
  /// Nothing: endless.
  std::optional<qint64> limit;
  QDateTime resetsAt;

  /// The three headers that go with every answer to a metered request; none when it is endless.
  void describe(Response& response) const;
  /// The answer when there is nothing left: 402.
  Response refusal() const;
};

/// Counts metered requests, by credential, metric and calendar month, UTC. What is reserved and never committed,
/// because its work failed or the service was killed, is not counted. Waits for the database: for threads of the
/// workers.
class Quota {
 public:
  /// One unit, given back when this dies without a commit.
  class Reservation {
   public:
    Reservation(Quota& quota, QString id, Standing standing);
    Reservation(Reservation&&) = default;
    Reservation& operator=(Reservation&&) = delete;
    Reservation(const Reservation&) = delete;
    Reservation& operator=(const Reservation&) = delete;
    ~Reservation();

    /// The work was done. How the counter stands now.
    Stored<Standing> commit();
    /// How the counter stood before.
    const Standing& standing() const { return standing_; }

   private:
    Quota* quota_;
    QString id_;
    Standing standing_;
  };
  using Refused = std::variant<Standing, StorageError>;

  Quota(Database& database, WriteQueue& writes) : database_(database), writes_(writes) {}

  std::expected<Reservation, Refused> reserve(const Caller& caller, const QString& metric, const QDateTime& now);
  /// Of all metrics, for whoever asks how much is left. Any thread.
  Stored<std::vector<Standing>> standings(const Caller& caller, const QDateTime& now) const;

  /// The beginning of the next month.
  static QDateTime nextReset(const QDateTime& now);

 private:
  Stored<void> release(const QString& id, Standing* counted);

  Database& database_;
  WriteQueue& writes_;
};
