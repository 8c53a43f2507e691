#include <QThreadPool>

#include <atomic>
#include <thread>

#include "platform/key_codes.h"
#include "platform/mac/mac_api.h"
#include "platform/mac/mac_backends.h"
#include "platform/mac/main_thread.h"

using namespace Qt::StringLiterals;

namespace {

/// Performs the steps of one sequence, on the worker thread.
class KeyStepPerformer {
 public:
  using Clock = std::chrono::steady_clock;

  KeyStepPerformer() : source_(mac::createKeySource()) {}
  ~KeyStepPerformer() { mac::releaseKeySource(source_); }
  KeyStepPerformer(const KeyStepPerformer&) = delete;
  KeyStepPerformer& operator=(const KeyStepPerformer&) = delete;

  void perform(const KeyStep& step) { std::visit(*this, step); }
  std::expected<void, KeyEventError> result() const { return result_; }

  void operator()(const TypeText& step) {
    posted(mac::typeText(source_, reinterpret_cast<const std::uint16_t*>(step.text.utf16()),
                         static_cast<std::uint32_t>(step.text.size())));
  }
  void operator()(const PressKey& step) { posted(mac::pressKey(source_, step.keyCode, step.carbonModifiers)); }
  void operator()(const Pause& step) {
    stepEnd_ += step.duration;
    std::this_thread::sleep_until(stepEnd_);
  }

 private:
  void posted(bool success) {
    stepEnd_ = Clock::now();
    if (!success && result_) result_ = std::unexpected(KeyEventError{u"The system made no key event"_s});
  }

  void* source_;
  Clock::time_point stepEnd_ = Clock::now();
  std::expected<void, KeyEventError> result_;
};

/// Sequences queue up for one worker thread, which ends by itself when there is nothing to type. A sequence under way
/// is cut short at destruction.
class MacKeyEvents final : public KeyEvents {
 public:
  MacKeyEvents() { worker_.setMaxThreadCount(1); }
  ~MacKeyEvents() override { ending_ = true; }

  void perform(KeySequence steps, std::stop_token stop, Done done) override {
    if (mac::isSecureInputOn()) return refuse(std::move(done));
    for (KeyStep& step : steps)
      if (auto* key = std::get_if<PressKey>(&step)) findKey(*key);
    worker_.start([this, steps = std::move(steps), stop = std::move(stop), done = std::move(done)]() mutable {
      KeyStepPerformer performer;
      for (const KeyStep& step : steps) {
        if (ending_) return;
        if (stop.stop_requested()) break;
        performer.perform(step);
      }
      if (!done) return;
      const auto result = stop.stop_requested() ? stopped() : performer.result();
      mac::onMainThread(scope_, [done = std::move(done), result] { done(result); });
    });
  }

 private:
  static std::expected<void, KeyEventError> stopped() {
    return std::unexpected(KeyEventError{u"Typing was stopped"_s});
  }

  void refuse(Done done) {
    if (!done) return;
    const KeyEventError error{
        u"A password field, or a terminal with Secure Keyboard Entry, keeps the keyboard to itself"_s,
        KeyEventError::Kind::refused};
    mac::onMainThread(scope_, [done = std::move(done), error] { done(std::unexpected(error)); });
  }

  /// The layout is asked here, on the main thread; the worker may not.
  static void findKey(PressKey& key) {
    const auto characterOn = [&key](std::uint32_t code) {
      return static_cast<char16_t>(mac::characterOnKey(code, key.carbonModifiers));
    };
    if (key.carbonModifiers != 0) key.keyCode = keyForChord(key.keyCode, characterOn);
  }

  std::atomic<bool> ending_ = false;
  QObject scope_;
  /// Last: its destructor waits for the thread, which uses the others.
  QThreadPool worker_;
};

}  // namespace

std::unique_ptr<KeyEvents> mac::makeKeyEvents() { return std::make_unique<MacKeyEvents>(); }
