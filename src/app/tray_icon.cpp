#include "app/tray_icon.h"

#include "core/ui/appearance.h"
#include "platform/tray_panel.h"

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

/// How long a tray may take to embed the icon and to paint what stands behind it.
constexpr auto kSettling = 600ms;

bool opensMenu(QSystemTrayIcon::ActivationReason reason) {
  return reason == QSystemTrayIcon::Trigger || reason == QSystemTrayIcon::Context;
}

}  // namespace

TrayIcon::TrayIcon(Services services) : services_(services) {
  icon_.setToolTip(u"Vantle"_s);
  connect(&icon_, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
    if (!opensMenu(reason)) return;
    followPanel();
    Q_EMIT activated();
  });
  connect(&services_.appearance, &Appearance::desktopChanged, this, &TrayIcon::followPanel);
}

void TrayIcon::show() {
  followPanel();
  icon_.show();
  followPanelSoon();
  services_.panel.watch([this] { followPanelSoon(); });
}

void TrayIcon::followPanelSoon() {
  settling_ = Job::start();
  services_.clock.after(kSettling, settling_, [this] { followPanel(); });
}

/// The panel itself is asked first: it may be dark on a light desktop.
void TrayIcon::followPanel() {
  const bool isOnDark = services_.panel.isDark(geometry()).value_or(services_.appearance.isDesktopDark());
  if (isOnDark_ == isOnDark) return;
  isOnDark_ = isOnDark;
  QIcon icon(isOnDark ? u":/icons/vantle-tray-light.svg"_s : u":/icons/vantle-tray-dark.svg"_s);
  // Where the system tints such icons, it does so itself.
  icon.setIsMask(true);
  icon_.setIcon(icon);
}
