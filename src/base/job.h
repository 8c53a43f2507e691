#pragma once

#include <QObject>
#include <QPointer>

#include <memory>
#include <stop_token>
#include <utility>

class JobRef;

/// One run of asynchronous work; owning it is what keeps the work alive. Main thread only.
///
/// Timers, replies and processes of the run are children of `scope()`. Assigning a new Job or destroying it cancels the
/// run: bound callbacks turn inert at once, the children are deleted on the next turn of the event loop (so that a
/// callback may cancel the very Job that called it).
class Job {
 public:
  /// No run: `isRunning()` is false and bound callbacks never fire.
  Job() = default;
  static Job start() {
    Job job;
    job.state_ = std::make_shared<State>();
    return job;
  }
  Job(Job&&) noexcept = default;
  Job& operator=(Job&& other) noexcept {
    if (this != &other) {
      cancel();
      state_ = std::move(other.state_);
    }
    return *this;
  }
  Job(const Job&) = delete;
  Job& operator=(const Job&) = delete;
  ~Job() { cancel(); }

  bool isRunning() const { return state_ != nullptr; }
  void cancel() {
    if (const auto state = std::exchange(state_, nullptr)) state->stop.request_stop();
  }

  /// Parent for the run's timers, replies and processes; null when nothing runs.
  QObject* scope() const { return state_ ? state_->scope.get() : nullptr; }
  /// For work on another thread; stop is requested when the Job is cancelled.
  std::stop_token stopToken() const { return state_ ? state_->stop.get_token() : std::stop_token(); }

  /// A callable that runs `callback` while this run lives and does nothing afterwards.
  template <class Callback>
  auto bind(Callback callback) const {
    return [alive = std::weak_ptr<State>(state_), callback = std::move(callback)](auto&&... arguments) mutable {
      if (!alive.expired()) callback(std::forward<decltype(arguments)>(arguments)...);
    };
  }

  /// Connects a signal to `callback` for the life of this run.
  template <class Sender, class Signal, class Callback>
  void on(Sender* sender, Signal signal, Callback callback) const {
    QObject::connect(sender, signal, scope(), bind(std::move(callback)));
  }

 private:
  friend class JobRef;

  struct DeleteLater {
    void operator()(QObject* object) const { object->deleteLater(); }
  };
  struct State {
    std::unique_ptr<QObject, DeleteLater> scope{new QObject};
    std::stop_source stop;
  };
  std::shared_ptr<State> state_;
};

/// Names a run without owning it: what a step of the run hands to the next one. A copy outlives the run, inert. Main
/// thread only.
class JobRef {
 public:
  // NOLINTNEXTLINE(google-explicit-constructor): a Job is given wherever a run is asked for
  JobRef(const Job& job) : state_(job.state_) {}

  bool isRunning() const { return !state_.expired(); }
  /// Parent for timers, replies and processes; null when the run has ended.
  QObject* scope() const {
    const auto state = state_.lock();
    return state ? state->scope.get() : nullptr;
  }
  /// For work on another thread; stop is requested when the Job is cancelled.
  std::stop_token stopToken() const {
    const auto state = state_.lock();
    return state ? state->stop.get_token() : std::stop_token();
  }

  /// A callable that runs `callback` while the run lives and does nothing afterwards.
  template <class Callback>
  auto bind(Callback callback) const {
    return [alive = state_, callback = std::move(callback)](auto&&... arguments) mutable {
      if (!alive.expired()) callback(std::forward<decltype(arguments)>(arguments)...);
    };
  }

  /// Runs `callback` on the next turn of the event loop, unless the run ends before.
  template <class Callback>
  void later(Callback callback) const {
    if (isRunning()) QMetaObject::invokeMethod(scope(), bind(std::move(callback)), Qt::QueuedConnection);
  }

 private:
  std::weak_ptr<Job::State> state_;
};
