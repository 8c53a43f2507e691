#pragma once

#include <condition_variable>
#include <deque>
#include <expected>
#include <functional>
#include <future>
#include <mutex>
#include <thread>
#include <vector>

#include "platform/zip/block_deflater.h"

/// A few threads that make blocks. Its end drops what has not been begun and waits for the rest.
class BlockPool {
 public:
  /// The block, or the error number of what stood against it.
  using Result = std::expected<DeflatedBlock, int>;
  using Work = std::function<Result(BlockDeflater&)>;

  explicit BlockPool(unsigned threads);

  std::future<Result> add(Work work);

 private:
  using Task = std::packaged_task<Result(BlockDeflater&)>;

  void run(const std::stop_token& stop);

  std::mutex mutex_;
  std::condition_variable_any filled_;
  std::deque<Task> waiting_;
  /// Last, so that they end before what they use.
  std::vector<std::jthread> threads_;
};
