#pragma once

#include <functional>
#include <memory>
#include <optional>

#include "core/presenters/launcher_opener.h"
#include "core/ui/launcher/launcher_panel.h"
#include "core/ui/launcher/tool_grid_controller.h"

/// Drives the launcher: its keys beyond those of the grid, and what is started from it. The panel is made at the first
/// show and kept. Main thread only.
class ToolLauncherController final : public ToolGridController, public LauncherOpener {
  Q_OBJECT

 public:
  using PanelFactory = std::function<std::unique_ptr<LauncherPanel>(ToolLauncherController&)>;

  ToolLauncherController(Services services, PanelFactory makePanel);
  ~ToolLauncherController() override;

  /// The tool last started from here; empty for none.
  const QString& lastRunToolID() const { return lastRunToolID_; }

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
  void run(int index) override;
  void setArranging(bool arranging);
  void setSortMode(ToolSortMode mode);

 Q_SIGNALS:
  /// The launcher has come up.
  void shown();

 private:
  enum class State { hidden, shown, leaving };

  bool handleCommandKey(const KeyPress& press);
  bool handleEditKey(const KeyPress& press);
  bool handleText(const KeyPress& press);
  void runHighlighted();
  void removeLastCharacter();
  void leaveOneStep();
  void start(const ToolItem& item);

  PanelFactory makePanel_;
  std::unique_ptr<LauncherPanel> panel_;
  State state_ = State::hidden;
  Job leaving_;
  QString lastRunToolID_;
  bool startedFromLauncher_ = false;
};
