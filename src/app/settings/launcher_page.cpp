#include <QComboBox>
#include <QListWidget>
#include <QPushButton>

#include "app/settings/pages.h"
#include "app/settings/settings_form.h"

using namespace Qt::StringLiterals;

namespace {

QComboBox* makeSortBox(ToolRegistry& registry) {
  auto* box = new QComboBox;
  for (const ToolSortModeText& mode : toolSortModes()) box->addItem(QString::fromUtf16(mode.label));
  const auto follow = [box, &registry] { box->setCurrentIndex(static_cast<int>(registry.sortMode())); };
  follow();
  QObject::connect(&registry, &ToolRegistry::changed, box, follow);
  QObject::connect(box, &QComboBox::activated, box,
                   [&registry](int row) { registry.setSortMode(toolSortModes()[static_cast<std::size_t>(row)].mode); });
  return box;
}

/// The grid as a list: drag a row to move the tool, tick it to pin it.
class ArrangeList final : public QListWidget {
 public:
  explicit ArrangeList(ToolRegistry& registry) : registry_(registry) {
    setDragDropMode(QAbstractItemView::InternalMove);
    setFrameShape(QFrame::NoFrame);
    setAccessibleName(u"Order of the grid"_s);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    connect(&registry, &ToolRegistry::changed, this, &ArrangeList::follow);
    connect(this, &QListWidget::itemChanged, this, &ArrangeList::pinChanged);
    follow();
  }

 protected:
  void dropEvent(QDropEvent* event) override {
    QListWidget::dropEvent(event);
    settle();
  }

 private:
  void follow() {
    const QSignalBlocker blocker(this);
    const int current = currentRow();
    clear();
    for (const ToolItem& entry : registry_.items()) {
      auto* item = new QListWidgetItem(entry.tool->name(), this);
      item->setData(Qt::UserRole, entry.id());
      item->setSizeHint({0, 32});
      item->setCheckState(registry_.isPinned(entry.id()) ? Qt::Checked : Qt::Unchecked);
    }
    setCurrentRow(current);
    setFixedHeight(32 * count() + 4);
  }

  /// Takes the list's order over into the registry: pinned ids first, as the grid shows them.
  void settle() {
    QStringList pinned;
    QStringList rest;
    for (int index = 0; index < count(); ++index) {
      const QString id = item(index)->data(Qt::UserRole).toString();
      (registry_.isPinned(id) ? pinned : rest).append(id);
    }
    // After the drop has been finished by the view, which still holds items.
    QMetaObject::invokeMethod(
        this, [this, pinned, rest] { registry_.applyManualOrder(pinned, rest); }, Qt::QueuedConnection);
  }

  void pinChanged(const QListWidgetItem* item) {
    const QString id = item->data(Qt::UserRole).toString();
    if ((item->checkState() == Qt::Checked) == registry_.isPinned(id)) return;
    QMetaObject::invokeMethod(this, [this, id] { registry_.togglePin(id); }, Qt::QueuedConnection);
  }

  ToolRegistry& registry_;
};

}  // namespace

QWidget* makeLauncherPage(AppContext& context, SettingsSelection&) {
  auto* page = new SettingsPage;
  SettingsSection* order = page->addSection(u"Order"_s);
  order->addRow(u"Sort by"_s, u"How the grid is ordered — pinned tools always come first"_s,
                makeSortBox(context.registry));
  SettingsSection* grid = page->addSection(u"Arrange your grid"_s);
  grid->addWide(new ArrangeList(context.registry));
  page->addNote(
      u"Drag to reorder (switches to Manual). Pinned tools always lead the grid — and the 1–9 keys follow the order."_s);
  auto* reset = new QPushButton(u"Reset Arrangement"_s);
  QObject::connect(reset, &QPushButton::clicked, reset, [&context] { context.registry.resetArrangement(); });
  SettingsSection* defaults = page->addSection({});
  defaults->addRow(u"Defaults"_s, u"Clears pins and order."_s, reset);
  reset->setAccessibleName(reset->text());
  return page;
}
