#include "core/ui/palette_list.h"

#include <QEvent>
#include <QScrollBar>

#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

PaletteList::PaletteList(const QString& name, QWidget* parent) : QListView(parent) {
  setAccessibleName(name);
  setFrameShape(QFrame::NoFrame);
  setFocusPolicy(Qt::NoFocus);
  setEditTriggers(NoEditTriggers);
  setSelectionMode(SingleSelection);
  setUniformItemSizes(true);
  setMouseTracking(true);
  setVerticalScrollMode(ScrollPerPixel);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setAttribute(Qt::WA_MacShowFocusRect, false);
  viewport()->setAutoFillBackground(false);
  styleScrollBar();
}

void PaletteList::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange) styleScrollBar();
  QListView::changeEvent(event);
}

void PaletteList::styleScrollBar() {
  const QColor thumb = themeOf(*this).switchOff;
  const QString style =
      u"QScrollBar:vertical { width: 8px; background: transparent; margin: 0 }"
      "QScrollBar::handle:vertical { background: %1; border-radius: 2px; min-height: 32px; margin: 2px }"
      "QScrollBar::add-line, QScrollBar::sub-line { height: 0 }"
      "QScrollBar::add-page, QScrollBar::sub-page { background: transparent }"_s.arg(thumb.name());
  if (verticalScrollBar()->styleSheet() != style) verticalScrollBar()->setStyleSheet(style);
}
