#pragma once

#include <functional>
#include <memory>
#include <vector>

#include "core/hotkeys/app_shortcuts.h"
#include "core/settings/app_settings.h"

class Analytics;
class CommandStore;
class HotkeyCenter;
class Permissions;
class Tool;
class ToolRegistry;

/// The launch sequence and the termination step. Nothing in it can stop the launch. Main thread only.
class AppDelegate {
 public:
  /// Where the first-run window opens, if it does.
  enum class FirstRun { nothing, start, permissions };

  struct Services {
    SettingsStore& settings;
    Analytics& analytics;
    ToolRegistry& registry;
    HotkeyCenter& hotkeys;
    Permissions& permissions;
    CommandStore& commands;
  };
  /// What the sequence sets off outside of the logic.
  struct Effects {
    std::function<void()> applyAppearance;
    std::function<void(AppAction)> run;
    std::function<void()> announceUpdate;
    std::function<void(FirstRun)> showFirstRun;
  };

  AppDelegate(Services services, Effects effects) : services_(services), effects_(std::move(effects)) {}

  void didFinishLaunching(std::vector<std::unique_ptr<Tool>> tools);
  void willTerminate();

  static FirstRun firstRun(const AppSettings& settings, bool isAccessibilityTrusted);

 private:
  Services services_;
  Effects effects_;
};
