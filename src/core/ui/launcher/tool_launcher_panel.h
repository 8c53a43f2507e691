#pragma once

#include <QPropertyAnimation>

#include "core/ui/launcher/launcher_panel.h"
#include "core/ui/palette_panel.h"
#include "core/ui/panel_position.h"

class SystemInfo;
class ToolLauncherController;
class ToolLauncherView;

/// The launcher's window: places it, fades it in and out and remembers where the user has put it.
class ToolLauncherPanel final : public QObject, public LauncherPanel {
  Q_OBJECT

 public:
  struct Services {
    PanelWindow& native;
    const SystemInfo& system;
    QSettings& defaults;
  };

  ToolLauncherPanel(ToolLauncherController& controller, Services services);

  PalettePanel& window() { return panel_; }

  void present() override;
  void leave(bool animated, std::function<void()> hidden) override;

 private:
  bool canFade() const;
  void fade(qreal from, qreal to);
  void place();
  void fitToView();
  void finishLeaving();

  Services services_;
  PalettePanel panel_;
  ToolLauncherView* view_;
  PanelPosition position_;
  QPropertyAnimation fade_;
  std::function<void()> hidden_;
};
