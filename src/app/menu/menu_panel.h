#pragma once

/// The menu's window, as its controller knows it. Main thread only.
class MenuPanel {
 public:
  virtual ~MenuPanel() = default;

  /// Shows the menu at the tray icon, with the keyboard.
  virtual void present() = 0;
  /// Gives the keyboard back and hides.
  virtual void dismiss() = 0;
};
