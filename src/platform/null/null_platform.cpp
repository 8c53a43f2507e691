#include <QSysInfo>

#include "platform/platform.h"

namespace {

class NullHotkeys final : public HotkeyBackend {
 public:
  void install(Pressed) override {}
  std::expected<void, HotkeyRefusal> registerHotkey(std::uint32_t, std::uint32_t, std::uint32_t) override {
    return std::unexpected(HotkeyRefusal{HotkeyRefusal::Reason::unavailable});
  }
  void unregisterHotkey(std::uint32_t) override {}
};

class NullKeyEvents final : public KeyEvents {
 public:
  void perform(KeySequence, std::stop_token, Done done) override {
    done(std::unexpected(KeyEventError{QStringLiteral("Typing needs a display"), KeyEventError::Kind::refused}));
  }
};

class NullPanelWindow final : public PanelWindow {
 public:
  Qt::WindowFlags windowFlags(PanelKind) const override { return Qt::Tool | Qt::FramelessWindowHint; }
  void prepare(QWindow&, PanelKind) override {}
  bool takeKeyboard(QWindow&) override { return false; }
  void releaseKeyboard(QWindow&) override {}
  void watchKeyboardLoss(QWindow&, const QRect&, std::function<void()>) override {}
  void stopWatching(QWindow&) override {}
  bool isTranslucencyAvailable() const override { return false; }
};

class NullPermissions final : public Permissions {
 public:
  PermissionState state(Permission) const override { return PermissionState::unavailable; }
  QString remedy(Permission) const override { return QStringLiteral("There is no display here: log in to a desktop."); }
};

/// Without a way to ask, nothing is held back: a request that cannot succeed fails with its own error.
class NullNetworkPath final : public NetworkPath {
 public:
  void start(Report report) override { report(true); }
};

class NullSounds final : public Sounds {
 public:
  void playCompletion() override {}
  void beep() override {}
};

class NullSystemInfo final : public SystemInfo {
 public:
  QString osVersion() const override { return QSysInfo::prettyProductName(); }
  QString thisComputer() const override { return QStringLiteral("this computer"); }
  QString systemName() const override { return QStringLiteral("Linux"); }
  QString fileManager() const override { return QStringLiteral("your file manager"); }
  QString systemSettings() const override { return QStringLiteral("Settings"); }
  bool isMotionReduced() const override { return true; }
  QString shortcutOwnerHint() const override { return {}; }
};

}  // namespace

Platform makeNullPlatform() {
  return {std::make_unique<NullHotkeys>(),     std::make_unique<NullKeyEvents>(),   std::make_unique<NullPanelWindow>(),
          std::make_unique<NullPermissions>(), std::make_unique<NullNetworkPath>(), std::make_unique<NullSounds>(),
          std::make_unique<NullSystemInfo>()};
}
