#pragma once

#include "platform/key_target.h"
#include "platform/x11/xcb_reply.h"

/// Sees keys, buttons and touches whoever has the focus or a grab. On a connection of its own, which wakes nobody: its
/// events are looked at when somebody asks. Main thread only.
class X11InputWatch final : public InputWatch {
 public:
  /// Null without a display or its input extension.
  static std::unique_ptr<X11InputWatch> open();

  std::optional<InputTime> firstTouch() override;

 private:
  bool select();

  XcbConnection connection_;
  std::optional<InputTime> first_;
};
