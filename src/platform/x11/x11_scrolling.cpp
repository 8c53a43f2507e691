#include "platform/x11/x11_scrolling.h"

#include <xcb/xinput.h>

#include <algorithm>
#include <optional>
#include <vector>

#include "platform/x11/xcb_reply.h"

namespace {

constexpr std::uint16_t kAllDevices = 0;

std::vector<xcb_input_device_id_t> pointerDevices(const X11Session& session) {
  const auto cookie = xcb_input_xi_query_device(session.connection, kAllDevices);
  const XcbReply<xcb_input_xi_query_device_reply_t> reply(
      xcb_input_xi_query_device_reply(session.connection, cookie, nullptr));
  std::vector<xcb_input_device_id_t> devices;
  if (!reply) return devices;
  for (auto info = xcb_input_xi_query_device_infos_iterator(reply.get()); info.rem > 0;
       xcb_input_xi_device_info_next(&info))
    if (info.data->type == XCB_INPUT_DEVICE_TYPE_SLAVE_POINTER) devices.push_back(info.data->deviceid);
  return devices;
}

/// A switch among the driver's settings of a device; none when the device does not have it.
std::optional<bool> setting(const X11Session& session, xcb_input_device_id_t device, xcb_atom_t name) {
  const auto cookie = xcb_input_xi_get_property(session.connection, device, 0, name, XCB_GET_PROPERTY_TYPE_ANY, 0, 1);
  const XcbReply<xcb_input_xi_get_property_reply_t> reply(
      xcb_input_xi_get_property_reply(session.connection, cookie, nullptr));
  if (!reply || reply->format != 8 || reply->num_items < 1) return std::nullopt;
  return *static_cast<const std::uint8_t*>(xcb_input_xi_get_property_items(reply.get())) != 0;
}

}  // namespace

bool isNaturalScrollingEnabled(const X11Session& session, ScrollSource source) {
  const xcb_atom_t natural = internAtom(session, "libinput Natural Scrolling Enabled");
  // Only touchpads can be tapped.
  const xcb_atom_t tapping = internAtom(session, "libinput Tapping Enabled");
  return std::ranges::any_of(pointerDevices(session), [&](xcb_input_device_id_t device) {
    const bool isTouchpad = setting(session, device, tapping).has_value();
    return isTouchpad == (source == ScrollSource::touchpad) && setting(session, device, natural).value_or(false);
  });
}
