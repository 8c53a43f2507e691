#include "platform/mac/mac_api.h"
#include "platform/mac/mac_backends.h"
#include "platform/mac/main_thread.h"

using namespace Qt::StringLiterals;

namespace {

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
  ~MacDesktopApplication() override {
    if (watch_) mac::stopWatchingAppearance(watch_);
  }

  void forceDark(bool dark) override { mac::forceDarkAppearance(dark); }
  void watchAppearance(std::function<void(bool dark)> changed) override {
    changed_ = std::move(changed);
    if (!watch_) watch_ = mac::watchAppearance(appearanceChanged, this);
  }
  void activate() override { mac::activate(); }

 private:
  static void appearanceChanged(void* context, bool dark) {
    auto* self = static_cast<MacDesktopApplication*>(context);
    mac::onMainThread(self->scope_, [self, dark] { self->changed_(dark); });
  }

  std::function<void(bool dark)> changed_;
  void* watch_ = nullptr;
  QObject scope_;
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

}  // namespace

std::unique_ptr<NetworkPath> mac::makeNetworkPath() { return std::make_unique<MacNetworkPath>(); }
std::unique_ptr<Sounds> mac::makeSounds() { return std::make_unique<MacSounds>(); }
std::unique_ptr<SystemInfo> mac::makeSystemInfo() { return std::make_unique<MacSystemInfo>(); }
std::unique_ptr<DesktopApplication> mac::makeDesktopApplication() { return std::make_unique<MacDesktopApplication>(); }
std::unique_ptr<::LoginItem> mac::makeLoginItem() { return std::make_unique<MacLoginItem>(); }
