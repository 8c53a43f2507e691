#pragma once

#include <condition_variable>
#include <functional>
#include <mutex>
#include <span>
#include <thread>
#include <vector>

#include "service/storage/database.h"

/// Everything that is written while the service runs, one after another on one thread: what waits is committed
/// together, so that a hundred writes cost one flush to the disk.
class WriteQueue {
 public:
  /// Statements of one transaction. It may run twice, so it only sets what it finds out.
  using Write = std::function<Stored<void>(Connection&)>;
  /// On the queue's thread, after the commit.
  using Done = std::function<void(const Stored<void>&)>;

  explicit WriteQueue(Database& database);
  /// Writes what still waits.
  ~WriteQueue();

  void add(Write write, Done done);
  /// Waits for the commit.
  Stored<void> run(Write write);

 private:
  struct Entry {
    Write write;
    Done done;
  };

  void work(const std::stop_token& stop);
  std::vector<Entry> next(const std::stop_token& stop);
  void commit(const std::vector<Entry>& entries);
  Stored<void> attempt(std::span<const Entry> entries);

  Database& database_;
  std::mutex mutex_;
  std::condition_variable_any arrived_;
  std::vector<Entry> waiting_;
  std::jthread thread_;
};
