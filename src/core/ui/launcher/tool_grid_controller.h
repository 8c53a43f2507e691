#pragma once

#include <QObject>

#include "core/hotkeys/key_press.h"
#include "core/ui/launcher/tool_launcher_model.h"

class NetworkMonitor;
class Sounds;

/// Whether a tool can be started from the launcher, and why not.
enum class ToolAvailability { usable, offline, disabled };

/// What the grid of tools obeys, in the launcher and on its settings page: the highlight, pages, carrying and pins. It
/// acts only while its model is shown. Main thread only.
class ToolGridController : public QObject {
  Q_OBJECT

 public:
  struct Services {
    ToolRegistry& registry;
    NetworkMonitor& network;
    Sounds& sounds;
    Clock& clock;
  };

  explicit ToolGridController(Services services);

  ToolLauncherModel& model() { return model_; }
  const ToolRegistry& registry() const { return services_.registry; }
  ToolAvailability availability(const Tool& tool) const;

  /// The keys that concern the grid alone: arrows, pages, with Command carrying and pinning, and in arrange mode the
  /// digits of the places. False for any other key.
  bool handleGridKey(const KeyPress& press);

  /// Starts the tool at that place, where tools can be started at all.
  virtual void run([[maybe_unused]] int index) {}
  void highlight(int index);
  /// Highlights the tool in the same place on another page, the last one on a page that is shorter.
  void turnPage(int by);
  /// Carries the highlighted tool to that place of the grid. Pinned tools stay among the pinned, the rest among the
  /// rest.
  void carryTo(int index);
  void togglePin();

 protected:
  Services& services() { return services_; }
  /// The place on the current page that a digit key names; none for other keys, -1 for a digit without a place.
  std::optional<int> placeOf(const KeyPress& press) const;

 private:
  bool carryToPlace(const KeyPress& press);
  void adoptRegistry();

  Services services_;
  ToolLauncherModel model_;
};
