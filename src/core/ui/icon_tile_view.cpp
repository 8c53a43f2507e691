#include "core/ui/icon_tile_view.h"

#include <QPainter>

#include "core/ui/theme.h"

IconTileView::IconTileView(const IconTile& tile, QWidget* parent) : QWidget(parent), tile_(tile) {
  setFixedSize(Theme::kIconTile, Theme::kIconTile);
}

void IconTileView::setTile(const IconTile& tile) {
  tile_ = tile;
  update();
}

void IconTileView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  tile_.paint(painter, rect(), themeOf(*this));
}
