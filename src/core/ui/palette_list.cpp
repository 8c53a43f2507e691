#include "core/ui/palette_list.h"

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
}
