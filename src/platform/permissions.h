#pragma once

/// What the system lets this process do. Main thread only.
class Permissions {
 public:
  virtual ~Permissions() = default;

  /// Whether synthetic key events reach other applications.
  virtual bool isAccessibilityTrusted() const = 0;
  /// Makes the system show its own permission prompt, where it has one.
  virtual void promptForAccessibility() = 0;
};
