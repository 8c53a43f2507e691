#pragma once

#include <QObject>

#include <functional>
#include <memory>
#include <optional>

#include "app/menu/menu_model.h"
#include "app/menu/menu_panel.h"
#include "base/clock.h"
#include "core/hotkeys/key_press.h"

class NetworkMonitor;
class Sounds;

/// The menu's flow: the tray icon opens and closes it, keys change the model, choosing a row starts what it names. The
/// panel is made at the first show and kept. Main thread only.
class MenuController : public QObject {
  Q_OBJECT

 public:
  struct Services {
    ToolRegistry& registry;
    HotkeyCenter& hotkeys;
    NetworkMonitor& network;
    Sounds& sounds;
    Clock& clock;
    WindowOpener& windows;
  };
  /// Makes the panel, which draws `model()`, hands its keys to `handleKey` and calls `resign` when it loses the
  /// keyboard.
  using PanelFactory = std::function<std::unique_ptr<MenuPanel>(MenuController&)>;

  MenuController(Services services, PanelFactory makePanel);
  ~MenuController() override;

  MenuModel& model() { return model_; }
  bool isShown() const { return shown_; }

  void toggle();
  /// A click on the tray icon: opens the menu, or closes it.
  void iconActivated();
  void show();
  void hide();
  /// The user has turned to something else.
  void resign();

  /// The key table. False for a key that means nothing here, and for all keys while hidden.
  bool handleKey(const KeyPress& press);
  void highlight(int row) { model_.select(row); }
  /// Starts what the row names once the menu has gone; beeps and stays when it cannot be started now.
  void choose(int row);

 Q_SIGNALS:
  void quitChosen();

 private:
  bool handleCommandKey(const KeyPress& press);
  bool handleEditKey(const KeyPress& press);
  void leaveOneStep();
  void open(MenuEntry entry);
  void refresh();

  Services services_;
  MenuModel model_;
  PanelFactory makePanel_;
  std::unique_ptr<MenuPanel> panel_;
  bool shown_ = false;
  std::optional<std::chrono::steady_clock::time_point> resignedAt_;
  /// Lives as long as the controller: what was chosen is started whatever is opened next.
  Job starting_ = Job::start();
};
