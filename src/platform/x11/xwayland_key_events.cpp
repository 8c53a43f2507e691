#include "platform/x11/xwayland_key_events.h"

#include <deque>
#include <utility>

#include "base/job.h"

namespace {

/// Who types a sequence is decided when it is its turn.
class XWaylandKeyEvents final : public KeyEvents {
 public:
  XWaylandKeyEvents(std::unique_ptr<KeyEvents> keyEvents, std::unique_ptr<PortalTypist> typist,
                    const KeyTargets& targets)
      : targets_(targets), keyEvents_(std::move(keyEvents)), typist_(std::move(typist)) {}

  void perform(KeySequence steps, std::stop_token stop, Done done) override {
    queue_.push_back({std::move(steps), std::move(stop), std::move(done)});
    if (queue_.size() == 1) begin();
  }

 private:
  struct Request {
    KeySequence steps;
    std::stop_token stop;
    Done done;
  };

  void begin() {
    const Request& request = queue_.front();
    const auto done = run_.bind([this](const std::expected<void, KeyEventError>& result) { finish(result); });
    if (targets_.current() != KeyTarget::none)
      keyEvents_->perform(request.steps, request.stop, done);
    else
      typist_->type(request.steps, request.stop, done);
  }

  void finish(const std::expected<void, KeyEventError>& result) {
    const Done done = std::move(queue_.front().done);
    queue_.pop_front();
    if (!queue_.empty()) begin();
    if (done) done(result);
  }

  const KeyTargets& targets_;
  std::deque<Request> queue_;
  std::unique_ptr<KeyEvents> keyEvents_;
  std::unique_ptr<PortalTypist> typist_;
  /// Ends first: nothing is told to anybody any more.
  Job run_ = Job::start();
};

}  // namespace

std::unique_ptr<KeyEvents> makeXWaylandKeyEvents(std::unique_ptr<KeyEvents> keyEvents,
                                                 std::unique_ptr<PortalTypist> typist, const KeyTargets& targets) {
  return std::make_unique<XWaylandKeyEvents>(std::move(keyEvents), std::move(typist), targets);
}
