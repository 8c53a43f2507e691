#include "platform/x11/clipboard_reader.h"

#include <poll.h>

#include <algorithm>
#include <array>
#include <cerrno>

using namespace std::chrono_literals;

namespace {

/// How often a wait looks whether it is still wanted.
constexpr auto kLook = 50ms;
/// Of the list of what is offered; no program offers as much.
constexpr qsizetype kMostOffers = 4096;

struct Target {
  PasteboardFormat format;
  QByteArrayView name;
};

constexpr std::array kTargets = {
    Target{PasteboardFormat::png, "image/png"},          Target{PasteboardFormat::jpeg, "image/jpeg"},
    Target{PasteboardFormat::tiff, "image/tiff"},        Target{PasteboardFormat::webp, "image/webp"},
    Target{PasteboardFormat::gif, "image/gif"},          Target{PasteboardFormat::bmp, "image/bmp"},
    Target{PasteboardFormat::fileURLs, "text/uri-list"},
};

QByteArrayView targetName(PasteboardFormat format) {
  return std::ranges::find(kTargets, format, &Target::format)->name;
}

/// From what every letter survives to what some do not.
constexpr std::array<QByteArrayView, 5> kTexts = {"UTF8_STRING", "text/plain;charset=utf-8", "text/plain", "TEXT",
                                                  "STRING"};

/// What an owner answers about itself or does for others: not data.
constexpr std::array<QLatin1StringView, 7> kNoData = {
    QLatin1StringView("TARGETS"),     QLatin1StringView("MULTIPLE"),         QLatin1StringView("TIMESTAMP"),
    QLatin1StringView("DELETE"),      QLatin1StringView("INSERT_SELECTION"), QLatin1StringView("INSERT_PROPERTY"),
    QLatin1StringView("SAVE_TARGETS")};

}  // namespace

ClipboardReader::ClipboardReader(Limits limits, std::stop_token stop, QByteArrayView selection)
    : limits_(limits),
      stop_(std::move(stop)),
      selectionName_(selection.toByteArray()),
      end_(Clock::now() + limits.whole) {}

std::optional<PasteboardData> ClipboardReader::first(const std::vector<PasteboardFormat>& formats) {
  if (!open() || !watchOwner()) return std::nullopt;
  const std::vector<xcb_atom_t> offers = offered();
  for (const PasteboardFormat format : formats) {
    const xcb_atom_t target = atom(targetName(format));
    if (std::ranges::find(offers, target) == offers.end()) continue;
    if (auto value = convert(target, limits_.silence); value && !value->bytes.isEmpty())
      return PasteboardData{format, std::move(value->bytes)};
  }
  return std::nullopt;
}

std::optional<QString> ClipboardReader::text() {
  if (!open() || !watchOwner()) return std::nullopt;
  const std::vector<xcb_atom_t> offers = offered();
  for (const QByteArrayView name : kTexts) {
    const xcb_atom_t target = atom(name);
    if (std::ranges::find(offers, target) == offers.end()) continue;
    auto value = convert(target, limits_.silence);
    if (!value || value->bits != 8) continue;
    // Some count the zero that ends a string in C.
    while (value->bytes.endsWith('\0')) value->bytes.chop(1);
    return value->type == XCB_ATOM_STRING ? QString::fromLatin1(value->bytes) : QString::fromUtf8(value->bytes);
  }
  return std::nullopt;
}

PasteboardContents ClipboardReader::everything() {
  PasteboardContents contents;
  if (!open() || !watchOwner()) return contents;
  const std::vector<xcb_atom_t> offers = offered();
  const std::vector<QString> targets = names(offers);
  for (std::size_t index = 0; index < offers.size() && !isLost_; ++index) {
    if (targets[index].isEmpty() || std::ranges::find(kNoData, targets[index]) != kNoData.end()) continue;
    auto value = convert(offers[index], limits_.silence);
    if (!value) continue;
    limits_.bytes -= value->bytes.size();
    const QString type = value->type == offers[index] ? QString() : names({value->type}).front();
    contents.flavours.push_back({targets[index], std::move(value->bytes), 0, type, value->bits});
  }
  return contents;
}

bool ClipboardReader::open() {
  int number = 0;
  connection_.reset(xcb_connect(nullptr, &number));
  if (xcb_connection_has_error(connection_.get())) return false;
  const xcb_screen_t* screen = xcb_setup_roots_iterator(xcb_get_setup(connection_.get())).data;
  window_ = xcb_generate_id(connection_.get());
  const std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
  xcb_create_window(connection_.get(), XCB_COPY_FROM_PARENT, window_, screen->root, 0, 0, 1, 1, 0,
                    XCB_WINDOW_CLASS_INPUT_ONLY, XCB_COPY_FROM_PARENT, XCB_CW_EVENT_MASK, &events);
  selection_ = atom(selectionName_);
  property_ = atom("VANTLE_SELECTION");
  incremental_ = atom("INCR");
  timestamp();
  return !isOver();
}

xcb_atom_t ClipboardReader::atom(QByteArrayView name) const {
  const auto cookie = xcb_intern_atom(connection_.get(), 0, static_cast<std::uint16_t>(name.size()), name.constData());
  const XcbReply<xcb_intern_atom_reply_t> reply(xcb_intern_atom_reply(connection_.get(), cookie, nullptr));
  return reply ? reply->atom : xcb_atom_t{XCB_NONE};
}

/// All asked for before the first answer is awaited.
std::vector<QString> ClipboardReader::names(const std::vector<xcb_atom_t>& atoms) const {
  std::vector<xcb_get_atom_name_cookie_t> cookies;
  for (const xcb_atom_t atom : atoms) cookies.push_back(xcb_get_atom_name(connection_.get(), atom));
  std::vector<QString> names;
  for (const auto cookie : cookies) {
    const XcbReply<xcb_get_atom_name_reply_t> reply(xcb_get_atom_name_reply(connection_.get(), cookie, nullptr));
    names.push_back(
        reply ? QString::fromLatin1(xcb_get_atom_name_name(reply.get()), xcb_get_atom_name_name_length(reply.get()))
              : QString());
  }
  return names;
}

/// Requests need the server's time of now: some owners refuse "whenever".
void ClipboardReader::timestamp() {
  silence_ = limits_.offers;
  xcb_change_property(connection_.get(), XCB_PROP_MODE_APPEND, window_, property_, XCB_ATOM_INTEGER, 8, 0, nullptr);
  await([this](const xcb_generic_event_t& event) {
    if ((event.response_type & 0x7f) != XCB_PROPERTY_NOTIFY) return false;
    time_ = reinterpret_cast<const xcb_property_notify_event_t&>(event).time;
    return true;
  });
}

/// False without an owner. One that ends while it is asked would otherwise be waited for.
bool ClipboardReader::watchOwner() {
  const auto cookie = xcb_get_selection_owner(connection_.get(), selection_);
  const XcbReply<xcb_get_selection_owner_reply_t> reply(
      xcb_get_selection_owner_reply(connection_.get(), cookie, nullptr));
  if (!reply || reply->owner == XCB_WINDOW_NONE) return false;
  owner_ = reply->owner;
  const std::uint32_t events = XCB_EVENT_MASK_STRUCTURE_NOTIFY;
  xcb_change_window_attributes(connection_.get(), owner_, XCB_CW_EVENT_MASK, &events);
  return true;
}

std::vector<xcb_atom_t> ClipboardReader::offered() {
  const auto value = convert(atom("TARGETS"), limits_.offers);
  if (!value) return {};
  const auto count = std::min(value->bytes.size() / qsizetype{sizeof(xcb_atom_t)}, kMostOffers);
  const auto* atoms = reinterpret_cast<const xcb_atom_t*>(value->bytes.constData());
  return {atoms, atoms + count};
}

std::optional<ClipboardReader::Value> ClipboardReader::convert(xcb_atom_t target, std::chrono::milliseconds silence) {
  silence_ = silence;
  if (!request(target)) return std::nullopt;
  auto value = takeValue();
  return value && value->type == incremental_ ? gather(target) : std::move(value);
}

/// True when the owner has put its answer into our property.
bool ClipboardReader::request(xcb_atom_t target) {
  xcb_delete_property(connection_.get(), window_, property_);
  xcb_convert_selection(connection_.get(), window_, selection_, target, property_, time_);
  bool isGranted = false;
  const bool isAnswered = await([&](const xcb_generic_event_t& event) {
    if ((event.response_type & 0x7f) != XCB_SELECTION_NOTIFY) return false;
    const auto& answer = reinterpret_cast<const xcb_selection_notify_event_t&>(event);
    isGranted = answer.property != XCB_NONE;
    // An answer that comes after we gave it up belongs to an earlier request.
    return answer.target == target && answer.selection == selection_;
  });
  // Who keeps silent is not asked for anything else.
  isLost_ = isLost_ || !isAnswered;
  return isAnswered && isGranted;
}

/// What is in our property, which is deleted: that also asks for the next piece. Nothing when it is too long.
std::optional<ClipboardReader::Value> ClipboardReader::takeValue() {
  const auto words = static_cast<std::uint32_t>(limits_.bytes / 4 + 1);
  const auto cookie = xcb_get_property(connection_.get(), 1, window_, property_, XCB_GET_PROPERTY_TYPE_ANY, 0, words);
  const XcbReply<xcb_get_property_reply_t> reply(xcb_get_property_reply(connection_.get(), cookie, nullptr));
  if (!reply || reply->type == XCB_NONE || reply->bytes_after > 0) return std::nullopt;
  const auto* bytes = static_cast<const char*>(xcb_get_property_value(reply.get()));
  return Value{reply->type, QByteArray(bytes, xcb_get_property_value_length(reply.get())), reply->format};
}

/// Large data comes in pieces, each when the one before has been taken; an empty one is the end.
std::optional<ClipboardReader::Value> ClipboardReader::gather(xcb_atom_t type) {
  Value whole{type, {}, 8};
  const auto isPiece = [this](const xcb_generic_event_t& event) {
    if ((event.response_type & 0x7f) != XCB_PROPERTY_NOTIFY) return false;
    const auto& change = reinterpret_cast<const xcb_property_notify_event_t&>(event);
    return change.atom == property_ && change.state == XCB_PROPERTY_NEW_VALUE;
  };
  while (await(isPiece)) {
    const auto piece = takeValue();
    if (!piece || whole.bytes.size() + piece->bytes.size() > limits_.bytes) return std::nullopt;
    if (piece->bytes.isEmpty()) return whole;
    whole.type = piece->type;
    whole.bits = piece->bits;
    whole.bytes += piece->bytes;
  }
  isLost_ = true;
  return std::nullopt;
}

/// Handles events until `wanted` says yes to one; false when that takes too long.
template <class Wanted>
bool ClipboardReader::await(Wanted wanted) {
  xcb_flush(connection_.get());
  silentUntil_ = Clock::now() + silence_;
  while (const auto event = next()) {
    if ((event->response_type & 0x7f) == XCB_DESTROY_NOTIFY) isLost_ = true;
    if (wanted(*event)) return true;
  }
  return false;
}

XcbReply<xcb_generic_event_t> ClipboardReader::next() {
  while (!isOver()) {
    if (XcbReply<xcb_generic_event_t> event{xcb_poll_for_event(connection_.get())}) return event;
    pollfd waiting{xcb_get_file_descriptor(connection_.get()), POLLIN, 0};
    poll(&waiting, 1, static_cast<int>(kLook.count()));
  }
  return nullptr;
}

bool ClipboardReader::isOver() const {
  const auto now = Clock::now();
  return stop_.stop_requested() || isLost_ || now >= std::min(silentUntil_, end_) ||
         xcb_connection_has_error(connection_.get());
}
