#pragma once

#include <QObject>
#include <QStringList>

#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "base/clock.h"
#include "core/settings/app_settings.h"
#include "core/tools/tool.h"

class Analytics;
class HotkeyCenter;
class NetworkMonitor;
class ToastPresenter;

/// One tool in lists and grids, identified by the tool's id.
struct ToolItem {
  Tool* tool = nullptr;

  QString id() const { return tool->id(); }
  bool operator==(const ToolItem&) const = default;
};

/// How the grid is ordered behind the pinned tools.
enum class ToolSortMode { manual, mostUsed, recent, alphabetical };

struct ToolSortModeText {
  ToolSortMode mode;
  QLatin1StringView rawValue;
  const char16_t* label;
  QLatin1StringView icon;
};

std::span<const ToolSortModeText> toolSortModes();
const ToolSortModeText& text(ToolSortMode mode);
/// Unknown texts mean manual.
ToolSortMode toolSortMode(const QString& rawValue);

/// The tools in their fixed order with their enabled, pinned, sorted and usage state, kept in the application settings;
/// and `summon`, the one way in which a tool is started. Main thread only.
class ToolRegistry : public QObject {
  Q_OBJECT

 public:
  struct Services {
    SettingsStore& settings;
    HotkeyCenter& hotkeys;
    NetworkMonitor& network;
    Analytics& analytics;
    ToastPresenter& toasts;
    Clock& clock;
  };

  explicit ToolRegistry(Services services);
  ~ToolRegistry() override;

  /// Takes the tools in registration order, reads order, pins and usage, and hands the bindings to the hotkey center.
  void bootstrap(std::vector<std::unique_ptr<Tool>> tools);

  const std::vector<std::unique_ptr<Tool>>& tools() const { return tools_; }
  /// Null when no tool has that id.
  Tool* tool(const QString& id) const;
  /// The display order: pinned tools in pin order, then the rest by the sort mode.
  const std::vector<ToolItem>& items() const { return items_; }
  ToolSortMode sortMode() const { return sortMode_; }
  const QStringList& pinnedToolIDs() const { return pinned_; }
  bool isPinned(const QString& id) const { return pinned_.contains(id); }
  bool isEnabled(const QString& id) const;
  int usageCount(const QString& id) const;

  void setSortMode(ToolSortMode mode);
  void togglePin(const QString& id);
  /// The switch in a tool's settings: keeps the flag and registers or unregisters the tool's shortcut.
  void setEnabled(const QString& id, bool enabled);
  /// Moves a tool to the place of another in the manual order, which starts as the order now displayed.
  void move(const QString& id, const QString& targetID);
  void moveToEnd(const QString& id);
  void applyManualOrder(const QStringList& pinned, const QStringList& unpinned);
  void resetArrangement();
  void recordUsage(const QString& id);

  /// False only for a tool that needs the network while there is none.
  bool isUsable(const Tool& tool) const;
  /// The tool's current binding; none without one.
  std::optional<Hotkey> shortcut(const Tool& tool) const;
  /// The display text of the tool's current binding; empty without one.
  QString shortcutDisplay(const Tool& tool) const;
  /// Starts a tool, or shows the offline toast. Unknown ids are ignored.
  void summon(const QString& id);

 Q_SIGNALS:
  /// Order, pins, mode or enabled state have changed.
  void changed();

 private:
  void resort();
  int manualIndex(const QString& id) const;
  void moveInManualOrder(const QString& id, const QString& targetID);
  void showOfflineToast(const Tool& tool);

  Services services_;
  std::vector<std::unique_ptr<Tool>> tools_;
  std::vector<ToolItem> items_;
  QStringList pinned_;
  ToolSortMode sortMode_ = ToolSortMode::manual;
};
