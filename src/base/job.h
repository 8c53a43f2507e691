#pragma once

#include <QObject>
#include <QPointer>

#include <memory>
#include <stop_token>
#include <utility>

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
  struct DeleteLater {
    void operator()(QObject* object) const { object->deleteLater(); }
  };
  struct State {
    std::unique_ptr<QObject, DeleteLater> scope{new QObject};
    std::stop_source stop;
  };
  std::shared_ptr<State> state_;
};
