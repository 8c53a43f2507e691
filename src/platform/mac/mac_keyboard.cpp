#include <algorithm>
#include <array>
#include <string>
#include <string_view>

#include "platform/key_codes.h"
#include "platform/mac/mac_api.h"
#include "platform/mac/mac_backends.h"
#include "platform/mac/main_thread.h"

using namespace Qt::StringLiterals;

namespace {

class MacEscapeWatch final : public EscapeWatch {
 public:
  explicit MacEscapeWatch(std::function<void()> pressed) : pressed_(std::move(pressed)) {
    watch_ = mac::watchKey(findKeyByQtKey(Qt::Key_Escape)->mac, reportPress, this);
  }
  ~MacEscapeWatch() override {
    if (watch_) mac::stopWatchingKey(watch_);
  }
  MacEscapeWatch(const MacEscapeWatch&) = delete;
  MacEscapeWatch& operator=(const MacEscapeWatch&) = delete;

  bool isWatching() const { return watch_ != nullptr; }

 private:
  static void reportPress(void* context) {
    auto* self = static_cast<MacEscapeWatch*>(context);
    mac::onMainThread(self->scope_, [pressed = self->pressed_] { pressed(); });
  }

  std::function<void()> pressed_;
  void* watch_ = nullptr;
  QObject scope_;
};

/// An application is as close as it gets: the system does not name the windows of others.
class MacKeyTargets final : public KeyTargets {
 public:
  KeyTarget current() const override { return static_cast<KeyTarget>(mac::activeProcess()); }
  std::unique_ptr<EscapeWatch> watchEscape(const std::function<void()>& pressed) const override {
    // Whoever is not trusted may watch, and is told of nothing.
    if (!mac::isAccessibilityTrusted()) return nullptr;
    auto watch = std::make_unique<MacEscapeWatch>(pressed);
    return watch->isWatching() ? std::move(watch) : nullptr;
  }
};

/// Terminals by the start of their bundle identifiers. Those inside of editors cannot be told from the editor.
constexpr std::array<std::string_view, 9> kTerminals = {
    "co.zeit.hyper",         "com.apple.Terminal",    "com.github.wez.wezterm",
    "com.googlecode.iterm2", "com.mitchellh.ghostty", "dev.warp.Warp-",
    "net.kovidgoyal.kitty",  "org.alacritty",         "org.tabby",
};

/// Everything is copied by ⌘C, in terminals too.
class MacSelectedText final : public SelectedText {
 public:
  bool runsLines(KeyTarget target) const override {
    std::string bundle;
    mac::bundleOfProcess(
        static_cast<std::int32_t>(target),
        [](void* context, const char* identifier) { *static_cast<std::string*>(context) = identifier; }, &bundle);
    return std::ranges::any_of(kTerminals, [&bundle](std::string_view start) { return bundle.starts_with(start); });
  }
};

/// Global shortcuts are positions there, whatever the layout has on the keys.
class MacKeyLegends final : public KeyLegends {
 public:
  ~MacKeyLegends() override { unwatch(); }

  QString legend(std::uint32_t position) const override {
    const QChar character(mac::characterOnKey(position, 0));
    // Those that move the cursor have private characters.
    const bool isText = character.isPrint() && !character.isSpace() && character.category() != QChar::Other_PrivateUse;
    return isText ? QString(character) : QString();
  }
  void watch(std::function<void()> changed) override {
    unwatch();
    changed_ = std::move(changed);
    if (changed_) watch_ = mac::watchLayout(layoutChanged, this);
  }
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

 private:
  static void layoutChanged(void* context) {
    auto* self = static_cast<MacKeyLegends*>(context);
    mac::onMainThread(self->scope_, [self] {
      if (self->changed_) self->changed_();
    });
  }
  void unwatch() {
    if (watch_) mac::stopWatchingLayout(std::exchange(watch_, nullptr));
  }

  std::function<void()> changed_;
  void* watch_ = nullptr;
  QObject scope_;
};

}  // namespace

std::unique_ptr<KeyTargets> mac::makeKeyTargets() { return std::make_unique<MacKeyTargets>(); }
std::unique_ptr<SelectedText> mac::makeSelectedText() { return std::make_unique<MacSelectedText>(); }
std::unique_ptr<KeyLegends> mac::makeKeyLegends() { return std::make_unique<MacKeyLegends>(); }
