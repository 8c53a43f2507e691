#pragma once

#include <xcb/xcb.h>

#include <QByteArray>

#include <list>

/// Data for another program. Bytes are shared, not copied.
struct ClipboardData {
  xcb_atom_t type = XCB_NONE;
  std::uint8_t bits = 8;
  QByteArray bytes;
};

/// Writes data into properties of the windows that asked for it: small data at once, large data in pieces, each when
/// the one before has been taken. One thread.
class ClipboardTransfers {
 public:
  ClipboardTransfers(xcb_connection_t* connection, xcb_atom_t incremental);

  void write(xcb_window_t requestor, xcb_atom_t property, const ClipboardData& data);
  /// The requestor has taken a piece.
  void goOn(const xcb_property_notify_event_t& change);
  void forget(xcb_window_t requestor);
  bool isEmpty() const { return transfers_.empty(); }

 private:
  struct Transfer {
    xcb_window_t requestor;
    xcb_atom_t property;
    ClipboardData data;
    qsizetype sent = 0;
  };

  void writeProperty(xcb_window_t requestor, xcb_atom_t property, const ClipboardData& data);
  void watch(xcb_window_t requestor, bool wanted);

  xcb_connection_t* connection_;
  xcb_atom_t incremental_;
  std::list<Transfer> transfers_;
};
