#pragma once

#include <xcb/xcb.h>

#include <cstdlib>
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
