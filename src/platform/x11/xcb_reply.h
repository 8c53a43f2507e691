#pragma once

#include <xcb/xcb.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <memory>

struct FreeXcbReply {
  void operator()(void* reply) const { std::free(reply); }
};

/// Owns what xcb allocates for a reply, an event or an error.
template <class T>
using XcbReply = std::unique_ptr<T, FreeXcbReply>;

struct DisconnectXcb {
  void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};

/// A connection of our own to the X server.
using XcbConnection = std::unique_ptr<xcb_connection_t, DisconnectXcb>;

/// Returns when the server has done all that was asked of it on this connection, and what it reported is here.
inline void awaitServer(xcb_connection_t* connection) {
  const XcbReply<xcb_get_input_focus_reply_t> done(
      xcb_get_input_focus_reply(connection, xcb_get_input_focus(connection), nullptr));
}

/// As `xcb_send_event` takes it, which reads 32 bytes of every event, also of those whose structure has fewer.
template <class Event>
std::array<char, 32> sentBytes(const Event& event) {
  static_assert(sizeof(Event) <= 32);
  std::array<char, 32> bytes{};
  std::memcpy(bytes.data(), &event, sizeof(Event));
  return bytes;
}
