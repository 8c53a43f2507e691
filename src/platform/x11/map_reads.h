#pragma once

#include <xcb/xcb.h>

#include <chrono>
#include <memory>
#include <stop_token>

/// Sees, through the RECORD extension, when one application reads the keyboard map.
///
/// A key means what the map says at the moment the application reads it, which may be long after the key was typed. So
/// a changed map may only be changed again, or counted on, once the application has read it.
class MapReads {
 public:
  /// Watches the application that owns `window`; null when the server has no RECORD.
  static std::unique_ptr<MapReads> watch(xcb_window_t window);
  ~MapReads();

  xcb_window_t window() const { return window_; }
  /// How often the application has read the map so far.
  int count();
  /// Whether there are more than `count` reads within `longest`; false soon after `stop` is requested.
  bool waitForMore(int count, std::chrono::milliseconds longest, const std::stop_token& stop);
  /// Waits, once the map is read, until the application has asked for the keyboard's state as well: toolkits that read
  /// both at once take the modifiers of that moment for those of the keys they have yet to see.
  void waitForState(std::chrono::milliseconds longest);

 private:
  struct Disconnect {
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
  };
  using Connection = std::unique_ptr<xcb_connection_t, Disconnect>;

  explicit MapReads(xcb_window_t window) : window_(window) {}
  bool start();
  bool isBroken() const { return xcb_connection_has_error(data_.get()) != 0; }
  void drain();
  void take(const void* request);
  /// Whether something arrived before `end`.
  bool waitForData(std::chrono::steady_clock::time_point end);

  xcb_window_t window_;
  Connection control_;
  Connection data_;
  std::uint32_t context_ = 0;
  unsigned int enabled_ = 0;
  std::uint8_t xkbOpcode_ = 0;
  int reads_ = 0;
  bool stateAsked_ = false;
};
