#pragma once

#include "app/data_eraser.h"
#include "app/updates/update_source.h"
#include "base/clock.h"
#include "capture/region_picker.h"
#include "core/hotkeys/hotkey_center.h"
#include "core/net/analytics.h"
#include "core/net/network_monitor.h"
#include "core/presenters/launcher_opener.h"
#include "core/presenters/settings_opener.h"
#include "core/presenters/toast_presenter.h"
#include "core/presenters/window_opener.h"
#include "core/settings/app_preferences.h"
#include "core/settings/app_settings.h"
#include "core/settings/folders.h"
#include "core/tools/shortcut_entry.h"
#include "core/tools/tool_registry.h"
#include "platform/platform.h"
#include "services/services.h"

/// The one instance of everything that windows and tools share, handed down by reference; owned by the Application.
struct AppContext {
  const Folders& folders;
  Platform& platform;
  Clock& clock;
  SettingsStore& settings;
  AppPreferences& preferences;
  NetworkMonitor& network;
  HotkeyCenter& hotkeys;
  ToolRegistry& registry;
  ToastPresenter& toasts;
  SettingsOpener& settingsOpener;
  LauncherOpener& launcher;
  WindowOpener& windows;
  Services& services;
  Analytics& analytics;
  DataEraser& eraser;
  RegionSelector& regions;
  UpdateSource updateSource = UpdateSource::ofThisBuild();

  RegionPicker regionPicker() const {
    return RegionPicker({regions, *platform.permissions, *platform.systemInfo, toasts});
  }
  ShortcutSources shortcutSources() const { return {registry, hotkeys, network, *platform.systemInfo}; }
};
