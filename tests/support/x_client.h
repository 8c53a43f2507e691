#pragma once

#include <xcb/xcb.h>
#include <xcb/xcb_keysyms.h>
#include <xcb/xtest.h>

#include <QByteArray>
#include <QTest>

#include <cstdlib>
#include <initializer_list>
#include <memory>
#include <vector>

/// Another program on the display: presses keys and buttons as the user, takes combinations, owns a window.
class XClient {
 public:
  XClient() : connection_(xcb_connect(nullptr, nullptr)), symbols_(xcb_key_symbols_alloc(connection_)) {
    root_ = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data->root;
  }
  ~XClient() {
    xcb_key_symbols_free(symbols_);
    xcb_disconnect(connection_);
  }
  XClient(const XClient&) = delete;
  XClient& operator=(const XClient&) = delete;

  xcb_connection_t* connection() const { return connection_; }
  xcb_window_t root() const { return root_; }
  xcb_window_t window() const { return window_; }

  /// The key that carries a symbol on the layout of now, 0 for none.
  xcb_keycode_t keyCode(xcb_keysym_t symbol) {
    xcb_key_symbols_free(symbols_);
    symbols_ = xcb_key_symbols_alloc(connection_);
    const Owned<xcb_keycode_t> codes(xcb_key_symbols_get_keycode(symbols_, symbol));
    return codes ? *codes : 0;
  }

  void key(xcb_keycode_t code, bool down) {
    xcb_test_fake_input(connection_, down ? XCB_KEY_PRESS : XCB_KEY_RELEASE, code, XCB_CURRENT_TIME, root_, 0, 0, 0);
    sync();
  }
  void tap(xcb_keycode_t code) {
    key(code, true);
    key(code, false);
  }
  /// Taps a key while others are held.
  void chord(const std::vector<xcb_keycode_t>& held, xcb_keycode_t code) {
    for (const auto modifier : held) key(modifier, true);
    tap(code);
    for (const auto modifier : held) key(modifier, false);
  }
  void moveTo(int x, int y) {
    xcb_test_fake_input(connection_, XCB_MOTION_NOTIFY, 0, XCB_CURRENT_TIME, root_, static_cast<std::int16_t>(x),
                        static_cast<std::int16_t>(y), 0);
    sync();
  }
  void click(int x, int y, std::uint8_t button = 1) {
    moveTo(x, y);
    for (const auto type : {XCB_BUTTON_PRESS, XCB_BUTTON_RELEASE})
      xcb_test_fake_input(connection_, static_cast<std::uint8_t>(type), button, XCB_CURRENT_TIME, root_, 0, 0, 0);
    sync();
  }

  /// True when nobody had the combination.
  bool take(xcb_keycode_t code, int modifiers) {
    const auto cookie = xcb_grab_key_checked(connection_, false, root_, static_cast<std::uint16_t>(modifiers), code,
                                             XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    return !Owned<xcb_generic_error_t>(xcb_request_check(connection_, cookie));
  }
  void give(xcb_keycode_t code, int modifiers) {
    xcb_ungrab_key(connection_, code, root_, static_cast<std::uint16_t>(modifiers));
    sync();
  }
  /// Until it is released, the server does nothing for anybody else.
  void holdServer() {
    xcb_grab_server(connection_);
    sync();
  }
  void releaseServer() {
    xcb_ungrab_server(connection_);
    sync();
  }
  bool takeWholeKeyboard() {
    const auto cookie =
        xcb_grab_keyboard(connection_, false, root_, XCB_CURRENT_TIME, XCB_GRAB_MODE_ASYNC, XCB_GRAB_MODE_ASYNC);
    const Owned<xcb_grab_keyboard_reply_t> reply(xcb_grab_keyboard_reply(connection_, cookie, nullptr));
    return reply && reply->status == XCB_GRAB_STATUS_SUCCESS;
  }
  void giveWholeKeyboard() {
    xcb_ungrab_keyboard(connection_, XCB_CURRENT_TIME);
    sync();
  }

  /// Opens a window as any application does; the window manager activates it.
  void openWindow(int x, int y, int width, int height) {
    const auto screen = xcb_setup_roots_iterator(xcb_get_setup(connection_)).data;
    const std::uint32_t values[] = {
        screen->white_pixel, XCB_EVENT_MASK_KEY_PRESS | XCB_EVENT_MASK_BUTTON_PRESS | XCB_EVENT_MASK_PROPERTY_CHANGE};
    window_ = xcb_generate_id(connection_);
    xcb_create_window(connection_, XCB_COPY_FROM_PARENT, window_, root_, static_cast<std::int16_t>(x),
                      static_cast<std::int16_t>(y), static_cast<std::uint16_t>(width),
                      static_cast<std::uint16_t>(height), 0, XCB_WINDOW_CLASS_INPUT_OUTPUT, screen->root_visual,
                      XCB_CW_BACK_PIXEL | XCB_CW_EVENT_MASK, values);
    // User position and size: window managers leave it where it asked to be.
    const std::uint32_t hints[18] = {1 | 2};
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window_, XCB_ATOM_WM_NORMAL_HINTS, XCB_ATOM_WM_SIZE_HINTS,
                        32, 18, hints);
    xcb_map_window(connection_, window_);
    sync();
  }
  xcb_window_t activeWindow() {
    const auto cookie =
        xcb_get_property(connection_, false, root_, atom("_NET_ACTIVE_WINDOW"), XCB_GET_PROPERTY_TYPE_ANY, 0, 1);
    const Owned<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection_, cookie, nullptr));
    if (!reply || xcb_get_property_value_length(reply.get()) != sizeof(xcb_window_t)) return XCB_WINDOW_NONE;
    return *static_cast<const xcb_window_t*>(xcb_get_property_value(reply.get()));
  }
  /// Whether the window manager has that window, shown or not.
  bool isManaged(xcb_window_t window) {
    const auto cookie = xcb_get_property(connection_, false, window, atom("WM_STATE"), XCB_GET_PROPERTY_TYPE_ANY, 0, 1);
    const Owned<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection_, cookie, nullptr));
    if (!reply || xcb_get_property_value_length(reply.get()) != sizeof(std::uint32_t)) return false;
    constexpr std::uint32_t kWithdrawn = 0;
    return *static_cast<const std::uint32_t*>(xcb_get_property_value(reply.get())) != kWithdrawn;
  }
  /// Where the server has a window on the screen, whatever its program believes.
  QRect placeOf(xcb_window_t window) {
    const Owned<xcb_translate_coordinates_reply_t> corner(xcb_translate_coordinates_reply(
        connection_, xcb_translate_coordinates(connection_, window, root_, 0, 0), nullptr));
    const Owned<xcb_get_geometry_reply_t> shape(
        xcb_get_geometry_reply(connection_, xcb_get_geometry(connection_, window), nullptr));
    return corner && shape ? QRect(corner->dst_x, corner->dst_y, shape->width, shape->height) : QRect();
  }
  xcb_window_t focusedWindow() {
    const Owned<xcb_get_input_focus_reply_t> reply(
        xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
    return reply ? reply->focus : static_cast<xcb_window_t>(XCB_WINDOW_NONE);
  }

  /// Makes the own window the owner of a selection.
  void own(QByteArrayView selection) {
    xcb_set_selection_owner(connection_, window_, atom(selection), XCB_CURRENT_TIME);
    sync();
  }
  /// Sets a property of the own window.
  void setProperty(QByteArrayView name, const QByteArray& bytes) {
    const auto property = atom(name);
    xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, window_, property, property, 8,
                        static_cast<std::uint32_t>(bytes.size()), bytes.constData());
    sync();
  }

  /// Returns once the server's clock has moved on: what follows is later than all that was.
  void waitForNextTick() {
    const xcb_timestamp_t before = serverTime();
    while (serverTime() == before) continue;
  }

  /// Keys and buttons that the own window has got since it was opened.
  const std::vector<xcb_keycode_t>& keysReceived() {
    collect();
    return keys_;
  }
  int clicksReceived() {
    collect();
    return clicks_;
  }

 private:
  struct Free {
    void operator()(void* reply) const { std::free(reply); }
  };
  template <class T>
  using Owned = std::unique_ptr<T, Free>;

  void sync() {
    Owned<xcb_get_input_focus_reply_t>(
        xcb_get_input_focus_reply(connection_, xcb_get_input_focus(connection_), nullptr));
  }
  xcb_atom_t atom(QByteArrayView name) {
    const auto cookie = xcb_intern_atom(connection_, false, static_cast<std::uint16_t>(name.size()), name.data());
    const Owned<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection_, cookie, nullptr));
    return reply->atom;
  }
  void collect() {
    sync();
    while (const auto event = Owned<xcb_generic_event_t>(xcb_poll_for_event(connection_))) {
      if (event->response_type == XCB_KEY_PRESS)
        keys_.push_back(reinterpret_cast<const xcb_key_press_event_t&>(*event).detail);
      if (event->response_type == XCB_PROPERTY_NOTIFY)
        time_ = reinterpret_cast<const xcb_property_notify_event_t&>(*event).time;
      clicks_ += event->response_type == XCB_BUTTON_PRESS ? 1 : 0;
    }
  }
  /// Told with any change of a property of the own window.
  xcb_timestamp_t serverTime() {
    setProperty("VANTLE_TEST_TIME", {});
    collect();
    return time_;
  }

  xcb_connection_t* connection_;
  xcb_key_symbols_t* symbols_;
  xcb_window_t root_ = XCB_WINDOW_NONE;
  xcb_window_t window_ = XCB_WINDOW_NONE;
  std::vector<xcb_keycode_t> keys_;
  int clicks_ = 0;
  xcb_timestamp_t time_ = 0;
};
