#include "service/ai/desk.h"

#include <algorithm>

using namespace std::chrono_literals;

namespace {

constexpr std::size_t kWaitingPerThread = 4;
/// Of all places.
constexpr std::size_t kShareOfNewcomers = 4;
constexpr auto kLook = 100ms;

bool isInVain(const Desk::Errand& errand) {
  return errand.gone.stop_requested() || Desk::Clock::now() >= errand.latest;
}

}  // namespace

Desk::Desk(int threads)
    : most_(static_cast<std::size_t>(threads) * (1 + kWaitingPerThread)),
      workers_(threads),
      sweeper_([this](const std::stop_token& stop) { sweep(stop); }) {}

bool Desk::isWaiting(const QString& owner) const {
  return std::ranges::find(waiting_, owner, &Errand::owner) != waiting_.end();
}

bool Desk::hasRoomFor(const QString& owner) const {
  const std::size_t taken = waiting_.size() + static_cast<std::size_t>(working_);
  const bool isNewcomer = owners_.value(owner).working == 0 && !isWaiting(owner);
  return taken < (isNewcomer ? most_ : most_ - most_ / kShareOfNewcomers);
}

bool Desk::start(Errand errand) {
  {
    const std::lock_guard lock(mutex_);
    if (!hasRoomFor(errand.owner)) return false;
    waiting_.push_back(std::move(errand));
  }
  arrived_.notify_one();
  workers_.start([this] { workNext(); });
  return true;
}

Desk::Errands Desk::takeNext() {
  Errands next;
  const auto first =
      std::ranges::min_element(waiting_, {}, [this](const Errand& one) { return owners_.value(one.owner); });
  Owner& owner = owners_[first->owner];
  ++owner.working;
  ++working_;
  owner.lastTurn = ++turns_;
  next.splice(next.end(), waiting_, first);
  return next;
}

void Desk::forgetIdle(const QString& owner) {
  if (owners_.value(owner).working == 0 && !isWaiting(owner)) owners_.remove(owner);
}

void Desk::workNext() {
  std::unique_lock lock(mutex_);
  // It has been turned away meanwhile.
  if (waiting_.empty()) return;
  const Errands taken = takeNext();
  lock.unlock();
  const Errand& errand = taken.front();
  (isInVain(errand) ? errand.turnAway : errand.work)();
  lock.lock();
  --working_;
  --owners_[errand.owner].working;
  forgetIdle(errand.owner);
}

void Desk::sweep(const std::stop_token& stop) {
  while (!stop.stop_requested()) {
    std::unique_lock lock(mutex_);
    arrived_.wait(lock, stop, [this] { return !waiting_.empty(); });
    arrived_.wait_for(lock, stop, kLook, [] { return false; });
    Errands gone;
    for (auto each = waiting_.begin(); each != waiting_.end();)
      if (const auto one = each++; isInVain(*one)) gone.splice(gone.end(), waiting_, one);
    for (const Errand& errand : gone) forgetIdle(errand.owner);
    lock.unlock();
    for (const Errand& errand : gone) errand.turnAway();
  }
}
