#pragma once

#include <QSocketNotifier>

#include <cstdint>
#include <memory>

#include "platform/x11/xcb_reply.h"

/// Counts how often the clipboard has got a new owner, or the same one anew. On a connection of its own, since Qt's
/// already has these events for itself. Main thread only.
class ClipboardWatch {
 public:
  /// Without a display nothing is ever counted.
  ClipboardWatch();

  /// Up to date with all that happened before the call: one round trip.
  std::int64_t count();

 private:
  bool prepare();
  void take();

  XcbConnection connection_;
  std::uint8_t firstEvent_ = 0;
  std::int64_t count_ = 0;
  /// Events that nobody asks for are taken too: the server would keep them.
  std::unique_ptr<QSocketNotifier> arrived_;
};
