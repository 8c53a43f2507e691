#include "platform/x11/clipboard_transfers.h"

#include <algorithm>

namespace {

/// Below what any server takes in one request.
constexpr qsizetype kPiece = 200'000;
/// Those who ask and never take would fill the memory.
constexpr std::size_t kMostTransfers = 64;

}  // namespace

ClipboardTransfers::ClipboardTransfers(xcb_connection_t* connection, xcb_atom_t incremental)
    : connection_(connection), incremental_(incremental) {}

void ClipboardTransfers::write(xcb_window_t requestor, xcb_atom_t property, const ClipboardData& data) {
  if (data.bytes.size() <= kPiece) return writeProperty(requestor, property, data);
  std::erase_if(transfers_,
                [&](const Transfer& old) { return old.requestor == requestor && old.property == property; });
  if (transfers_.size() >= kMostTransfers) transfers_.pop_front();
  transfers_.push_back({requestor, property, data});
  watch(requestor, true);
  const auto size = static_cast<std::uint32_t>(data.bytes.size());
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, requestor, property, incremental_, 32, 1, &size);
}

void ClipboardTransfers::goOn(const xcb_property_notify_event_t& change) {
  const auto transfer = std::ranges::find_if(transfers_, [&change](const Transfer& each) {
    return each.requestor == change.window && each.property == change.atom;
  });
  if (transfer == transfers_.end() || change.state != XCB_PROPERTY_DELETE) return;
  ClipboardData piece = transfer->data;
  piece.bytes = piece.bytes.mid(transfer->sent, kPiece);
  transfer->sent += piece.bytes.size();
  writeProperty(transfer->requestor, transfer->property, piece);
  // An empty piece is the end.
  if (!piece.bytes.isEmpty()) return;
  transfers_.erase(transfer);
  if (std::ranges::find(transfers_, change.window, &Transfer::requestor) == transfers_.end())
    watch(change.window, false);
}

void ClipboardTransfers::forget(xcb_window_t requestor) {
  std::erase_if(transfers_, [requestor](const Transfer& transfer) { return transfer.requestor == requestor; });
}

void ClipboardTransfers::writeProperty(xcb_window_t requestor, xcb_atom_t property, const ClipboardData& data) {
  const auto units = static_cast<std::uint32_t>(data.bytes.size() / (data.bits / 8));
  xcb_change_property(connection_, XCB_PROP_MODE_REPLACE, requestor, property, data.type, data.bits, units,
                      data.bytes.constData());
}

void ClipboardTransfers::watch(xcb_window_t requestor, bool wanted) {
  const std::uint32_t events = wanted ? XCB_EVENT_MASK_PROPERTY_CHANGE | XCB_EVENT_MASK_STRUCTURE_NOTIFY : 0;
  xcb_change_window_attributes(connection_, requestor, XCB_CW_EVENT_MASK, &events);
}
