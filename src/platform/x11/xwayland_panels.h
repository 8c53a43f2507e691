#pragma once

#include <QWindow>

#include "base/job.h"
#include "platform/panel_window.h"
#include "platform/x11/x11_session.h"

/// How panels come to the keyboard where the X server is XWayland. A grab is not enough there: it directs only the keys
/// that the compositor hands to X programs, and the compositor hands them over when one of their windows has its focus.
/// Elsewhere everything here does nothing. Main thread only.
class XWaylandPanels {
 public:
  explicit XWaylandPanels(const X11Session& session);

  /// Whether such panels are ordinary windows of the compositor's, which then gives them its focus. Those of wlroots
  /// and Hyprland give it to unmanaged windows too, and would lay out a managed one beside the others.
  bool isManaged(PanelKind kind) const { return isManaging_ && kind == PanelKind::palette; }
  /// Says before each show what the window is.
  void announce(const QWindow& window, PanelKind kind);
  /// Asks for the compositor's focus, of a shown window.
  void activate(QWindow& window);
  /// Whether this event says that the focus has gone from the window to another one.
  bool isFocusLoss(const xcb_generic_event_t& event, const QWindow& window) const;

 private:
  bool isManaged(const QWindow& window) const { return !window.flags().testFlag(Qt::BypassWindowManagerHint); }
  void requestActivation(const QWindow& window);

  X11Session session_;
  bool isWayland_;
  bool isManaging_ = false;
  Job focus_;
};
