#include <QEvent>
#include <QMouseEvent>
#include <QPointer>
#include <QThreadPool>
#include <QWindow>

#include <atomic>
#include <map>
#include <thread>
#include <utility>

#include "base/logging.h"
#include "platform/keychain_vault.h"
#include "platform/mac/mac_api.h"
#include "platform/mac/mac_pasteboard.h"
#include "platform/mac/mac_screen_grabber.h"
#include "platform/platform.h"

using namespace Qt::StringLiterals;

namespace {

void* nativeView(QWindow& window) { return reinterpret_cast<void*>(window.winId()); }

/// Runs `call` on the main thread, on a later turn of its event loop, while `scope` lives.
template <class Call>
void onMainThread(QObject& scope, Call call) {
  QMetaObject::invokeMethod(&scope, std::move(call), Qt::QueuedConnection);
}

class MacHotkeys final : public HotkeyBackend {
 public:
  ~MacHotkeys() override {
    for (const auto& [id, registration] : registrations_) mac::unregisterHotkey(registration);
    if (handler_) mac::removeHotkeyHandler(handler_);
  }

  void install(Pressed pressed) override {
    pressed_ = std::move(pressed);
    if (!handler_) handler_ = mac::installHotkeyHandler(&listener_);
    if (!handler_) qCWarning(lcHotkeys) << "the system refuses a handler for global shortcuts";
  }

  std::expected<void, HotkeyRefusal> registerHotkey(std::uint32_t id, std::uint32_t keyCode,
                                                    std::uint32_t carbonModifiers) override {
    void* registration = nullptr;
    switch (mac::registerHotkey(id, keyCode, carbonModifiers, &registration)) {
      case mac::HotkeyResult::registered:
        registrations_.emplace(id, registration);
        return {};
      case mac::HotkeyResult::taken:
        return std::unexpected(HotkeyRefusal{HotkeyRefusal::Reason::taken});
      case mac::HotkeyResult::failed:
        break;
    }
    return std::unexpected(HotkeyRefusal{HotkeyRefusal::Reason::unavailable});
  }

  void unregisterHotkey(std::uint32_t id) override {
    const auto found = registrations_.find(id);
    if (found == registrations_.end()) return;
    mac::unregisterHotkey(found->second);
    registrations_.erase(found);
  }

 private:
  static void hotkeyPressed(void* context, std::uint32_t id) {
    auto* self = static_cast<MacHotkeys*>(context);
    onMainThread(self->scope_, [self, id] { self->pressed_(id); });
  }

  Pressed pressed_;
  mac::HotkeyListener listener_{hotkeyPressed, this};
  void* handler_ = nullptr;
  std::map<std::uint32_t, void*> registrations_;
  QObject scope_;
};

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

  void perform(KeySequence steps, Done done) override {
    worker_.start([this, steps = std::move(steps), done = std::move(done)]() mutable {
      KeyStepPerformer performer;
      for (const KeyStep& step : steps) {
        if (ending_) return;
        performer.perform(step);
      }
      if (!done) return;
      onMainThread(scope_, [done = std::move(done), result = performer.result()] { done(result); });
    });
  }

 private:
  std::atomic<bool> ending_ = false;
  QObject scope_;
  /// Last: its destructor waits for the thread, which uses the others.
  QThreadPool worker_;
};

/// Calls back once when the window stops being the key window or the mouse is pressed beside the card.
class KeyboardWatch final : public QObject {
 public:
  KeyboardWatch(QWindow& window, const QRect& card, std::function<void()> lost)
      : window_(&window), card_(card), lost_(std::move(lost)) {
    watch_ = mac::watchResignKey(nativeView(window), resignedKey, this);
    window.installEventFilter(this);
  }
  ~KeyboardWatch() override {
    if (window_) window_->removeEventFilter(this);
    mac::stopWatching(watch_);
  }

  bool eventFilter(QObject* object, QEvent* event) override {
    const bool outside = event->type() == QEvent::MouseButtonPress &&
                         !card_.contains(static_cast<QMouseEvent*>(event)->position().toPoint());
    if (outside) reportLater();
    return outside || QObject::eventFilter(object, event);
  }

 private:
  static void resignedKey(void* context) { static_cast<KeyboardWatch*>(context)->reportLater(); }

  void reportLater() {
    onMainThread(*this, [this] {
      if (const auto lost = std::exchange(lost_, nullptr)) lost();
    });
  }

  QPointer<QWindow> window_;
  QRect card_;
  std::function<void()> lost_;
  void* watch_ = nullptr;
};

class MacPanelWindow final : public PanelWindow {
 public:
  ~MacPanelWindow() override { mac::releaseApplication(activeApplication_); }

  Qt::WindowFlags windowFlags(PanelKind kind) const override {
    const Qt::WindowFlags flags = Qt::Tool | Qt::FramelessWindowHint | Qt::NoDropShadowWindowHint;
    return kind == PanelKind::toast ? flags | Qt::WindowDoesNotAcceptFocus : flags;
  }

  void prepare(QWindow& window, PanelKind kind) override {
    window.setProperty(kKindProperty, static_cast<int>(kind));
    mac::styleAsPanel(nativeView(window), native(kind));
    if (kind == PanelKind::palette) return;
    // Qt orders windows of an inactive application behind those of the active one, and does so only after this call.
    onMainThread(window, [&window, kind] {
      if (window.isVisible()) mac::orderFront(nativeView(window), native(kind));
    });
  }

  bool takeKeyboard(QWindow& window) override {
    if (!activeApplication_) activeApplication_ = mac::activeApplication();
    const auto kind = static_cast<PanelKind>(window.property(kKindProperty).toInt());
    mac::makeKey(nativeView(window), native(kind));
    return mac::canTakeKeyboard(nativeView(window));
  }
  void releaseKeyboard(QWindow&) override {
    mac::returnActivation(activeApplication_);
    mac::releaseApplication(std::exchange(activeApplication_, nullptr));
  }

  void watchKeyboardLoss(QWindow& window, const QRect& card, std::function<void()> lost) override {
    watches_[&window].reset(new KeyboardWatch(window, card, std::move(lost)));
  }
  void stopWatching(QWindow& window) override { watches_.erase(&window); }

  bool isTranslucencyAvailable() const override { return true; }

 private:
  static mac::Panel native(PanelKind kind) {
    switch (kind) {
      case PanelKind::palette:
        return mac::Panel::palette;
      case PanelKind::toast:
        return mac::Panel::toast;
      case PanelKind::overlay:
        break;
    }
    return mac::Panel::overlay;
  }

  /// Of a window: what it was prepared as; a palette where it was not.
  static constexpr const char* kKindProperty = "panelKind";

  /// What the user worked in when a palette took the keyboard; null when that is not known or not needed.
  void* activeApplication_ = nullptr;
  std::map<QWindow*, std::unique_ptr<KeyboardWatch>> watches_;
};

class MacPermissions final : public Permissions {
 public:
  PermissionState state(Permission permission) const override {
    const bool granted =
        permission == Permission::accessibility ? mac::isAccessibilityTrusted() : mac::isScreenCaptureAllowed();
    return granted ? PermissionState::granted : PermissionState::notGranted;
  }
  QString remedy(Permission permission) const override {
    if (state(permission) == PermissionState::granted) return {};
    if (permission == Permission::accessibility)
      return u"Enable Vantle in System Settings → Privacy & Security → Accessibility."_s;
    return u"Enable Vantle in System Settings → Privacy & Security → Screen Recording, then open Vantle again."_s;
  }
  void request(Permission permission) override {
    permission == Permission::accessibility ? mac::promptForAccessibility() : mac::requestScreenCapture();
  }
  bool hasSettingsPage(Permission) const override { return true; }
  void openSettingsPage(Permission permission) override {
    mac::openPrivacyPage(permission == Permission::accessibility ? "Privacy_Accessibility" : "Privacy_ScreenCapture");
  }
};

class MacNetworkPath final : public NetworkPath {
 public:
  ~MacNetworkPath() override {
    if (path_) mac::stopNetworkPath(path_);
  }

  void start(Report report) override {
    report_ = std::move(report);
    if (!path_) path_ = mac::startNetworkPath(changed, this);
  }

 private:
  static void changed(void* context, bool satisfied) { static_cast<MacNetworkPath*>(context)->report_(satisfied); }

  Report report_;
  void* path_ = nullptr;
};

class MacSounds final : public Sounds {
 public:
  void playCompletion() override { mac::playSound("Glass"); }
  void beep() override { mac::beep(); }
};

class MacSystemInfo final : public SystemInfo {
 public:
  QString osVersion() const override {
    const mac::Version version = mac::systemVersion();
    const QString text = u"macOS %1.%2"_s.arg(version.majorVersion).arg(version.minorVersion);
    return version.patchVersion == 0 ? text : text + u".%1"_s.arg(version.patchVersion);
  }
  QString thisComputer() const override { return u"this Mac"_s; }
  QString systemName() const override { return u"macOS"_s; }
  QString fileManager() const override { return u"Finder"_s; }
  QString systemSettings() const override { return u"System Settings"_s; }
  QString iconPlace() const override { return u"menu bar"_s; }
  bool isMotionReduced() const override { return mac::isMotionReduced(); }
  // The system does not say who else holds a combination.
  QString shortcutOwnerHint() const override { return {}; }
};

class MacDesktopApplication final : public DesktopApplication {
 public:
  bool forceDark(bool dark) override {
    mac::forceDarkAppearance(dark);
    return true;
  }
  void activate() override { mac::activate(); }
};

class MacLoginItem final : public LoginItem {
 public:
  State state() const override {
    switch (mac::loginItemState()) {
      case mac::LoginItem::off:
        return State::off;
      case mac::LoginItem::on:
        return State::on;
      case mac::LoginItem::awaitsApproval:
        return State::awaitsApproval;
      case mac::LoginItem::unavailable:
        break;
    }
    return State::unavailable;
  }

  std::expected<void, LoginItemError> setEnabled(bool enabled) override {
    QString reason;
    if (mac::setLoginItem(enabled, refused, &reason)) return {};
    // Refused until the user allows it is a state of its own, and shows.
    if (enabled && state() == State::awaitsApproval) return {};
    return std::unexpected(LoginItemError{reason});
  }

  void openApproval() override { mac::openLoginItemSettings(); }

 private:
  static void refused(void* context, const char* reason) {
    *static_cast<QString*>(context) = QString::fromUtf8(reason);
  }
};

/// An application is as close as it gets: the system does not name the windows of others.
class MacKeyTargets final : public KeyTargets {
 public:
  KeyTarget current() const override { return static_cast<KeyTarget>(mac::activeProcess()); }
};

/// Global shortcuts are positions there; what stands on the keys of other layouts is not asked for.
class MacKeyLegends final : public KeyLegends {
 public:
  KeyboardKind kind() const override { return KeyboardKind::mac; }
  QString modifierWord(std::uint32_t carbonModifier) const override {
    switch (carbonModifier) {
      case carbon::kControl:
        return u"control"_s;
      case carbon::kOption:
        return u"option"_s;
      case carbon::kShift:
        return u"shift"_s;
      default:
        return u"command"_s;
    }
  }
};

}  // namespace

Platform makePlatform() {
  // Else Qt activates the whole application whenever a window is raised, panels included. Qt asks only once, later.
  qputenv("QT_MAC_SET_RAISE_PROCESS", "0");
  Platform platform{
      std::make_unique<MacHotkeys>(),     std::make_unique<MacKeyEvents>(),          std::make_unique<MacPanelWindow>(),
      std::make_unique<MacPermissions>(), std::make_unique<MacNetworkPath>(),        std::make_unique<MacSounds>(),
      std::make_unique<MacSystemInfo>(),  std::make_unique<MacDesktopApplication>(), std::make_unique<MacLoginItem>()};
  platform.credentials = makeKeychainVault();
  platform.keyLegends = std::make_unique<MacKeyLegends>();
  platform.keyTargets = std::make_unique<MacKeyTargets>();
  platform.pasteboard = std::make_unique<MacPasteboard>();
  platform.screenGrabber = std::make_unique<MacScreenGrabber>();
  return platform;
}
