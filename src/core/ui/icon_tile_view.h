#pragma once

#include <QWidget>

#include "core/ui/icon_tile.h"

/// An icon tile as a widget; only to look at, so that screen readers pass it by.
class IconTileView : public QWidget {
  Q_OBJECT

 public:
  explicit IconTileView(const IconTile& tile, QWidget* parent = nullptr);
  void setTile(const IconTile& tile);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  IconTile tile_;
};
