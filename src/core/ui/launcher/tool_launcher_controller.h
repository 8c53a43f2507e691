#pragma once

#include <QObject>

#include <functional>
#include <memory>
#include <optional>

#include "core/hotkeys/key_press.h"
#include "core/presenters/launcher_opener.h"
#include "core/ui/launcher/launcher_panel.h"
#include "core/ui/launcher/tool_launcher_model.h"

class NetworkMonitor;
class Sounds;

/// Whether a tool can be started from the launcher, and why not.
enum class ToolAvailability { usable, offline, disabled };

/// Drives the launcher: its keys, its mouse actions, what is started from it. The panel is made at the first show and
/// kept. Main thread only.
class ToolLauncherController final : public QObject, public LauncherOpener {
  Q_OBJECT

 public:
  struct Services {
    ToolRegistry& registry;
    NetworkMonitor& network;
    Sounds& sounds;
    Clock& clock;
  };
  using PanelFactory = std::function<std::unique_ptr<LauncherPanel>(ToolLauncherController&)>;

  ToolLauncherController(Services services, PanelFactory makePanel);
  ~ToolLauncherController() override;

  ToolLauncherModel& model() { return model_; }
  const ToolRegistry& registry() const { return services_.registry; }
  /// The tool last started from here; empty for none.
  const QString& lastRunToolID() const { return lastRunToolID_; }
  ToolAvailability availability(const Tool& tool) const;

  /// Makes the panel ahead of its first show.
  void prepare();
  void toggle();
  void show(const QString& selectedToolID = {});
  /// Hides the launcher; a tool that is given is started once the launcher has gone.
  void dismiss(std::optional<ToolItem> then = std::nullopt);

  void showLauncher(const QString& selectedToolID) override { show(selectedToolID); }
  bool takeStartedFromLauncher() override;

  /// The key table. False for a key that means nothing here, and for all keys while the launcher is leaving.
  bool handleKey(const KeyPress& press);

  /// Starts the tool at that place of the grid; beeps when there is none or when it cannot be started.
  void run(int index);
  void highlight(int index);
  /// Highlights the tool in the same place on another page, the last one on a page that is shorter.
  void turnPage(int by);
  /// Carries the highlighted tool to that place of the grid. Pinned tools stay among the pinned, the rest among the
  /// rest.
  void carryTo(int index);
  void setArranging(bool arranging);
  void setSortMode(ToolSortMode mode);
  void togglePin();

 private:
  enum class State { hidden, shown, leaving };

  bool handleCommandKey(const KeyPress& press);
  bool handleEditKey(const KeyPress& press);
  bool handleText(const KeyPress& press);
  void runHighlighted();
  void removeLastCharacter();
  void leaveOneStep();
  void start(const ToolItem& item);
  void adoptRegistry();

  Services services_;
  ToolLauncherModel model_;
  PanelFactory makePanel_;
  std::unique_ptr<LauncherPanel> panel_;
  State state_ = State::hidden;
  Job leaving_;
  QString lastRunToolID_;
  bool startedFromLauncher_ = false;
};
