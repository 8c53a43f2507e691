#include "service/storage/write_queue.h"

#include <algorithm>
#include <future>
#include <iterator>
#include <span>

namespace {

/// In one transaction; more only makes those at its front wait.
constexpr std::size_t kMostTogether = 500;

}  // namespace

WriteQueue::WriteQueue(Database& database)
    : database_(database), thread_([this](const std::stop_token& stop) { work(stop); }) {}

WriteQueue::~WriteQueue() = default;

void WriteQueue::add(Write write, Done done) {
  {
    const std::lock_guard lock(mutex_);
    waiting_.push_back({std::move(write), std::move(done)});
  }
  arrived_.notify_one();
}

Stored<void> WriteQueue::run(Write write) {
  std::promise<Stored<void>> promise;
  auto result = promise.get_future();
  add(std::move(write), [&promise](const Stored<void>& written) { promise.set_value(written); });
  return result.get();
}

void WriteQueue::work(const std::stop_token& stop) {
  for (;;) {
    const std::vector<Entry> entries = next(stop);
    if (entries.empty()) return;
    commit(entries);
  }
}

std::vector<WriteQueue::Entry> WriteQueue::next(const std::stop_token& stop) {
  std::unique_lock lock(mutex_);
  arrived_.wait(lock, stop, [this] { return !waiting_.empty(); });
  std::vector<Entry> entries;
  const auto count = static_cast<std::ptrdiff_t>(std::min(waiting_.size(), kMostTogether));
  entries.assign(std::make_move_iterator(waiting_.begin()), std::make_move_iterator(waiting_.begin() + count));
  waiting_.erase(waiting_.begin(), waiting_.begin() + count);
  return entries;
}

void WriteQueue::commit(const std::vector<Entry>& entries) {
  const Stored<void> together = attempt(entries);
  // One that is refused must not take its neighbours with it.
  const bool eachAlone = !together && together.error().reason == StorageError::Reason::conflict && entries.size() > 1;
  for (const Entry& entry : entries) entry.done(eachAlone ? attempt({&entry, 1}) : together);
}

Stored<void> WriteQueue::attempt(std::span<const Entry> entries) {
  Connection& connection = database_.connection();
  Stored<void> result = connection.begin();
  if (!result) return result;
  for (const Entry& entry : entries)
    if (result) result = entry.write(connection);
  if (result) result = connection.commit();
  if (!result) connection.rollback();
  return result;
}
