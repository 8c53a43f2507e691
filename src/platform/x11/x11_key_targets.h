#pragma once

#include <functional>
#include <vector>

#include "platform/key_target.h"
#include "platform/x11/x11_input_watch.h"
#include "platform/x11/x11_raw_input.h"
#include "platform/x11/x11_session.h"

/// The window that the window manager calls active, as long as the keyboard's focus is in it. Main thread only.
class X11KeyTargets final : public KeyTargets {
 public:
  /// `isPanelTyping` tells whether a panel of ours has the keyboard, which leaves the active window as it is.
  X11KeyTargets(const X11Session& session, std::shared_ptr<X11RawInput> rawInput, std::function<bool()> isPanelTyping);

  KeyTarget current() const override;
  std::unique_ptr<InputWatch> watchInput() const override { return X11InputWatch::open(); }
  std::unique_ptr<EscapeWatch> watchEscape(const std::function<void()>& pressed) const override;

 private:
  std::vector<xcb_window_t> focusedWindows() const;
  xcb_window_t outermostApplicationWindow(const std::vector<xcb_window_t>& windows) const;

  X11Session session_;
  std::shared_ptr<X11RawInput> rawInput_;
  std::function<bool()> isPanelTyping_;
  xcb_atom_t activeWindow_;
};

inline xcb_window_t windowOf(KeyTarget target) { return static_cast<xcb_window_t>(target); }
