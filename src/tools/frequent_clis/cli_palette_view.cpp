#include "tools/frequent_clis/cli_palette_view.h"

#include <QAccessible>
#include <QLabel>
#include <QStackedLayout>
#include <QVBoxLayout>

#include "core/ui/footer_hints.h"
#include "core/ui/palette_list.h"
#include "core/ui/search_field.h"
#include "core/ui/theme.h"
#include "tools/frequent_clis/cli_row_delegate.h"
#include "tools/frequent_clis/palette_model.h"
#include "tools/frequent_clis/row_menu.h"

using namespace Qt::StringLiterals;

namespace {

/// The list never has the focus, yet a screen reader shall speak the row that Return would choose.
void announceSelection(PaletteList& list, int row) {
  if (!QAccessible::isActive()) return;
  QAccessibleEvent event(&list, QAccessible::Focus);
  event.setChild(row);
  QAccessible::updateAccessibility(&event);
}

}  // namespace

CLIPaletteView::CLIPaletteView(PaletteModel& model, QWidget* parent)
    : QWidget(parent),
      model_(model),
      search_(new SearchField(u"Type to filter…"_s)),
      list_(new PaletteList(u"Commands"_s)),
      empty_(new QLabel(u"No matching commands"_s)),
      menu_(new RowMenu(u"Edit Command…"_s, {u"⌘"_s, u"E"_s}, this)) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins({});
  layout->setSpacing(0);
  layout->addWidget(search_);
  layout->addWidget(makeResults(), 1);
  layout->addWidget(new FooterHints({{{u"↩"_s}, u"= runs immediately"_s}, {{u"esc"_s}, u"close"_s}}));
  connectList();
  connect(&model_, &PaletteModel::changed, this, &CLIPaletteView::follow);
  follow();
}

QWidget* CLIPaletteView::makeResults() {
  list_->setModel(&model_);
  list_->setItemDelegate(new CLIRowDelegate(list_));
  empty_->setAlignment(Qt::AlignCenter);
  empty_->setFont(Theme::rowFont());
  empty_->setForegroundRole(QPalette::PlaceholderText);
  auto* results = new QWidget;
  // A stacked layout has no margins of its own.
  auto* inset = new QVBoxLayout(results);
  inset->setContentsMargins(Theme::kGrid, 0, Theme::kGrid, Theme::kGrid);
  inset->addLayout(results_ = new QStackedLayout);
  results_->addWidget(list_);
  results_->addWidget(empty_);
  return results;
}

void CLIPaletteView::connectList() {
  connect(list_, &QListView::clicked, this, [this](const QModelIndex& index) { Q_EMIT chosen(index.row()); });
  connect(list_->selectionModel(), &QItemSelectionModel::currentChanged, this,
          [this](const QModelIndex& current) { model_.select(current.row()); });
  list_->setContextMenuPolicy(Qt::CustomContextMenu);
  connect(list_, &QWidget::customContextMenuRequested, this, &CLIPaletteView::showMenu);
  connect(menu_, &RowMenu::triggered, this, [this] { Q_EMIT editRequested(model_.selectionIndex()); });
}

void CLIPaletteView::follow() {
  search_->setText(model_.query());
  if (model_.rowCount() == 0) {
    results_->setCurrentWidget(empty_);
    return;
  }
  results_->setCurrentWidget(list_);
  const QModelIndex index = model_.index(model_.selectionIndex());
  list_->setCurrentIndex(index);
  list_->scrollTo(index);
  announceSelection(*list_, index.row());
}

void CLIPaletteView::showMenu(const QPoint& position) {
  const QModelIndex index = list_->indexAt(position);
  if (!index.isValid()) return;
  model_.select(index.row());
  menu_->popup(list_->viewport()->mapTo(this, position));
}

bool CLIPaletteView::closeMenu() {
  if (menu_->isHidden()) return false;
  menu_->hide();
  return true;
}

void CLIPaletteView::hideEvent(QHideEvent* event) {
  closeMenu();
  QWidget::hideEvent(event);
}
