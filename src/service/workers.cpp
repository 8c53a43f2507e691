#include "service/workers.h"

Workers::Workers(int count) {
  for (int i = 0; i < count; ++i) threads_.emplace_back([this](const std::stop_token& stop) { work(stop); });
}

Workers::~Workers() {
  for (std::jthread& thread : threads_) thread.request_stop();
  threads_.clear();
}

void Workers::start(Task task) {
  {
    const std::lock_guard lock(mutex_);
    waiting_.push_back(std::move(task));
  }
  arrived_.notify_one();
}

void Workers::work(const std::stop_token& stop) {
  for (;;) {
    std::unique_lock lock(mutex_);
    if (!arrived_.wait(lock, stop, [this] { return !waiting_.empty(); })) return;
    const Task task = std::move(waiting_.front());
    waiting_.pop_front();
    lock.unlock();
    task();
  }
}
