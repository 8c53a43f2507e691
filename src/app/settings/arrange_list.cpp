#include "app/settings/arrange_list.h"

#include <QDropEvent>
#include <QKeyEvent>

#include "core/tools/tool_registry.h"
#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

constexpr int kWidth = 560;
constexpr int kIDRole = Qt::UserRole + 16;

}  // namespace

ArrangeList::ArrangeList(ToolRegistry& registry) : SidebarList(u"Order of the grid"_s, kWidth), registry_(registry) {
  setMaximumWidth(QWIDGETSIZE_MAX);
  setDragDropMode(QAbstractItemView::InternalMove);
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  connect(&registry, &ToolRegistry::changed, this, &ArrangeList::follow);
  connect(this, &QListWidget::itemDoubleClicked, this, [this](QListWidgetItem* item) { togglePin(row(item)); });
  follow();
}

void ArrangeList::follow() {
  const QString current = idAt(currentRow());
  clear();
  for (const ToolItem& entry : registry_.items()) {
    const bool pinned = registry_.isPinned(entry.id());
    addEntry(entry.tool->name(), pinned ? u"pin.fill"_s : entry.tool->icon());
    const int row = count() - 1;
    item(row)->setData(kIDRole, entry.id());
    setDimmed(row, !registry_.isEnabled(entry.id()));
    if (pinned) item(row)->setToolTip(u"Pinned to the front of the grid"_s);
    if (entry.id() == current) setCurrentRow(row);
  }
  setFixedHeight(count() * sizeHintForRow(0) + Theme::kGrid);
}

QString ArrangeList::idAt(int row) const { return row < 0 ? QString() : item(row)->data(kIDRole).toString(); }

void ArrangeList::dropEvent(QDropEvent* event) {
  SidebarList::dropEvent(event);
  // The view still holds on to its items: the registry's answer, which fills the list anew, waits for the next turn.
  QMetaObject::invokeMethod(this, &ArrangeList::settle, Qt::QueuedConnection);
}

void ArrangeList::settle() {
  QStringList pinned;
  QStringList rest;
  for (int row = 0; row < count(); ++row) (registry_.isPinned(idAt(row)) ? pinned : rest).append(idAt(row));
  registry_.applyManualOrder(pinned, rest);
}

void ArrangeList::keyPressEvent(QKeyEvent* event) {
  const bool command = event->modifiers() == Qt::ControlModifier;
  if (command && event->key() == Qt::Key_Up)
    carry(-1);
  else if (command && event->key() == Qt::Key_Down)
    carry(+1);
  else if (command && event->key() == Qt::Key_P)
    togglePin(currentRow());
  else
    SidebarList::keyPressEvent(event);
}

void ArrangeList::carry(int by) {
  const int from = currentRow();
  const int to = from + by;
  if (from < 0 || to < 0 || to >= count()) return;
  insertItem(to, takeItem(from));
  setCurrentRow(to);
  settle();
}

void ArrangeList::togglePin(int row) {
  if (row >= 0) registry_.togglePin(idAt(row));
}
