#include "tools/frequent_clis/tile_button.h"

#include <QPainter>

#include "core/ui/icon_tile.h"
#include "core/ui/theme.h"
#include "tools/frequent_clis/command_icon.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kTile = 36;
/// Room around the tile for the focus ring.
constexpr int kRing = 3;

}  // namespace

TileButton::TileButton(QWidget* parent) : QAbstractButton(parent) {
  setToolTip(u"Choose an icon"_s);
  setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
  setAttribute(Qt::WA_Hover);
}

void TileButton::setIcon(const CommandIcon& icon) {
  monogram_ = icon.monogram;
  color_ = icon.color;
  setAccessibleName(u"Icon: "_s + icon.name);
  update();
}

QSize TileButton::sizeHint() const { return {kTile + 2 * kRing, kTile + 2 * kRing}; }

void TileButton::paintEvent(QPaintEvent*) {
  const Theme& theme = themeOf(*this);
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  if (hasFocus() || underMouse()) {
    painter.setPen(QPen(hasFocus() ? theme.accent : theme.switchOff, 1.5));
    painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), 11, 11);
  }
  const QRectF tile = QRectF(rect()).adjusted(kRing, kRing, -kRing, -kRing);
  IconTile{.symbol = {}, .monogram = monogram_, .color = color_}.paint(painter, tile, theme);
}
