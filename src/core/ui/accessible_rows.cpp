#include "core/ui/accessible_rows.h"

#include <QListView>

namespace {

class AccessibleRow final : public QAccessibleInterface, public QAccessibleActionInterface {
 public:
  AccessibleRow(const AccessibleRows& rows, int row) : rows_(rows), row_(row) {}

  int row() const { return row_; }

  bool isValid() const override { return index().isValid(); }
  QObject* object() const override { return nullptr; }
  QWindow* window() const override { return rows_.window(); }
  QAccessibleInterface* parent() const override { return QAccessible::queryAccessibleInterface(&rows_.list()); }
  QAccessibleInterface* child(int) const override { return nullptr; }
  QAccessibleInterface* childAt(int, int) const override { return nullptr; }
  int childCount() const override { return 0; }
  int indexOfChild(const QAccessibleInterface*) const override { return -1; }

  QString text(QAccessible::Text kind) const override;
  void setText(QAccessible::Text, const QString&) override {}
  QRect rect() const override;
  QAccessible::Role role() const override;
  QAccessible::State state() const override;

  void* interface_cast(QAccessible::InterfaceType type) override {
    return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
  }
  QStringList actionNames() const override { return isEnabled() ? QStringList{pressAction()} : QStringList(); }
  void doAction(const QString& action) override {
    if (action == pressAction() && isEnabled()) Q_EMIT rows_.list().clicked(index());
  }
  QStringList keyBindingsForAction(const QString&) const override { return {}; }

 private:
  QModelIndex index() const {
    const QAbstractItemModel* model = rows_.list().model();
    return model ? model->index(row_, 0) : QModelIndex();
  }
  bool isEnabled() const { return index().flags().testFlag(Qt::ItemIsEnabled); }

  const AccessibleRows& rows_;
  int row_;
};

QString AccessibleRow::text(QAccessible::Text kind) const {
  if (kind == QAccessible::Description) return index().data(Qt::AccessibleDescriptionRole).toString();
  if (kind != QAccessible::Name) return {};
  const QString name = index().data(Qt::AccessibleTextRole).toString();
  return name.isEmpty() ? index().data(Qt::DisplayRole).toString() : name;
}

QRect AccessibleRow::rect() const {
  const QRect place = rows_.list().visualRect(index());
  return {rows_.list().viewport()->mapToGlobal(place.topLeft()), place.size()};
}

QAccessible::Role AccessibleRow::role() const { return isEnabled() ? QAccessible::ListItem : QAccessible::Separator; }

QAccessible::State AccessibleRow::state() const {
  const QListView& list = rows_.list();
  QAccessible::State state;
  if (!isValid() || !list.isVisible()) {
    state.invisible = true;
    return state;
  }
  state.selectable = state.focusable = isEnabled();
  state.selected = state.focused = list.currentIndex() == index();
  state.disabled = !isEnabled();
  state.offscreen = !list.viewport()->rect().intersects(list.visualRect(index()));
  return state;
}

}  // namespace

AccessibleRows::AccessibleRows(QListView* list) : QAccessibleWidget(list, QAccessible::List) {}

AccessibleRows::~AccessibleRows() {
  for (const QAccessible::Id id : rows_)
    if (id != 0) QAccessible::deleteAccessibleInterface(id);
}

QListView& AccessibleRows::list() const { return *static_cast<QListView*>(object()); }

int AccessibleRows::childCount() const { return list().model() ? list().model()->rowCount() : 0; }

QAccessibleInterface* AccessibleRows::child(int row) const {
  if (row < 0 || row >= childCount()) return nullptr;
  const auto place = static_cast<std::size_t>(row);
  if (rows_.size() <= place) rows_.resize(place + 1);
  if (rows_[place] == 0) rows_[place] = QAccessible::registerAccessibleInterface(new AccessibleRow(*this, row));
  return QAccessible::accessibleInterface(rows_[place]);
}

int AccessibleRows::indexOfChild(const QAccessibleInterface* child) const {
  const auto* row = dynamic_cast<const AccessibleRow*>(child);
  return row ? row->row() : -1;
}

QAccessibleInterface* AccessibleRows::childAt(int x, int y) const {
  return child(list().indexAt(list().viewport()->mapFromGlobal(QPoint(x, y))).row());
}
