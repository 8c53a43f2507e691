#pragma once

#include <QList>
#include <QPoint>
#include <QRect>
#include <QString>

#include <optional>

class QSettings;

/// Where the user has put a panel, kept in the user defaults as "<panel>.originX" and "<panel>.originY".
class PanelPosition {
 public:
  PanelPosition(QSettings& defaults, QLatin1StringView panel) : defaults_(defaults), panel_(panel) {}

  /// The remembered top-left corner; none when there is none, or when a card of `card` (relative to that corner) would
  /// be out of reach on all of `screens`.
  std::optional<QPoint> origin(const QRect& card, const QList<QRect>& screens) const;
  void remember(QPoint origin);

 private:
  QString key(QLatin1StringView coordinate) const;

  QSettings& defaults_;
  QLatin1StringView panel_;
};

/// The part of each screen that no bar covers.
QList<QRect> screenGeometries();
