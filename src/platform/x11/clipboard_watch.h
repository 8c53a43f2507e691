#pragma once

#include <QSocketNotifier>

#include <array>
#include <cstdint>
#include <memory>
#include <optional>

#include "platform/x11/xcb_reply.h"

/// Counts how often the clipboard has got a new owner, or the same one anew. On a connection of its own, since Qt's
/// already has these events for itself. Main thread only.
class ClipboardWatch {
 public:
  /// Without a display nothing is ever counted.
  ClipboardWatch();

  /// Up to date with all that happened before the call: one round trip.
  std::int64_t count();

  struct Change {
    std::int64_t number = 0;
    xcb_window_t owner = XCB_WINDOW_NONE;
    /// Of the event that made its owner take the clipboard, if the owner keeps to the rules; else when it did.
    xcb_timestamp_t time = XCB_CURRENT_TIME;
  };
  /// The change that moved the count on to `number`, one of the last few; nothing of an older one.
  std::optional<Change> change(std::int64_t number) const;

 private:
  bool prepare();
  void take();

  XcbConnection connection_;
  std::uint8_t firstEvent_ = 0;
  std::int64_t count_ = 0;
  std::array<Change, 8> last_{};
  /// Events that nobody asks for are taken too: the server would keep them.
  std::unique_ptr<QSocketNotifier> arrived_;
};
