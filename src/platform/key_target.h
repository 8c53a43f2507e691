#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>

/// Names the window (or application) that the user's keys go to.
enum class KeyTarget : std::uint64_t { none = 0 };

/// A moment by the clock of the display; it runs over after weeks.
enum class InputTime : std::uint32_t {};

/// Notices that a key or a button is pressed, by whatever hand, from the moment on that it was made.
class InputWatch {
 public:
  virtual ~InputWatch() = default;

  /// When that happened first; nothing as long as it has not.
  virtual std::optional<InputTime> firstTouch() = 0;
};

/// Tells of Escape for as long as it lives.
class EscapeWatch {
 public:
  virtual ~EscapeWatch() = default;
};

/// Knows where keys go. As it stands, of a system that does not tell. Main thread only.
class KeyTargets {
 public:
  virtual ~KeyTargets() = default;

  /// Never a panel of this program; `none` when nothing is in front, or nobody can tell.
  virtual KeyTarget current() const { return KeyTarget::none; }
  /// Null where nobody can tell.
  virtual std::unique_ptr<InputWatch> watchInput() const { return nullptr; }
  /// Calls `pressed`, on a later turn of the event loop, after each press of Escape without modifiers that is not for a
  /// panel of ours. Whoever has the keys gets it too. Null where nobody can tell.
  virtual std::unique_ptr<EscapeWatch> watchEscape(const std::function<void()>& /*pressed*/) const { return nullptr; }
};
