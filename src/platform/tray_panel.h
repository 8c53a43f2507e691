#pragma once

#include <QRect>

#include <functional>
#include <optional>

/// The desktop's panel that holds the tray, as far as icons in it care. As it stands, of a system that tints the icons
/// itself or does not tell. Main thread only.
class TrayPanel {
 public:
  virtual ~TrayPanel() = default;

  /// Whether the panel is dark behind the icon that stands at `icon`; none where nobody can tell.
  virtual std::optional<bool> isDark([[maybe_unused]] const QRect& icon) const { return std::nullopt; }
  /// Calls `appeared` each time that a tray comes up after us, with its panel perhaps not painted yet.
  // NOLINTNEXTLINE(performance-unnecessary-value-param): implementations keep it
  virtual void watch([[maybe_unused]] std::function<void()> appeared) {}
};
