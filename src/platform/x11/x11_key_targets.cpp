#include "platform/x11/x11_key_targets.h"

#include <algorithm>
#include <cstring>

#include "platform/x11/x11_escape_watch.h"
#include "platform/x11/xcb_reply.h"

namespace {

/// Windows lie in one another; nothing real lies so deep.
constexpr std::size_t kDeepest = 64;

}  // namespace

X11KeyTargets::X11KeyTargets(const X11Session& session, std::shared_ptr<X11RawInput> rawInput,
                             std::function<bool()> isPanelTyping)
    : session_(session),
      rawInput_(std::move(rawInput)),
      isPanelTyping_(std::move(isPanelTyping)),
      activeWindow_(internAtom(session, "_NET_ACTIVE_WINDOW")) {}

KeyTarget X11KeyTargets::current() const {
  if (isPanelTyping_()) return KeyTarget::none;
  const std::vector<xcb_window_t> focused = focusedWindows();
  const QByteArray value = windowProperty(session_, session_.root, activeWindow_);
  xcb_window_t active = XCB_WINDOW_NONE;
  // Some put a zero behind it.
  if (value.size() >= qsizetype{sizeof(active)})
    std::memcpy(&active, value.constData(), sizeof(active));
  else
    active = outermostApplicationWindow(focused);
  // A menu or a lock that has taken the focus leaves the active window as it is too.
  const bool isFocused = std::ranges::find(focused, active) != focused.end();
  return isFocused ? static_cast<KeyTarget>(active) : KeyTarget::none;
}

std::unique_ptr<EscapeWatch> X11KeyTargets::watchEscape(const std::function<void()>& pressed) const {
  if (!rawInput_->isAvailable()) return nullptr;
  return std::make_unique<X11EscapeWatch>(session_, rawInput_, isPanelTyping_, pressed);
}

/// The window with the focus and those around it, from the inside.
std::vector<xcb_window_t> X11KeyTargets::focusedWindows() const {
  std::vector<xcb_window_t> windows;
  const XcbReply<xcb_get_input_focus_reply_t> focus(
      xcb_get_input_focus_reply(session_.connection, xcb_get_input_focus(session_.connection), nullptr));
  xcb_window_t window = focus ? focus->focus : xcb_window_t{XCB_WINDOW_NONE};
  while (window > XCB_INPUT_FOCUS_POINTER_ROOT && window != session_.root && windows.size() < kDeepest) {
    windows.push_back(window);
    const XcbReply<xcb_query_tree_reply_t> tree(
        xcb_query_tree_reply(session_.connection, xcb_query_tree(session_.connection, window), nullptr));
    window = tree ? tree->parent : xcb_window_t{XCB_WINDOW_NONE};
  }
  return windows;
}

/// For window managers that call no window active.
xcb_window_t X11KeyTargets::outermostApplicationWindow(const std::vector<xcb_window_t>& windows) const {
  const auto isApplication = [this](xcb_window_t window) {
    return !windowProperty(session_, window, XCB_ATOM_WM_CLASS).isEmpty();
  };
  const auto found = std::find_if(windows.rbegin(), windows.rend(), isApplication);
  return found == windows.rend() ? xcb_window_t{XCB_WINDOW_NONE} : *found;
}
