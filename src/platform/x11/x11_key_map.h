#pragma once

#include <xcb/xcb.h>
#include <xkbcommon/xkbcommon.h>

#include <QString>

#include <cstdint>
#include <memory>
#include <optional>

struct X11Session;

/// Where the keys of the macOS table are on the keyboard as it is set up at one moment.
class X11KeyMap {
 public:
  struct Unref {
    void operator()(xkb_keymap* map) const { xkb_keymap_unref(map); }
  };
  using Map = std::unique_ptr<xkb_keymap, Unref>;

  /// Reads the server's map and active layout: a few round trips.
  static X11KeyMap current(const X11Session& session);
  /// `map` may be null: then all keys are where an ANSI keyboard has them.
  X11KeyMap(Map map, xkb_layout_index_t layout) : map_(std::move(map)), layout_(layout) {}

  /// The key that carries the symbol without modifiers on the active layout, else on the first other one, else the key
  /// at the position of an ANSI keyboard. Nothing for codes that are not in the table.
  std::optional<xcb_keycode_t> keyCode(std::uint32_t mac) const;
  /// What is printed on a key: its letter or sign on the active layout, or, where that is not Latin, on the first
  /// layout on which it is; digits on digit keys, upper case. Empty for keys that type nothing visible.
  QString legend(xcb_keycode_t code) const;

 private:
  Map map_;
  xkb_layout_index_t layout_;
};

/// Whether an event of Qt's connection says that keys may mean something else from now on.
bool isKeyMapChange(const X11Session& session, const xcb_generic_event_t& event);
