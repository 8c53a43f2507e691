#pragma once

#include <xcb/xcb.h>

#include <chrono>
#include <stop_token>

#include "platform/pasteboard.h"
#include "platform/x11/xcb_reply.h"

/// Asks the owner of the clipboard, or of another selection, for what it offers, on a connection of its own. Whatever
/// the owner does, a read ends within its limits, or at once when a stop is requested or the owner is gone. One thread,
/// any.
class ClipboardReader {
 public:
  struct Limits {
    /// For the list of what is offered, which no program has to work for.
    std::chrono::milliseconds offers{2000};
    /// For each piece of data; some encode it when they are asked.
    std::chrono::milliseconds silence{10'000};
    std::chrono::milliseconds whole{30'000};
    qint64 bytes = Pasteboard::kLargestData;
  };

  ClipboardReader(Limits limits, std::stop_token stop, QByteArrayView selection = "CLIPBOARD");

  /// The first of `formats` that the owner offers and hands over.
  std::optional<PasteboardData> first(const std::vector<PasteboardFormat>& formats);
  /// Its plain text.
  std::optional<QString> text();
  /// All that the owner offers and hands over in time, in its order; `Limits::bytes` counts for the whole.
  PasteboardContents everything();

 private:
  using Clock = std::chrono::steady_clock;
  struct Value {
    xcb_atom_t type = XCB_NONE;
    QByteArray bytes;
    int bits = 8;
  };

  bool open();
  xcb_atom_t atom(QByteArrayView name) const;
  bool watchOwner();
  std::vector<xcb_atom_t> offered();
  std::vector<QString> names(const std::vector<xcb_atom_t>& atoms) const;
  std::optional<Value> convert(xcb_atom_t target, std::chrono::milliseconds silence);
  std::optional<Value> takeValue();
  std::optional<Value> gather(xcb_atom_t type);
  bool request(xcb_atom_t target);
  void timestamp();
  template <class Wanted>
  bool await(Wanted wanted);
  XcbReply<xcb_generic_event_t> next();
  bool isOver() const;

  Limits limits_;
  std::stop_token stop_;
  QByteArray selectionName_;
  XcbConnection connection_;
  xcb_window_t window_ = XCB_WINDOW_NONE;
  xcb_window_t owner_ = XCB_WINDOW_NONE;
  xcb_atom_t selection_ = XCB_NONE;
  xcb_atom_t property_ = XCB_NONE;
  xcb_atom_t incremental_ = XCB_NONE;
  xcb_timestamp_t time_ = XCB_CURRENT_TIME;
  /// The owner is gone, or has kept silent too long.
  bool isLost_ = false;
  std::chrono::milliseconds silence_{0};
  Clock::time_point silentUntil_;
  Clock::time_point end_;
};
