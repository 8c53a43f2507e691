#pragma once

#include <condition_variable>
#include <map>
#include <memory>
#include <mutex>
#include <thread>

#include "platform/pasteboard.h"
#include "platform/x11/clipboard_transfers.h"
#include "platform/x11/xcb_reply.h"

/// Owns the clipboard for us: offers each kind of data under its own name and type and hands it over byte for byte, on
/// a connection and a thread of its own. Qt adds and converts kinds, and would have our own windows wait for us when
/// they paste. Main thread only.
class ClipboardOwner {
 public:
  ClipboardOwner();
  /// What is still offered goes to a clipboard manager, if there is one; that takes a second at the most.
  ~ClipboardOwner();
  ClipboardOwner(const ClipboardOwner&) = delete;
  ClipboardOwner& operator=(const ClipboardOwner&) = delete;

  /// Takes the clipboard before it returns; one round trip. Nothing: it belongs to nobody then.
  void offer(PasteboardContents contents);

 private:
  struct Flavour {
    xcb_atom_t target;
    ClipboardData data;
  };
  using Flavours = std::vector<Flavour>;

  bool open();
  xcb_atom_t atom(QByteArrayView name);
  /// Sends ourselves an event with the time of now, which the thread acts on.
  void wake();

  void run();
  void handle(const xcb_generic_event_t& event);
  void seeChange(const xcb_property_notify_event_t& change);
  void take(xcb_timestamp_t time);
  Flavours flavoursOf(PasteboardContents contents);
  void seeLoss();
  bool isOwner();
  void answer(const xcb_selection_request_event_t& request);
  bool handOver(const xcb_selection_request_event_t& request, xcb_atom_t target, xcb_atom_t property);
  bool handOverSeveral(const xcb_selection_request_event_t& request, xcb_atom_t property);
  std::vector<xcb_atom_t> targets() const;
  void giveToManager();

  XcbConnection connection_;
  xcb_window_t window_ = XCB_WINDOW_NONE;
  xcb_atom_t clipboard_ = XCB_NONE;
  xcb_atom_t wakeProperty_ = XCB_NONE;
  xcb_atom_t targetsAtom_ = XCB_NONE;
  xcb_atom_t multipleAtom_ = XCB_NONE;
  xcb_atom_t timestampAtom_ = XCB_NONE;
  xcb_atom_t atomPairAtom_ = XCB_NONE;

  std::mutex mutex_;
  std::condition_variable taken_;
  /// To be taken by the thread; it answers by emptying it.
  std::optional<PasteboardContents> next_;
  bool isEnding_ = false;

  // The thread's own.
  std::map<QByteArray, xcb_atom_t> atoms_;
  Flavours flavours_;
  xcb_timestamp_t since_ = XCB_CURRENT_TIME;
  bool isRunning_ = true;
  std::unique_ptr<ClipboardTransfers> transfers_;
  std::thread thread_;
};
