#pragma once

/// A palette's window, as its controller knows it. Main thread only.
class PalettePresenter {
 public:
  virtual ~PalettePresenter() = default;

  /// Shows the panel on the active screen, with the keyboard. Called again while it is shown, it stays.
  virtual void present() = 0;
  /// Does what the first `present` would otherwise have to do before the panel is seen.
  virtual void warmUp() = 0;
  virtual void dismiss() = 0;
};
