#pragma once

#include "platform/platform.h"

/// The capabilities of macOS, each on its functions of the seam.
namespace mac {

std::unique_ptr<HotkeyBackend> makeHotkeys();
std::unique_ptr<KeyEvents> makeKeyEvents();
std::unique_ptr<KeyTargets> makeKeyTargets();
std::unique_ptr<SelectedText> makeSelectedText();
std::unique_ptr<KeyLegends> makeKeyLegends();
std::unique_ptr<PanelWindow> makePanelWindow();
std::unique_ptr<Permissions> makePermissions();
std::unique_ptr<NetworkPath> makeNetworkPath();
std::unique_ptr<Sounds> makeSounds();
std::unique_ptr<SystemInfo> makeSystemInfo();
std::unique_ptr<DesktopApplication> makeDesktopApplication();
std::unique_ptr<::LoginItem> makeLoginItem();
std::unique_ptr<Updater> makeUpdater();

}  // namespace mac
