#include "app/menu/menu_placement.h"

#include <qnamespace.h>

#include <algorithm>

namespace {

/// Between the card and the icon, and between the card and the edges of the screen.
constexpr int kGap = 6;

const MenuScreen* screenWith(QPoint point, std::span<const MenuScreen> screens) {
  const auto found = std::ranges::find_if(screens, [&](const auto& screen) { return screen.geometry.contains(point); });
  return found == screens.end() ? nullptr : &*found;
}

/// The edge of the screen at which the panel with the icon lies.
Qt::Edge panelEdge(const QRect& icon, const MenuScreen& screen) {
  const QPoint middle = icon.center();
  if (middle.y() < screen.available.top()) return Qt::TopEdge;
  if (middle.y() > screen.available.bottom()) return Qt::BottomEdge;
  if (middle.x() < screen.available.left()) return Qt::LeftEdge;
  if (middle.x() > screen.available.right()) return Qt::RightEdge;
  // A panel that reserves no room: the nearest edge, sideways only where the icon is far from top and bottom.
  const int above = icon.top() - screen.geometry.top();
  const int below = screen.geometry.bottom() - icon.bottom();
  const int left = icon.left() - screen.geometry.left();
  const int right = screen.geometry.bottomRight().x() - icon.right();
  if (std::min(above, below) > 2 * icon.height() && std::min(left, right) < icon.width())
    return left < right ? Qt::LeftEdge : Qt::RightEdge;
  return above <= below ? Qt::TopEdge : Qt::BottomEdge;
}

/// What of `area` lies on the screen's side of the icon.
QRect roomBeside(const QRect& icon, Qt::Edge edge, QRect area) {
  switch (edge) {
    case Qt::TopEdge:
      area.setTop(std::max(area.top(), icon.bottom() + 1 + kGap));
      break;
    case Qt::BottomEdge:
      area.setBottom(std::min(area.bottom(), icon.top() - 1 - kGap));
      break;
    case Qt::LeftEdge:
      area.setLeft(std::max(area.left(), icon.right() + 1 + kGap));
      break;
    case Qt::RightEdge:
      area.setRight(std::min(area.right(), icon.left() - 1 - kGap));
      break;
  }
  return area;
}

QRect movedInto(QRect card, const QRect& room) {
  card.moveLeft(std::clamp(card.left(), room.left(), std::max(room.left(), room.right() + 1 - card.width())));
  card.moveTop(std::clamp(card.top(), room.top(), std::max(room.top(), room.bottom() + 1 - card.height())));
  return card;
}

QRect cardAt(const QRect& icon, QSize wanted, const MenuScreen& screen, const QRect& area) {
  const Qt::Edge edge = panelEdge(icon, screen);
  const QRect room = roomBeside(icon, edge, area);
  QRect card(QPoint(), wanted.boundedTo(room.size()));
  const bool isBeside = edge == Qt::LeftEdge || edge == Qt::RightEdge;
  card.moveLeft(icon.center().x() - card.width() / 2);
  card.moveTop(isBeside ? icon.top() : edge == Qt::TopEdge ? room.top() : room.bottom() + 1 - card.height());
  return movedInto(card, room);
}

}  // namespace

QRect menuCard(QSize wanted, const QRect& icon, QPoint pointer, std::span<const MenuScreen> screens) {
  if (screens.empty()) return {};
  const MenuScreen* iconScreen = icon.isEmpty() ? nullptr : screenWith(icon.center(), screens);
  const MenuScreen* pointerScreen = screenWith(pointer, screens);
  const MenuScreen& screen = iconScreen ? *iconScreen : pointerScreen ? *pointerScreen : screens.front();
  const QRect area = screen.available.adjusted(kGap, kGap, -kGap, -kGap);
  if (iconScreen) return cardAt(icon, wanted, screen, area);
  if (pointerScreen && !screen.available.contains(pointer)) return cardAt({pointer, QSize(1, 1)}, wanted, screen, area);
  QRect card(QPoint(), wanted.boundedTo(area.size()));
  card.moveTopRight(area.topRight());
  return card;
}
