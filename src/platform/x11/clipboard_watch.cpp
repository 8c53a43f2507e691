#include "platform/x11/clipboard_watch.h"

#include <xcb/xfixes.h>

#include <string_view>

ClipboardWatch::ClipboardWatch() : connection_(xcb_connect(nullptr, nullptr)) {
  if (!prepare()) return;
  arrived_ = std::make_unique<QSocketNotifier>(xcb_get_file_descriptor(connection_.get()), QSocketNotifier::Read);
  QObject::connect(arrived_.get(), &QSocketNotifier::activated, arrived_.get(), [this] { take(); });
}

bool ClipboardWatch::prepare() {
  xcb_connection_t* connection = connection_.get();
  if (xcb_connection_has_error(connection)) return false;
  const auto* extension = xcb_get_extension_data(connection, &xcb_xfixes_id);
  if (extension == nullptr || !extension->present) return false;
  firstEvent_ = extension->first_event;
  const XcbReply<xcb_xfixes_query_version_reply_t> version(
      xcb_xfixes_query_version_reply(connection, xcb_xfixes_query_version(connection, 1, 0), nullptr));
  constexpr std::string_view name = "CLIPBOARD";
  const XcbReply<xcb_intern_atom_reply_t> clipboard(
      xcb_intern_atom_reply(connection, xcb_intern_atom(connection, 0, name.size(), name.data()), nullptr));
  if (!version || !clipboard) return false;
  const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(connection)).data->root;
  xcb_xfixes_select_selection_input(connection, root, clipboard->atom,
                                    XCB_XFIXES_SELECTION_EVENT_MASK_SET_SELECTION_OWNER);
  xcb_flush(connection);
  return true;
}

std::int64_t ClipboardWatch::count() {
  if (!arrived_) return count_;
  awaitServer(connection_.get());
  take();
  return count_;
}

std::optional<ClipboardWatch::Change> ClipboardWatch::change(std::int64_t number) const {
  const Change& known = last_[static_cast<std::size_t>(number) % last_.size()];
  return number > 0 && known.number == number ? std::optional(known) : std::nullopt;
}

void ClipboardWatch::take() {
  while (const XcbReply<xcb_generic_event_t> event{xcb_poll_for_event(connection_.get())}) {
    if ((event->response_type & 0x7f) != firstEvent_ + XCB_XFIXES_SELECTION_NOTIFY) continue;
    const auto& change = reinterpret_cast<const xcb_xfixes_selection_notify_event_t&>(*event);
    ++count_;
    last_[static_cast<std::size_t>(count_) % last_.size()] = {count_, change.owner, change.selection_timestamp};
  }
  // A server that is gone would call again and again.
  if (xcb_connection_has_error(connection_.get())) arrived_->setEnabled(false);
}
