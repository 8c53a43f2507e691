#pragma once

#include <memory>

#include "platform/credential_vault.h"
#include "platform/desktop_application.h"
#include "platform/hotkey_backend.h"
#include "platform/key_events.h"
#include "platform/key_legends.h"
#include "platform/key_target.h"
#include "platform/login_item.h"
#include "platform/network_path.h"
#include "platform/panel_window.h"
#include "platform/pasteboard.h"
#include "platform/permissions.h"
#include "platform/screen_grabber.h"
#include "platform/selected_text.h"
#include "platform/sounds.h"
#include "platform/system_info.h"
#include "platform/tray_panel.h"
#include "platform/updater.h"

/// One implementation of every capability; each lives as long as the whole.
struct Platform {
  std::unique_ptr<HotkeyBackend> hotkeys;
  std::unique_ptr<KeyEvents> keyEvents;
  std::unique_ptr<PanelWindow> panelWindow;
  std::unique_ptr<Permissions> permissions;
  std::unique_ptr<NetworkPath> networkPath;
  std::unique_ptr<Sounds> sounds;
  std::unique_ptr<SystemInfo> systemInfo;
  std::unique_ptr<DesktopApplication> desktopApplication = std::make_unique<DesktopApplication>();
  std::unique_ptr<LoginItem> loginItem = std::make_unique<LoginItem>();
  std::unique_ptr<CredentialVault> credentials = std::make_unique<CredentialVault>();
  std::unique_ptr<Updater> updater = std::make_unique<Updater>();
  std::unique_ptr<KeyLegends> keyLegends = std::make_unique<KeyLegends>();
  std::unique_ptr<TrayPanel> trayPanel = std::make_unique<TrayPanel>();
  std::unique_ptr<KeyTargets> keyTargets = std::make_unique<KeyTargets>();
  std::unique_ptr<SelectedText> selectedText = std::make_unique<SelectedText>();
  std::unique_ptr<Pasteboard> pasteboard = std::make_unique<Pasteboard>();
  std::unique_ptr<ScreenGrabber> screenGrabber = std::make_unique<ScreenGrabber>();
};

/// The backends of the system the program runs on; the null ones for what it does not offer (no display, say).
/// Needs a QGuiApplication for anything but the null ones.
Platform makePlatform();
/// What needs no display of them, for the command line; null ones for the rest.
Platform makeHeadlessPlatform();
/// Every capability "unavailable".
Platform makeNullPlatform();
