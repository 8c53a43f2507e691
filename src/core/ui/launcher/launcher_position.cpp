#include "core/ui/launcher/launcher_position.h"

#include <QSettings>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr auto kOriginX = "launcher.originX"_L1;
constexpr auto kOriginY = "launcher.originY"_L1;
/// As much of the card, in both directions, must be on a screen, so that it can be seen and dragged back.
constexpr int kReachable = 80;
/// Farther away there are no screens, and sums would overflow.
constexpr int kFarthest = 1'000'000;

bool isNear(int coordinate) { return coordinate > -kFarthest && coordinate < kFarthest; }

}  // namespace

std::optional<QPoint> LauncherPosition::origin(const QRect& card, const QList<QRect>& screens) const {
  bool isX = false;
  bool isY = false;
  const QPoint origin(defaults_.value(kOriginX).toInt(&isX), defaults_.value(kOriginY).toInt(&isY));
  if (!isX || !isY || !isNear(origin.x()) || !isNear(origin.y())) return std::nullopt;
  const auto shows = [placed = card.translated(origin)](const QRect& screen) {
    const QRect visible = placed.intersected(screen);
    return visible.width() >= kReachable && visible.height() >= kReachable;
  };
  if (!std::ranges::any_of(screens, shows)) return std::nullopt;
  return origin;
}

void LauncherPosition::remember(QPoint origin) {
  defaults_.setValue(kOriginX, origin.x());
  defaults_.setValue(kOriginY, origin.y());
}
