#include "platform/x11/window_client.h"

#include <xcb/res.h>

#include "platform/x11/xcb_reply.h"

bool isSameClient(const X11Session& session, xcb_window_t one, xcb_window_t other) {
  const std::uint32_t ownPart = xcb_get_setup(session.connection)->resource_id_mask;
  if (((one ^ other) & ~ownPart) == 0) return true;
  const auto process = processOf(session, one);
  return process && process == processOf(session, other);
}

std::optional<int> processOf(const X11Session& session, xcb_window_t window) {
  const auto* extension = xcb_get_extension_data(session.connection, &xcb_res_id);
  if (extension == nullptr || !extension->present) return {};
  const xcb_res_client_id_spec_t wanted{window, XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
  const auto cookie = xcb_res_query_client_ids(session.connection, 1, &wanted);
  const XcbReply<xcb_res_query_client_ids_reply_t> reply(
      xcb_res_query_client_ids_reply(session.connection, cookie, nullptr));
  if (!reply) return {};
  for (auto id = xcb_res_query_client_ids_ids_iterator(reply.get()); id.rem > 0; xcb_res_client_id_value_next(&id))
    if (id.data->spec.mask == XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID && id.data->length >= sizeof(std::uint32_t))
      return static_cast<int>(*xcb_res_client_id_value_value(id.data));
  return {};
}
