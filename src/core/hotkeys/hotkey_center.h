#pragma once

#include <QObject>
#include <QString>

#include <functional>
#include <map>
#include <optional>
#include <set>
#include <vector>

#include "base/clock.h"
#include "core/hotkeys/hotkey.h"
#include "core/settings/app_settings.h"
#include "platform/hotkey_backend.h"

/// The window that draws the keyboard; it must be out of the way before a tool opens.
class ShortcutsWindowGate {
 public:
  virtual ~ShortcutsWindowGate() = default;
  /// Stops the live key monitoring and closes the window; false when it was not visible.
  virtual bool closeIfVisible() = 0;
};

/// Registers the tools' and the application's key combinations, maps a press back to its owner, keeps the user's
/// re-bindings and detects conflicts. Main thread only.
class HotkeyCenter : public QObject {
  Q_OBJECT

 public:
  /// What a tool brings to `bootstrap`.
  struct BindableTool {
    QString id;
    std::optional<Hotkey> defaultHotkey;
  };
  /// A combination the system refused.
  struct Refused {
    /// Empty for an application shortcut.
    QString toolID;
    Hotkey hotkey;
    HotkeyRefusal refusal;
  };

  HotkeyCenter(HotkeyBackend& backend, SettingsStore& settings, Clock& clock);
  ~HotkeyCenter() override;

  /// Who is told which tool's combination was pressed.
  void setToolHandler(std::function<void(const QString& toolID)> handler) { summonTool_ = std::move(handler); }
  /// Who knows what combinations are for; before `bootstrap`.
  void describeBy(const HotkeyBackend::Describe& describe) { backend_.describeBy(describe); }
  /// The window that has to close before a tool opens; null for none.
  void setShortcutsWindow(ShortcutsWindowGate* gate) { shortcutsWindow_ = gate; }

  void bootstrap(const std::vector<BindableTool>& tools, const QStringList& disabledToolIDs);
  /// An application shortcut: not stored, not re-bindable, not part of conflict checks.
  void registerAction(Hotkey hotkey, std::function<void()> action);

  const std::map<QString, Hotkey>& bindings() const { return bindings_; }
  std::optional<Hotkey> binding(const QString& toolID) const;
  /// What has to be pressed in place of the combination, where the system decides that; empty: the combination.
  QString systemTrigger(const Hotkey& hotkey) const {
    return backend_.systemTrigger(hotkey.keyCode, hotkey.carbonModifiers);
  }
  bool isRegistered(const QString& toolID) const { return registrations_.contains(toolID); }
  /// Combinations that are wanted now and that the system refused, for those who show them.
  std::vector<Refused> refused() const;

  /// Re-binds a tool; none removes its shortcut for good.
  void setHotkey(std::optional<Hotkey> hotkey, const QString& toolID);
  /// Forgets the user's re-binding, so that the tool has its default again.
  void resetHotkey(const QString& toolID);
  /// The same for all tools at once.
  void resetAll();
  /// Whether the user has bound the tool to something else than its default, or to nothing.
  bool isRebound(const QString& toolID) const;
  /// Another tool with the same combination; none when there is none.
  std::optional<QString> conflictingToolID(const Hotkey& hotkey, const QString& excludedToolID) const;
  /// A combination that is nobody's, to offer in place of a refused one; found by trying. None in `except`.
  std::optional<Hotkey> freeHotkey(std::vector<Hotkey> except = {}) const;
  void setEnabled(bool enabled, const QString& toolID);
  /// Unregisters every tool while a combination is being recorded; the application's own stay.
  void pauseAll();
  void resumeAll();
  void handlePress(std::uint32_t carbonID);
  /// Runs `start` at once, or a moment after the window that draws the keyboard was closed for it.
  void handOver(std::function<void()> start);

 Q_SIGNALS:
  /// Bindings or registrations have changed.
  void changed();

 private:
  /// A shortcut of the application's own.
  struct Action {
    Hotkey hotkey;
    std::function<void()> run;
    /// None when the system gave the combination away.
    std::optional<HotkeyRefusal> refusal = {};
  };

  void installHandler();
  std::uint32_t takeCarbonID();
  void registerOwn(Action& action);
  void registerTool(const QString& toolID);
  std::expected<void, HotkeyRefusal> take(std::uint32_t id, const Hotkey& hotkey);
  void retryRefused();
  std::optional<Hotkey> defaultOf(const QString& toolID) const;
  void unregisterTool(const QString& toolID);
  void bind(const QString& toolID, std::optional<Hotkey> hotkey);

  HotkeyBackend& backend_;
  SettingsStore& settings_;
  Clock& clock_;
  std::function<void(const QString&)> summonTool_;
  ShortcutsWindowGate* shortcutsWindow_ = nullptr;

  std::vector<BindableTool> tools_;
  std::set<QString> disabled_;
  std::map<QString, Hotkey> bindings_;
  std::map<QString, std::uint32_t> registrations_;
  std::map<std::uint32_t, QString> toolForCarbonID_;
  std::map<std::uint32_t, std::function<void()>> actionForCarbonID_;
  std::map<QString, Refused> refusedTools_;
  /// Tools do not get the combinations of these.
  std::vector<Action> actions_;
  std::uint32_t nextCarbonID_ = 1;
  bool handlerInstalled_ = false;
  bool paused_ = false;
  Job handOver_;
};
