#pragma once

#include <QHash>
#include <QString>

#include <chrono>
#include <list>

#include "service/workers.h"

/// Threads of their own for what waits for a provider, with a queue that has an end: nobody waits in vain, and who asks
/// much does not keep the others from their turn.
class Desk {
 public:
  using Clock = std::chrono::steady_clock;
  struct Errand {
    /// Owners take turns.
    QString owner;
    std::function<void()> work;
    /// In place of the work: its turn did not come in time, or nobody waits for it any more.
    std::function<void()> turnAway;
    /// From then on it is too late to begin.
    Clock::time_point latest = Clock::time_point::max();
    std::stop_token gone = {};
  };

  explicit Desk(int threads);

  /// False: so many wait already that this one would wait in vain. The last places are for those who have none yet.
  bool start(Errand errand);

 private:
  using Errands = std::list<Errand>;
  /// What one owner has under way, and when he had his last turn: the higher, the later.
  struct Owner {
    int working = 0;
    quint64 lastTurn = 0;
    auto operator<=>(const Owner&) const = default;
  };

  bool isWaiting(const QString& owner) const;
  bool hasRoomFor(const QString& owner) const;
  /// With the lock held: who has nothing here any more is no owner.
  void forgetIdle(const QString& owner);
  void workNext();
  /// With the lock held; `waiting_` is not empty.
  Errands takeNext();
  void sweep(const std::stop_token& stop);

  const std::size_t most_;
  std::mutex mutex_;
  std::condition_variable_any arrived_;
  Errands waiting_;
  int working_ = 0;
  quint64 turns_ = 0;
  /// Of those who have something under way or waiting.
  QHash<QString, Owner> owners_;
  Workers workers_;
  std::jthread sweeper_;
};
