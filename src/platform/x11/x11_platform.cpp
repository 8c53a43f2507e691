#include "platform/platform.h"
#include "platform/x11/x11_hotkeys.h"
#include "platform/x11/x11_panel_window.h"
#include "platform/x11/x11_raw_input.h"

#include "platform/x11/x11_key_events.h"
namespace { struct Yes : Permissions { bool isAccessibilityTrusted() const override { return true; } void promptForAccessibility() override {} }; }
Platform makePlatform() {
  Platform platform = makeNullPlatform();
  const X11Session session = currentX11Session();
  if (session.connection == nullptr) return platform;
  const auto rawInput = std::make_shared<X11RawInput>(session);
  platform.hotkeys = std::make_unique<X11Hotkeys>(session, rawInput);
  platform.panelWindow = std::make_unique<X11PanelWindow>(session, rawInput);
  platform.keyEvents = makeX11KeyEvents();
  platform.permissions = std::make_unique<Yes>();
  return platform;
}
