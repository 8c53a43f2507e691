#include <QMouseEvent>
#include <QPointer>
#include <QWindow>

#include <map>

#include "platform/mac/mac_api.h"
#include "platform/mac/mac_backends.h"
#include "platform/mac/main_thread.h"

namespace {

void* nativeView(QWindow& window) { return reinterpret_cast<void*>(window.winId()); }

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
    mac::onMainThread(*this, [this] {
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
    mac::onMainThread(window, [&window, kind] {
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

  bool isPointerPressed() const override { return mac::isPointerPressed(); }
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

}  // namespace

std::unique_ptr<PanelWindow> mac::makePanelWindow() { return std::make_unique<MacPanelWindow>(); }
