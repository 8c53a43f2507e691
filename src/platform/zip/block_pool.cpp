#include "platform/zip/block_pool.h"

BlockPool::BlockPool(unsigned threads) {
  for (unsigned i = 0; i < threads; ++i) threads_.emplace_back([this](const std::stop_token& stop) { run(stop); });
}

std::future<BlockPool::Result> BlockPool::add(Work work) {
  Task task(std::move(work));
  std::future<Result> result = task.get_future();
  {
    const std::lock_guard lock(mutex_);
    waiting_.push_back(std::move(task));
  }
  filled_.notify_one();
  return result;
}

void BlockPool::run(const std::stop_token& stop) {
  BlockDeflater deflater;
  while (true) {
    std::unique_lock lock(mutex_);
    if (!filled_.wait(lock, stop, [this] { return !waiting_.empty(); })) return;
    if (stop.stop_requested()) return;
    Task task = std::move(waiting_.front());
    waiting_.pop_front();
    lock.unlock();
    task(deflater);
  }
}
