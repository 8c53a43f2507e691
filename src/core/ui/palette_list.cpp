#include "core/ui/palette_list.h"

#include "core/ui/accessible_rows.h"

namespace {

QAccessibleInterface* accessibleList(const QString&, QObject* object) {
  auto* list = qobject_cast<PaletteList*>(object);
  return list ? new AccessibleRows(list) : nullptr;
}

}  // namespace

PaletteList::PaletteList(const QString& name, QWidget* parent) : QListView(parent) {
  static const bool installed = (QAccessible::installFactory(accessibleList), true);
  Q_UNUSED(installed)
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

void PaletteList::select(int row) {
  const QModelIndex index = model()->index(row, 0);
  setCurrentIndex(index);
  scrollTo(index);
  if (!QAccessible::isActive()) return;
  QAccessibleEvent event(this, QAccessible::Focus);
  event.setChild(row);
  QAccessible::updateAccessibility(&event);
}
