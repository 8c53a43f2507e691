#pragma once

#include "core/ui/palette_list.h"

/// The menu's rows. The pointer selects what it moves over; at rest it leaves the selection to the keys.
class MenuList final : public PaletteList {
  Q_OBJECT

 public:
  explicit MenuList(QWidget* parent = nullptr);

 Q_SIGNALS:
  void pointed(int row);

 protected:
  void mouseMoveEvent(QMouseEvent* event) override;

 private:
  QPoint lastPointer_;
};
