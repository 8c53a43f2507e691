#include "platform/x11/x11_key_events.h"

#include <QObject>

#include <condition_variable>
#include <deque>
#include <mutex>
#include <thread>

#include "platform/x11/x11_typist.h"

using namespace Qt::StringLiterals;

namespace {

/// Sequences wait here for the worker, first come, first typed. Destruction stops typing within some 20 ms, but waits
/// until borrowed keys are given back, half a second as a rule.
class X11KeyEvents final : public KeyEvents {
 public:
  X11KeyEvents() : worker_([this](const std::stop_token& stop) { run(stop); }) {}
  ~X11KeyEvents() override {
    worker_.request_stop();
    wake_.notify_all();
    worker_.join();
  }

  void perform(KeySequence steps, std::stop_token stop, Done done) override {
    {
      const std::scoped_lock lock(mutex_);
      queue_.push_back({std::move(steps), std::move(stop), std::move(done)});
    }
    wake_.notify_all();
  }

 private:
  struct Request {
    KeySequence steps;
    std::stop_token stop;
    Done done;
  };

  void run(const std::stop_token& stop) {
    std::unique_ptr<X11Typist> typist = X11Typist::open();
    while (auto request = next(typist.get(), stop)) {
      if (!typist || typist->isBroken()) typist = X11Typist::open();
      deliver(std::move(request->done), typist ? perform(*typist, *request, stop) : unavailable());
    }
    if (typist) typist->finish();
  }

  /// Until the request is stopped, or all of them are.
  static X11Typist::Result perform(X11Typist& typist, const Request& request, const std::stop_token& stop) {
    std::stop_source either;
    const std::stop_callback all(stop, [&either] { either.request_stop(); });
    const std::stop_callback one(request.stop, [&either] { either.request_stop(); });
    return typist.perform(request.steps, either.get_token());
  }

  /// The next request; gives borrowed keys back meanwhile when it is time. Empty at the end.
  std::optional<Request> next(X11Typist* typist, const std::stop_token& stop) {
    std::unique_lock lock(mutex_);
    const auto hasRequest = [this] { return !queue_.empty(); };
    while (!stop.stop_requested()) {
      if (hasRequest()) return takeFirst();
      const auto due = typist ? typist->dueTime() : std::nullopt;
      if (!due) {
        wake_.wait(lock, stop, hasRequest);
      } else if (!wake_.wait_until(lock, stop, *due, hasRequest) && !stop.stop_requested()) {
        lock.unlock();
        typist->attend();
        lock.lock();
      }
    }
    return {};
  }

  Request takeFirst() {
    Request request = std::move(queue_.front());
    queue_.pop_front();
    return request;
  }

  static X11Typist::Result unavailable() {
    return std::unexpected(
        KeyEventError{u"Typing needs an X display with XTEST, XKB and XInput 2"_s, KeyEventError::Kind::refused});
  }

  void deliver(Done done, X11Typist::Result result) {
    if (!done) return;
    QMetaObject::invokeMethod(
        &mainThread_, [done = std::move(done), result = std::move(result)] { done(result); }, Qt::QueuedConnection);
  }

  /// Lives on the main thread; what is still to be delivered goes with it.
  QObject mainThread_;
  std::mutex mutex_;
  std::condition_variable_any wake_;
  std::deque<Request> queue_;
  std::jthread worker_;
};

}  // namespace

std::unique_ptr<KeyEvents> makeX11KeyEvents() { return std::make_unique<X11KeyEvents>(); }
