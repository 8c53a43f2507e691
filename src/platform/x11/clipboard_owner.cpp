#include "platform/x11/clipboard_owner.h"

#include <poll.h>

#include <algorithm>
#include <chrono>

using namespace std::chrono_literals;

namespace {

/// For a server that is as good as gone.
constexpr auto kLongestTaking = 2s;
/// For a clipboard manager, when the program ends.
constexpr auto kLongestFarewell = 1s;
constexpr auto kLook = 20ms;

}  // namespace

ClipboardOwner::ClipboardOwner() : connection_(xcb_connect(nullptr, nullptr)) {
  if (open()) thread_ = std::thread([this] { run(); });
}

ClipboardOwner::~ClipboardOwner() {
  if (!thread_.joinable()) return;
  {
    const std::scoped_lock lock(mutex_);
    isEnding_ = true;
    wake();
  }
  thread_.join();
}

bool ClipboardOwner::open() {
  if (xcb_connection_has_error(connection_.get())) return false;
  const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection_.get())).data;
  window_ = xcb_generate_id(connection_.get());
  const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_create_window(connection_.get(), XCB_COPY_FROM_PARENT, window_, screen->root, 0, 0, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
  clipboard_ = atom("CLIPBOARD");
  wakeProperty_ = atom("VANTLE_CLIPBOARD");
  targetsAtom_ = atom("TARGETS");
  multipleAtom_ = atom("MULTIPLE");
  timestampAtom_ = atom("TIMESTAMP");
  atomPairAtom_ = atom("ATOM_PAIR");
  transfers_ = std::make_unique<ClipboardTransfers>(connection_.get(), atom("INCR"));
  return true;
}

xcb_atom_t ClipboardOwner::atom(QByteArrayView name) {
  xcb_atom_t& known = atoms_[name.toByteArray()];
  if (known != XCB_NONE) return known;
  const auto cookie = xcb_intern_atom(connection_.get(), 0, static_cast<std::uint16_t>(name.size()), name.constData());
  const XcbReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection_.get(), cookie, nullptr));
  return known = reply ? reply->atom : xcb_atom_t{XCB_NONE};
}

void ClipboardOwner::offer(PasteboardContents contents) {
  if (!thread_.joinable()) return;
  std::unique_lock lock(mutex_);
  next_ = std::move(contents);
  wake();
  taken_.wait_for(lock, kLongestTaking, [this] { return !next_; });
}

void ClipboardOwner::wake() {
  xcb_change_property(connection_.get(), XCB_PROP_MODE_APPEND, window_, wakeProperty_, XCB_ATOM_INTEGER, 8, 0, nullptr);
  xcb_flush(connection_.get());
}

void ClipboardOwner::run() {
  while (isRunning_) {
    const XcbReply<xcb_generic_event_t> event{xcb_wait_for_event(connection_.get())};
    if (!event) return;
    handle(*event);
    xcb_flush(connection_.get());
  }
  if (!flavours_.empty()) giveToManager();
}

void ClipboardOwner::handle(const xcb_generic_event_t& event) {
  switch (event.response_type & 0x7f) {
    case XCB_SELECTION_REQUEST:
      return answer(reinterpret_cast<const xcb_selection_request_event_t&>(event));
    case XCB_SELECTION_CLEAR:
      return seeLoss();
    case XCB_PROPERTY_NOTIFY:
      return seeChange(reinterpret_cast<const xcb_property_notify_event_t&>(event));
    case XCB_DESTROY_NOTIFY:
      return transfers_->forget(reinterpret_cast<const xcb_destroy_notify_event_t&>(event).window);
    default:
      return;
  }
}

void ClipboardOwner::seeChange(const xcb_property_notify_event_t& change) {
  if (change.window != window_ || change.atom != wakeProperty_) return transfers_->goOn(change);
  const std::scoped_lock lock(mutex_);
  if (next_) take(change.time);
  isRunning_ = !isEnding_;
}

/// With the server's time of now, so that nobody's earlier time wins against it.
void ClipboardOwner::take(xcb_timestamp_t time) {
  flavours_ = flavoursOf(std::move(*next_));
  since_ = time;
  xcb_set_selection_owner(connection_.get(), flavours_.empty() ? xcb_window_t{XCB_WINDOW_NONE} : window_, clipboard_,
                          time);
  // A round trip: whoever asks from now on finds us.
  if (!isOwner()) flavours_.clear();
  next_.reset();
  taken_.notify_all();
}

ClipboardOwner::Flavours ClipboardOwner::flavoursOf(PasteboardContents contents) {
  Flavours flavours;
  for (PasteboardFlavour& flavour : contents.flavours) {
    const xcb_atom_t target = atom(flavour.name.toLatin1());
    const xcb_atom_t type = flavour.type.isEmpty() ? target : atom(flavour.type.toLatin1());
    flavours.push_back({target, {type, static_cast<std::uint8_t>(flavour.bits), std::move(flavour.bytes)}});
  }
  return flavours;
}

/// Told late, we may own it again.
void ClipboardOwner::seeLoss() {
  if (!isOwner()) flavours_.clear();
}

bool ClipboardOwner::isOwner() {
  const auto cookie = xcb_get_selection_owner(connection_.get(), clipboard_);
  const XcbReply<xcb_get_selection_owner_reply_t> reply(
      xcb_get_selection_owner_reply(connection_.get(), cookie, nullptr));
  return reply && reply->owner == window_;
}

void ClipboardOwner::answer(const xcb_selection_request_event_t& request) {
  // Very old programs name no property.
  const xcb_atom_t property = request.property == XCB_NONE ? request.target : request.property;
  xcb_selection_notify_event_t notice{};
  notice.response_type = XCB_SELECTION_NOTIFY;
  notice.time = request.time;
  notice.requestor = request.requestor;
  notice.selection = request.selection;
  notice.target = request.target;
  if (handOver(request, request.target, property)) notice.property = property;
  xcb_send_event(connection_.get(), 0, request.requestor, XCB_EVENT_MASK_NO_EVENT, sentBytes(notice).data());
}

bool ClipboardOwner::handOver(const xcb_selection_request_event_t& request, xcb_atom_t target, xcb_atom_t property) {
  const auto write = [&](xcb_atom_t type, std::uint32_t count, const void* values) {
    xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, request.requestor, property, type, 32, count, values);
    return true;
  };
  if (request.selection != clipboard_ || flavours_.empty()) return false;
  if (target == timestampAtom_) return write(XCB_ATOM_INTEGER, 1, &since_);
  if (target == multipleAtom_) return target == request.target && handOverSeveral(request, property);
  if (target == targetsAtom_) {
    const std::vector<xcb_atom_t> all = targets();
    return write(XCB_ATOM_ATOM, static_cast<std::uint32_t>(all.size()), all.data());
  }
  const auto flavour = std::ranges::find(flavours_, target, &Flavour::target);
  if (flavour == flavours_.end()) return false;
  transfers_->write(request.requestor, property, flavour->data);
  return true;
}

/// The property lists pairs of a target and a property for it; what cannot be had is struck out.
bool ClipboardOwner::handOverSeveral(const xcb_selection_request_event_t& request, xcb_atom_t property) {
  constexpr std::uint32_t kMost = 1024;
  const auto cookie =
      xcb_get_property(connection_.get(), 0, request.requestor, property, XCB_GET_PROPERTY_TYPE_ANY, 0, kMost);
  const XcbReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection_.get(), cookie, nullptr));
  if (!reply || reply->format != 32) return false;
  const auto* listed = static_cast<const xcb_atom_t*>(xcb_get_property_value(reply.get()));
  std::vector<xcb_atom_t> pairs(listed, listed + reply->value_len);
  for (std::size_t index = 0; index + 1 < pairs.size(); index += 2)
    if (!handOver(request, pairs[index], pairs[index + 1])) pairs[index + 1] = XCB_NONE;
  xcb_change_property(connection_.get(), XCB_PROP_MODE_REPLACE, request.requestor, property, atomPairAtom_, 32,
                      static_cast<std::uint32_t>(pairs.size()), pairs.data());
  return true;
}

std::vector<xcb_atom_t> ClipboardOwner::targets() const {
  std::vector<xcb_atom_t> all{timestampAtom_, targetsAtom_, multipleAtom_};
  for (const Flavour& flavour : flavours_) all.push_back(flavour.target);
  return all;
}

/// Without a manager it ends with us, as every program's does.
void ClipboardOwner::giveToManager() {
  xcb_convert_selection(connection_.get(), window_, atom("CLIPBOARD_MANAGER"), atom("SAVE_TARGETS"), XCB_NONE, since_);
  xcb_flush(connection_.get());
  const auto end = std::chrono::steady_clock::now() + kLongestFarewell;
  bool isSaved = false;
  while ((!isSaved || !transfers_->isEmpty()) && std::chrono::steady_clock::now() < end &&
         !xcb_connection_has_error(connection_.get())) {
    pollfd waiting{xcb_get_file_descriptor(connection_.get()), POLLIN, 0};
    poll(&waiting, 1, static_cast<int>(kLook.count()));
    while (const XcbReply<xcb_generic_event_t> event{xcb_poll_for_event(connection_.get())}) {
      // Also the answer that there is no manager.
      isSaved = isSaved || (event->response_type & 0x7f) == XCB_SELECTION_NOTIFY;
      handle(*event);
    }
    xcb_flush(connection_.get());
  }
}
