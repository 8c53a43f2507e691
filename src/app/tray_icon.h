#pragma once

#include <QObject>
#include <QSystemTrayIcon>

#include <optional>

#include "base/clock.h"

class Appearance;
class TrayPanel;

/// The permanent user interface: an icon in the desktop's tray, light on dark panels and dark on light ones. A click
/// opens the menu, whichever button it was.
class TrayIcon : public QObject {
  Q_OBJECT

 public:
  struct Services {
    const Appearance& appearance;
    TrayPanel& panel;
    Clock& clock;
  };

  explicit TrayIcon(Services services);

  void show();
  /// Global coordinates; empty where the tray does not tell, or there is none.
  QRect geometry() const { return icon_.geometry(); }

 Q_SIGNALS:
  void activated();

 private:
  void followPanelSoon();
  void followPanel();

  Services services_;
  QSystemTrayIcon icon_;
  std::optional<bool> isOnDark_;
  Job settling_;
};
