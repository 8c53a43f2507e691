#include "platform/display.h"
#include "platform/keychain_vault.h"
#include "platform/mac/mac_api.h"
#include "platform/mac/mac_backends.h"
#include "platform/mac/mac_pasteboard.h"
#include "platform/mac/mac_screen_grabber.h"

bool prepareDisplay() { return !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM") || mac::hasWindowServer(); }

Platform makePlatform() {
  // Else Qt activates the whole application whenever a window is raised, panels included. Qt asks only once, later.
  qputenv("QT_MAC_SET_RAISE_PROCESS", "0");
  Platform platform{.hotkeys = mac::makeHotkeys(),
                    .keyEvents = mac::makeKeyEvents(),
                    .panelWindow = mac::makePanelWindow(),
                    .permissions = mac::makePermissions(),
                    .networkPath = mac::makeNetworkPath(),
                    .sounds = mac::makeSounds(),
                    .systemInfo = mac::makeSystemInfo()};
  platform.desktopApplication = mac::makeDesktopApplication();
  platform.loginItem = mac::makeLoginItem();
  platform.updater = mac::makeUpdater();
  platform.credentials = makeKeychainVault();
  platform.keyLegends = mac::makeKeyLegends();
  platform.keyTargets = mac::makeKeyTargets();
  platform.selectedText = mac::makeSelectedText();
  platform.pasteboard = std::make_unique<MacPasteboard>();
  platform.screenGrabber = std::make_unique<MacScreenGrabber>();
  return platform;
}

Platform makeHeadlessPlatform() {
  Platform platform = makeNullPlatform();
  platform.systemInfo = mac::makeSystemInfo();
  platform.credentials = makeKeychainVault();
  return platform;
}
