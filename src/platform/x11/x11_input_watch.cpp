#include "platform/x11/x11_input_watch.h"

#include <xcb/xinput.h>

std::unique_ptr<X11InputWatch> X11InputWatch::open() {
  auto watch = std::make_unique<X11InputWatch>();
  watch->connection_.reset(xcb_connect(nullptr, nullptr));
  return watch->select() ? std::move(watch) : nullptr;
}

bool X11InputWatch::select() {
  xcb_connection_t* connection = connection_.get();
  if (xcb_connection_has_error(connection)) return false;
  const auto* extension = xcb_get_extension_data(connection, &xcb_input_id);
  if (extension == nullptr || !extension->present) return false;
  // Before 2.2 there are no touches, before 2.1 a grab by another program would hide them.
  const XcbReply<xcb_input_xi_query_version_reply_t> version(
      xcb_input_xi_query_version_reply(connection, xcb_input_xi_query_version(connection, 2, 2), nullptr));
  if (!version || version->major_version * 100 + version->minor_version < 202) return false;
  const struct {
    xcb_input_event_mask_t head{XCB_INPUT_DEVICE_ALL_MASTER, 1};
    std::uint32_t events = XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS | XCB_INPUT_XI_EVENT_MASK_RAW_BUTTON_PRESS |
                           XCB_INPUT_XI_EVENT_MASK_RAW_TOUCH_BEGIN;
  } mask;
  const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
  const auto cookie = xcb_input_xi_select_events_checked(connection, root, 1, &mask.head);
  return !XcbReply<xcb_generic_error_t>(xcb_request_check(connection, cookie));
}

std::optional<InputTime> X11InputWatch::firstTouch() {
  if (first_) return first_;
  awaitServer(connection_.get());
  while (const XcbReply<xcb_generic_event_t> event{xcb_poll_for_event(connection_.get())})
    if (event->response_type == XCB_GE_GENERIC && !first_)
      first_ = InputTime{reinterpret_cast<const xcb_input_raw_key_press_event_t&>(*event).time};
  return first_;
}
