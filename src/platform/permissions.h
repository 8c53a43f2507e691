#pragma once

#include <QString>

#include <array>

/// What a user may have to allow before this process can do it.
enum class Permission {
  /// Typing into other applications and copying what is selected there.
  accessibility,
  /// Reading the screen.
  screenRecording,
};

struct PermissionName {
  Permission permission;
  QLatin1StringView name;
};

inline constexpr std::array kPermissionNames = {
    PermissionName{Permission::accessibility, QLatin1StringView("Accessibility")},
    PermissionName{Permission::screenRecording, QLatin1StringView("Screen Recording")},
};

enum class PermissionState {
  granted,
  /// The user can change that.
  notGranted,
  /// Nobody can in this session.
  unavailable,
};

/// The file of Vantle's folder in which a desktop's word for "may type" is kept, where it gives one. Whoever has that
/// word may type, too.
inline constexpr QLatin1StringView kTypingPermissionFile{"typing-permission"};

/// What the system lets this process do. Main thread only.
class Permissions {
 public:
  virtual ~Permissions() = default;

  /// As it is at this moment; cheap enough to be asked once a second.
  virtual PermissionState state(Permission permission) const = 0;
  /// One sentence that says what is missing and what to do about it; empty when nothing is. A permission that is
  /// granted has one too where it does not reach everything.
  virtual QString remedy(Permission permission) const = 0;
  /// The same for global shortcuts, which need no permission where a program can have them at all.
  virtual QString shortcutsRemedy() const { return {}; }
  /// Waits until all of the above can be told, where the system takes its time with it: half a second at most. For
  /// those who look only once.
  virtual void settle() {}
  /// Makes the system show its own prompt, where it has one and has not been told no before.
  virtual void request([[maybe_unused]] Permission permission) {}
  /// Whether the system's settings have a page for it, which `openSettingsPage` shows.
  virtual bool hasSettingsPage([[maybe_unused]] Permission permission) const { return false; }
  virtual void openSettingsPage([[maybe_unused]] Permission permission) {}

  /// Whether synthetic key events reach other applications.
  bool isAccessibilityTrusted() const { return state(Permission::accessibility) == PermissionState::granted; }
  void promptForAccessibility() { request(Permission::accessibility); }
};
