#pragma once

#include <QString>

#include <expected>

/// Why the system does not start the program at login although the user wants it.
struct LoginItemError {
  /// The system's own words, "Permission denied" say.
  QString reason;

  QString description() const { return QStringLiteral("Open at login could not be changed: %1").arg(reason); }
};

/// Whether the system starts this program when the user logs in. The system keeps it, so that what the user changes
/// there shows here. As it stands, of a system that cannot. Main thread only.
class LoginItem {
 public:
  enum class State {
    off,
    on,
    /// Wanted, but the user has to allow it in the system's settings.
    awaitsApproval,
    unavailable,
  };

  virtual ~LoginItem() = default;

  virtual State state() const { return State::unavailable; }
  virtual std::expected<void, LoginItemError> setEnabled([[maybe_unused]] bool enabled) {
    return std::unexpected(LoginItemError{QStringLiteral("this system has no login items")});
  }
  /// Opens the system's settings where the user allows what awaits approval.
  virtual void openApproval() {}
};
