#pragma once

#include <QString>

#include <functional>
#include <optional>
#include <span>

#include "core/hotkeys/hotkey.h"

class QWidget;

/// The fixed facts of one tool.
struct ToolInfo {
  /// Stable: the key in settings, bindings and events.
  QLatin1StringView id;
  QLatin1StringView name;
  /// Symbol name.
  QLatin1StringView icon;
  Hotkey defaultHotkey;
  bool requiresNetwork = false;
  /// One sentence for the settings page.
  QLatin1StringView summary;
};

/// The fourteen tools in registration order, which is also the first manual order of the grid.
std::span<const ToolInfo> toolTable();
/// The row with that id; the id must be in the table.
const ToolInfo& toolInfo(QLatin1StringView id);

/// Makes a tool's settings page; given by the composition root, so that tools know no widgets.
using SettingsViewFactory = std::function<QWidget*(QWidget* parent)>;

/// A feature that the user can summon; one long-lived instance each. Main thread only.
class Tool {
 public:
  Tool(const ToolInfo& info, SettingsViewFactory settingsView) : info_(info), settingsView_(std::move(settingsView)) {}
  virtual ~Tool() = default;
  Tool(const Tool&) = delete;
  Tool& operator=(const Tool&) = delete;

  QString id() const { return info_.id; }
  QString name() const { return info_.name; }
  QString icon() const { return info_.icon; }
  QString summary() const { return info_.summary; }
  Hotkey defaultHotkey() const { return info_.defaultHotkey; }
  bool requiresNetwork() const { return info_.requiresNetwork; }

  /// Runs the tool: opens its panel or acts at once. Called through the registry's `summon` only.
  virtual void activate() = 0;
  /// The tool's page on the tools tab; null when it has none.
  QWidget* makeSettingsView(QWidget* parent) const { return settingsView_ ? settingsView_(parent) : nullptr; }

 private:
  const ToolInfo& info_;
  SettingsViewFactory settingsView_;
};
