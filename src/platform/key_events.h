#pragma once

#include <QString>

#include <chrono>
#include <cstdint>
#include <expected>
#include <functional>
#include <stop_token>
#include <variant>
#include <vector>

/// Types up to a chunk of text: one key-down and key-up pair that carries it.
struct TypeText {
  QString text;
  bool operator==(const TypeText&) const = default;
};

/// Waits between two steps; measured from the end of the step before on an absolute clock.
struct Pause {
  std::chrono::milliseconds duration;
  bool operator==(const Pause&) const = default;
};

/// Presses and releases one key with exactly the given Carbon modifiers held. Command is the modifier of applications'
/// own shortcuts, copy and paste: ⌘ on macOS, Ctrl elsewhere. The key is the one that has the code's letter on the
/// current layout, else the one at its position.
struct PressKey {
  /// macOS virtual key code.
  std::uint32_t keyCode = 0;
  std::uint32_t carbonModifiers = 0;
  bool operator==(const PressKey&) const = default;
};

using KeyStep = std::variant<TypeText, Pause, PressKey>;
using KeySequence = std::vector<KeyStep>;

/// Why not all of a sequence was typed.
struct KeyEventError {
  enum class Kind {
    /// Single steps failed; the rest was typed.
    incomplete,
    /// Nothing was typed: keys cannot be made, or they would go to somebody who must not get them, a locked screen say.
    refused,
    /// Nothing was typed; the user has been asked to allow it.
    notPermitted,
  };
  /// A sentence without its full stop.
  QString reason;
  Kind kind = Kind::incomplete;
  /// What is left of the text, where the keys were not taken any more from there on.
  QString rest = {};

  QString description() const { return reason; }
};

/// Synthetic keyboard events into whatever has the keyboard focus.
class KeyEvents {
 public:
  using Done = std::function<void(std::expected<void, KeyEventError>)>;

  virtual ~KeyEvents() = default;

  /// Performs the steps in order off the main thread, sequences one after the other, and calls `done` on the main
  /// thread. Modifiers that the user holds do not reach the typed text and are as they were afterwards. A step that
  /// cannot be performed is skipped; the first such failure is what `done` gets. While another program keeps all keys
  /// to itself, as a password field or a locked screen does, the whole sequence is refused before anything is typed.
  /// Once a stop is requested no further step is begun, which is a failure too.
  virtual void perform(KeySequence steps, std::stop_token stop, Done done) = 0;
  void perform(KeySequence steps, Done done) { perform(std::move(steps), {}, std::move(done)); }
};
