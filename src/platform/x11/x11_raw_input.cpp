#include "platform/x11/x11_raw_input.h"

X11RawInput::X11RawInput(const X11Session& session) : session_(session) {
  const auto* extension = xcb_get_extension_data(session.connection, &xcb_input_id);
  if (extension != nullptr && extension->present) opcode_ = extension->major_opcode;
}

void X11RawInput::select(std::uint32_t events, bool wanted) {
  const std::uint32_t selected = wanted ? selected_ | events : selected_ & ~events;
  if (!isAvailable() || selected == selected_) return;
  selected_ = selected;
  // Qt selects on the root window too, but for all devices at once, which the server keeps apart.
  struct {
    xcb_input_event_mask_t head{XCB_INPUT_DEVICE_ALL_MASTER, 1};
    std::uint32_t events;
  } mask{.events = selected};
  xcb_input_xi_select_events(session_.connection, session_.root, 1, &mask.head);
  xcb_flush(session_.connection);
}

std::shared_ptr<void> X11RawInput::selectKeyPresses() {
  if (auto selected = keyPresses_.lock()) return selected;
  constexpr auto kPress = XCB_INPUT_XI_EVENT_MASK_RAW_KEY_PRESS;
  select(kPress, true);
  std::shared_ptr<void> selected(this, [this](void*) { select(kPress, false); });
  keyPresses_ = selected;
  return selected;
}

std::optional<X11RawInput::Event> X11RawInput::read(const xcb_generic_event_t& event) const {
  if (event.response_type != XCB_GE_GENERIC) return {};
  const auto& raw = reinterpret_cast<const xcb_input_raw_key_press_event_t&>(event);
  if (raw.extension != opcode_ || raw.event_type < XCB_INPUT_RAW_KEY_PRESS || raw.event_type > XCB_INPUT_RAW_TOUCH_END)
    return {};
  return Event{raw.event_type, raw.detail};
}
