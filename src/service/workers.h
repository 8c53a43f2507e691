#pragma once

#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

/// Threads for what waits for the disk, so that the server's own never do.
class Workers {
 public:
  using Task = std::function<void()>;

  explicit Workers(int count);
  /// Does first what is still to be done.
  ~Workers();
  Workers(const Workers&) = delete;
  Workers& operator=(const Workers&) = delete;

  void start(Task task);

 private:
  void work(const std::stop_token& stop);

  std::mutex mutex_;
  std::condition_variable_any arrived_;
  std::deque<Task> waiting_;
  std::vector<std::jthread> threads_;
};
