#pragma once

#include <QString>

#include <cstdint>

#include "platform/key_events.h"

class Permissions;

/// Types text and single Command chords into the focused application. Stateless; main thread only.
///
/// The pacing is what applications are known to take: 20 UTF-16 units an event, 3 ms between events, 80 ms before a
/// Return so that a terminal has taken in the text.
class KeystrokeSender {
 public:
  KeystrokeSender(KeyEvents& events, Permissions& permissions) : events_(events), permissions_(permissions) {}

  /// Types `text`, then Return if asked. Without permission nothing is typed and the system's prompt is requested.
  /// `done` is called once all is typed, or with what went wrong; that may be before this returns. A requested stop
  /// ends the typing between two chunks.
  void send(const QString& text, bool pressReturn, KeyEvents::Done done = {}, std::stop_token stop = {});
  /// Posts one key press with only Command held (Ctrl on Linux), once the user's own hands have left the keyboard.
  void sendCommandKey(std::uint32_t keyCode, KeyEvents::Done done = {});

  /// The steps `send` performs.
  static KeySequence sequence(const QString& text, bool pressReturn);

 private:
  bool mayType();
  void perform(KeySequence steps, std::stop_token stop, KeyEvents::Done done);

  KeyEvents& events_;
  Permissions& permissions_;
};
