#pragma once

#include <cstdlib>
#include <memory>

struct FreeXcbReply {
  void operator()(void* reply) const { std::free(reply); }
};

/// Owns what xcb allocates for a reply, an event or an error.
template <class T>
using XcbReply = std::unique_ptr<T, FreeXcbReply>;
