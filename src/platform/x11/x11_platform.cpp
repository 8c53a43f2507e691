#include <QStandardPaths>

#include <bitset>

#include "platform/keychain_vault.h"
#include "platform/platform.h"
#include "platform/portal/portal_hotkeys.h"
#include "platform/portal/portal_screen_grabber.h"
#include "platform/portal/portal_typist.h"
#include "platform/x11/borrowed_keys.h"
#include "platform/x11/keyboard_map.h"
#include "platform/x11/x11_desktop_application.h"
#include "platform/x11/x11_hotkeys.h"
#include "platform/x11/x11_key_events.h"
#include "platform/x11/x11_key_legends.h"
#include "platform/x11/x11_key_targets.h"
#include "platform/x11/x11_network_path.h"
#include "platform/x11/x11_panel_traces.h"
#include "platform/x11/x11_panel_window.h"
#include "platform/x11/x11_pasteboard.h"
#include "platform/x11/x11_permissions.h"
#include "platform/x11/x11_raw_input.h"
#include "platform/x11/x11_screen_grabber.h"
#include "platform/x11/x11_selected_text.h"
#include "platform/x11/x11_sounds.h"
#include "platform/x11/x11_system_info.h"
#include "platform/x11/x11_tray_panel.h"
#include "platform/x11/xwayland_key_events.h"
#include "platform/xdg/xdg_login_item.h"

using namespace Qt::StringLiterals;

namespace {

/// As the compositor has given it to the X server.
Layout compositorLayout(const X11Session& session) {
  // What the X server alone has been told, for characters that it lacks, is above.
  std::bitset<256> ignored;
  for (auto code = std::size_t{BorrowedKeys::kFirstCode}; code < ignored.size(); ++code) ignored.set(code);
  const auto map = std::make_shared<const std::optional<KeyboardMap>>(KeyboardMap::read(session.connection, ignored));
  return [map](char32_t character) -> std::optional<std::uint32_t> {
    const auto stroke = *map ? (*map)->find(character) : std::nullopt;
    return stroke ? std::optional(stroke->symbol) : std::nullopt;
  };
}

std::unique_ptr<PortalTypist> makeTypist(const X11Session& session, const std::shared_ptr<Portal>& portal,
                                         std::function<bool()> isPanelTyping) {
  const QString data = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
  return std::make_unique<PortalTypist>(
      QDBusConnection::sessionBus(), portal, data + u"/Vantle/"_s + kTypingPermissionFile,
      PortalTypist::Sources{[session] { return compositorLayout(session); }, std::move(isPanelTyping)});
}

/// Through XWayland, what the X server has not got to give. Nothing here waits: the portal may have to be started.
void addWayland(Platform& platform, const X11Session& session, const std::function<bool()>& isPanelTyping) {
  const auto portal = std::make_shared<Portal>(QDBusConnection::sessionBus());
  for (const auto& interface : {u"GlobalShortcuts"_s, u"Screenshot"_s, u"RemoteDesktop"_s}) portal->offer(interface);
  auto hotkeys = std::make_unique<PortalHotkeys>(QDBusConnection::sessionBus(), portal, std::move(platform.hotkeys));
  platform.permissions =
      std::make_unique<X11Permissions>(session, portal, [&hotkeys = *hotkeys] { return hotkeys.areBound(); });
  platform.hotkeys = std::move(hotkeys);
  platform.screenGrabber = std::make_unique<PortalScreenGrabber>(portal);
  platform.keyEvents = makeXWaylandKeyEvents(std::move(platform.keyEvents), makeTypist(session, portal, isPanelTyping),
                                             *platform.keyTargets);
}

}  // namespace

Platform makeHeadlessPlatform() {
  Platform platform = makeNullPlatform();
  platform.credentials = makeKeychainVault();
  return platform;
}

Platform makePlatform() {
  Platform platform = makeNullPlatform();
  platform.credentials = makeKeychainVault();
  platform.loginItem = std::make_unique<XdgLoginItem>(XdgLoginItem::Places::standard());
  const X11Session session = currentX11Session();
  if (session.connection == nullptr) return platform;
  const auto rawInput = std::make_shared<X11RawInput>(session);
  const auto traces = std::make_shared<X11PanelTraces>();
  platform.hotkeys = std::make_unique<X11Hotkeys>(session, rawInput);
  platform.keyEvents = makeX11KeyEvents();
  auto panels = std::make_unique<X11PanelWindow>(session, rawInput, traces);
  const auto isPanelTyping = [&panels = *panels] { return panels.hasKeyboard(); };
  platform.keyTargets = std::make_unique<X11KeyTargets>(session, rawInput, isPanelTyping);
  platform.panelWindow = std::move(panels);
  platform.selectedText = std::make_unique<X11SelectedText>(session);
  platform.pasteboard = std::make_unique<X11Pasteboard>();
  platform.networkPath = std::make_unique<X11NetworkPath>();
  if (isWaylandSession()) {
    addWayland(platform, session, isPanelTyping);
  } else {
    platform.permissions = std::make_unique<X11Permissions>(session);
    platform.screenGrabber = std::make_unique<X11ScreenGrabber>(session, traces);
  }
  platform.sounds = std::make_unique<X11Sounds>(session);
  platform.systemInfo = std::make_unique<X11SystemInfo>(session);
  platform.desktopApplication = std::make_unique<X11DesktopApplication>();
  platform.trayPanel = std::make_unique<X11TrayPanel>(session);
  platform.keyLegends = std::make_unique<X11KeyLegends>(session);
  return platform;
}
