#pragma once

#include <QList>
#include <QPoint>
#include <QRect>

#include <optional>

class QSettings;

/// Where the user has put the launcher, kept in the user defaults as "launcher.originX" and "launcher.originY".
class LauncherPosition {
 public:
  explicit LauncherPosition(QSettings& defaults) : defaults_(defaults) {}

  /// The remembered top-left corner; none when there is none, or when a card of `card` (relative to that corner) would
  /// be out of reach on all of `screens`.
  std::optional<QPoint> origin(const QRect& card, const QList<QRect>& screens) const;
  void remember(QPoint origin);

 private:
  QSettings& defaults_;
};
