#include "platform/x11/xwayland_key_events.h"

#include <QObject>

using namespace Qt::StringLiterals;

namespace {

class XWaylandKeyEvents final : public KeyEvents {
 public:
  XWaylandKeyEvents(std::unique_ptr<KeyEvents> keyEvents, const KeyTargets& targets)
      : keyEvents_(std::move(keyEvents)), targets_(targets) {}

  void perform(KeySequence steps, std::stop_token stop, Done done) override {
    if (targets_.current() != KeyTarget::none)
      return keyEvents_->perform(std::move(steps), std::move(stop), std::move(done));
    if (done) QMetaObject::invokeMethod(&context_, [done = std::move(done)] { done(refusal()); }, Qt::QueuedConnection);
  }

 private:
  static std::expected<void, KeyEventError> refusal() {
    return std::unexpected(KeyEventError{u"Under Wayland keys reach only programs that run through XWayland"_s,
                                         KeyEventError::Kind::refused});
  }

  /// What is still to be delivered goes with it.
  QObject context_;
  std::unique_ptr<KeyEvents> keyEvents_;
  const KeyTargets& targets_;
};

}  // namespace

std::unique_ptr<KeyEvents> makeXWaylandKeyEvents(std::unique_ptr<KeyEvents> keyEvents, const KeyTargets& targets) {
  return std::make_unique<XWaylandKeyEvents>(std::move(keyEvents), targets);
}
