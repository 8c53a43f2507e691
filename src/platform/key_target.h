#pragma once

#include <cstdint>

/// Names the window (or application) that the user's keys go to.
enum class KeyTarget : std::uint64_t { none = 0 };

/// Knows where keys go. As it stands, of a system that does not tell. Main thread only.
class KeyTargets {
 public:
  virtual ~KeyTargets() = default;

  /// Never a panel of this program; `none` when nothing is in front, or nobody can tell.
  virtual KeyTarget current() const { return KeyTarget::none; }
};
