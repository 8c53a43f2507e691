#include "app/menu/menu_list.h"

#include <QMouseEvent>

#include <utility>

using namespace Qt::StringLiterals;

MenuList::MenuList(QWidget* parent) : PaletteList(u"Menu"_s, parent) {
  setUniformItemSizes(false);
  // The selection is the hover: two shaded rows would be one too many.
  viewport()->setAttribute(Qt::WA_Hover, false);
}

// A row that slides under a pointer at rest is not pointed at.
void MenuList::mouseMoveEvent(QMouseEvent* event) {
  const QPoint pointer = event->globalPosition().toPoint();
  const bool hasMoved = std::exchange(lastPointer_, pointer) != pointer;
  const QModelIndex index = indexAt(event->position().toPoint());
  if (hasMoved && index.isValid()) Q_EMIT pointed(index.row());
}
