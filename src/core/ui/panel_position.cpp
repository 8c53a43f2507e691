#include "core/ui/panel_position.h"

#include <QGuiApplication>
#include <QScreen>
#include <QSettings>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr auto kOriginX = ".originX"_L1;
constexpr auto kOriginY = ".originY"_L1;
/// As much of the card, in both directions, must be on a screen, so that it can be seen and dragged back.
constexpr int kReachable = 80;
/// Farther away there are no screens, and sums would overflow.
constexpr int kFarthest = 1'000'000;

bool isNear(int coordinate) { return coordinate > -kFarthest && coordinate < kFarthest; }

}  // namespace

std::optional<QPoint> PanelPosition::origin(const QRect& card, const QList<QRect>& screens) const {
  bool isX = false;
  bool isY = false;
  const QPoint origin(defaults_.value(key(kOriginX)).toInt(&isX), defaults_.value(key(kOriginY)).toInt(&isY));
  if (!isX || !isY || !isNear(origin.x()) || !isNear(origin.y())) return std::nullopt;
  const auto shows = [placed = card.translated(origin)](const QRect& screen) {
    const QRect visible = placed.intersected(screen);
    return visible.width() >= kReachable && visible.height() >= kReachable;
  };
  if (!std::ranges::any_of(screens, shows)) return std::nullopt;
  return origin;
}

void PanelPosition::remember(QPoint origin) {
  defaults_.setValue(key(kOriginX), origin.x());
  defaults_.setValue(key(kOriginY), origin.y());
}

QString PanelPosition::key(QLatin1StringView coordinate) const { return panel_ + coordinate; }

QList<QRect> screenGeometries() {
  QList<QRect> geometries;
  for (const QScreen* screen : QGuiApplication::screens()) geometries.append(screen->availableGeometry());
  return geometries;
}
