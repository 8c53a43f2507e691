#pragma once

#include <xcb/xinput.h>

#include <cstdint>
#include <memory>
#include <optional>

#include "platform/x11/x11_session.h"

/// What happens at the devices whoever has the focus or a grab, on Qt's connection. Asked for only while somebody needs
/// it: every such event wakes the process.
class X11RawInput {
 public:
  struct Event {
    /// XCB_INPUT_RAW_…
    std::uint16_t type;
    /// Key code or button.
    std::uint32_t detail;
  };

  explicit X11RawInput(const X11Session& session);

  /// False on servers without the input extension; nothing is ever delivered then.
  bool isAvailable() const { return opcode_ != 0; }
  /// Adds events to those that are delivered, or takes them away; `events` are XCB_INPUT_XI_EVENT_MASK_RAW_… bits.
  void select(std::uint32_t events, bool wanted);
  /// The same for presses of keys, which several may need at a time: for as long as one of them holds what it got.
  std::shared_ptr<void> selectKeyPresses();
  /// The raw event in an event of Qt's connection.
  std::optional<Event> read(const xcb_generic_event_t& event) const;

 private:
  X11Session session_;
  std::uint8_t opcode_ = 0;
  std::uint32_t selected_ = 0;
  std::weak_ptr<void> keyPresses_;
};
