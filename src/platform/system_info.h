#pragma once

#include <QString>

/// Facts of the system and the nouns that differ between systems in otherwise identical sentences.
class SystemInfo {
 public:
  virtual ~SystemInfo() = default;

  /// Name and version of the operating system, "Debian GNU/Linux 12" or "macOS 14.5".
  virtual QString osVersion() const = 0;
  /// "this Mac" or "this computer".
  virtual QString thisComputer() const = 0;
  /// "macOS" or "Linux".
  virtual QString systemName() const = 0;
  /// "Finder" or "your file manager", as in "drag from …".
  virtual QString fileManager() const = 0;
  /// "System Settings" or "Settings".
  virtual QString systemSettings() const = 0;
  /// Where the program's icon is: "menu bar" or "tray".
  virtual QString iconPlace() const { return QStringLiteral("tray"); }
  /// Whether the user asked for less motion.
  virtual bool isMotionReduced() const = 0;
  /// Who may own combinations that are refused, as far as the system tells ("openbox"); empty when it does not.
  virtual QString shortcutOwnerHint() const = 0;
  /// The names of the desktop, separated by colons ("ubuntu:GNOME"); empty where there is only one.
  virtual QString desktops() const { return {}; }
};
