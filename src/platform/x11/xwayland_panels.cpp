#include "platform/x11/xwayland_panels.h"

#include <QPointer>
#include <QTimer>

#include <array>
#include <span>

#include "platform/x11/window_manager.h"

using namespace std::chrono_literals;

namespace {

/// Compositors know a window some milliseconds after the X server does; a focus that is set before is lost.
constexpr auto kUntilKnown = 50ms;

/// Compositors that lay windows out side by side and give the keyboard to unmanaged ones.
bool isTiling(const QByteArray& windowManager) {
  return windowManager.startsWith("wlroots") || windowManager.startsWith("Hyprland");
}

void setAtoms(const X11Session& session, xcb_window_t window, const char* property, std::span<const xcb_atom_t> atoms) {
  xcb_change_property(session.connection, XCB_PROP_MODE_REPLACE, window, internAtom(session, property), XCB_ATOM_ATOM,
                      32, static_cast<std::uint32_t>(atoms.size()), atoms.data());
}

}  // namespace

XWaylandPanels::XWaylandPanels(const X11Session& session)
    : session_(session),
      isWayland_(isWaylandSession()),
      isManaging_(isWayland_ && !isTiling(windowManagerName(session))) {}

void XWaylandPanels::announce(const QWindow& window, PanelKind kind) {
  if (!isWayland_ || kind == PanelKind::toast) return;
  const auto id = static_cast<xcb_window_t>(const_cast<QWindow&>(window).winId());
  // Utilities, as panels are elsewhere, do not get the keyboard.
  setAtoms(session_, id, "_NET_WM_WINDOW_TYPE", std::array{internAtom(session_, "_NET_WM_WINDOW_TYPE_NORMAL")});
  if (isManaged(kind))
    setAtoms(session_, id, "_NET_WM_STATE",
             std::array{internAtom(session_, "_NET_WM_STATE_ABOVE"), internAtom(session_, "_NET_WM_STATE_SKIP_TASKBAR"),
                        internAtom(session_, "_NET_WM_STATE_SKIP_PAGER")});
}

void XWaylandPanels::activate(QWindow& window) {
  if (!isManaging_) return;
  if (isManaged(window)) requestActivation(window);
  focus_ = Job::start();
  QTimer::singleShot(kUntilKnown, focus_.scope(), focus_.bind([this, shown = QPointer(&window)] {
    if (!shown || !shown->isVisible()) return;
    if (isManaged(*shown)) return requestActivation(*shown);
    xcb_set_input_focus(session_.connection, XCB_INPUT_FOCUS_POINTER_ROOT, static_cast<xcb_window_t>(shown->winId()),
                        XCB_CURRENT_TIME);
    xcb_flush(session_.connection);
  }));
}

bool XWaylandPanels::isFocusLoss(const xcb_generic_event_t& event, const QWindow& window) const {
  if (!isManaging_ || !isManaged(window) || (event.response_type & 0x7F) != XCB_FOCUS_OUT) return false;
  const auto& focus = reinterpret_cast<const xcb_focus_out_event_t&>(event);
  const bool isGrab = focus.mode == XCB_NOTIFY_MODE_GRAB || focus.mode == XCB_NOTIFY_MODE_UNGRAB;
  return focus.event == const_cast<QWindow&>(window).winId() && !isGrab && focus.detail != XCB_NOTIFY_DETAIL_INFERIOR;
}

/// As a pager does: the press of a key that led here was in another program, so that nothing of ours is recent.
void XWaylandPanels::requestActivation(const QWindow& window) {
  constexpr std::uint32_t kPager = 2;
  xcb_client_message_event_t message{};
  message.response_type = XCB_CLIENT_MESSAGE;
  message.format = 32;
  message.window = static_cast<xcb_window_t>(const_cast<QWindow&>(window).winId());
  message.type = internAtom(session_, "_NET_ACTIVE_WINDOW");
  message.data.data32[0] = kPager;
  constexpr std::uint32_t kToWindowManagers = XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY;
  xcb_send_event(session_.connection, false, session_.root, kToWindowManagers, reinterpret_cast<const char*>(&message));
  xcb_flush(session_.connection);
}
