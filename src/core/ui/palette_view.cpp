#include "core/ui/palette_view.h"

#include <QLabel>
#include <QStackedLayout>
#include <QVBoxLayout>

#include "core/palette/palette_list_model.h"
#include "core/ui/palette_list.h"
#include "core/ui/row_delegate.h"
#include "core/ui/search_field.h"
#include "core/ui/theme.h"

PaletteView::PaletteView(PaletteListModel& model, RowDelegate* delegate, Texts texts, QWidget* parent)
    : QWidget(parent),
      model_(model),
      search_(new SearchField(texts.placeholder)),
      list_(new PaletteList(texts.listName)),
      empty_(new QLabel),
      footer_(new FooterHints(std::move(texts.hints))) {
  setWindowTitle(texts.title);
  delegate->setParent(list_);
  list_->setModel(&model_);
  list_->setItemDelegate(delegate);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins({});
  layout->setSpacing(0);
  layout->addWidget(search_);
  layout->addWidget(makeResults(), 1);
  layout->addWidget(footer_);
  connectList();
  connect(&model_, &PaletteListModel::changed, this, &PaletteView::follow);
  follow();
}

QWidget* PaletteView::makeResults() {
  empty_->setAlignment(Qt::AlignCenter);
  empty_->setFont(Theme::rowFont());
  empty_->setForegroundRole(QPalette::PlaceholderText);
  auto* results = new QWidget;
  // A stacked layout has no margins of its own.
  auto* inset = new QHBoxLayout(results);
  inset->setContentsMargins(Theme::kGrid, 0, Theme::kGrid, Theme::kGrid);
  inset->setSpacing(Theme::kGrid);
  inset->addLayout(results_ = new QStackedLayout, 1);
  results_->addWidget(list_);
  results_->addWidget(empty_);
  return results;
}

void PaletteView::connectList() {
  connect(list_, &QListView::clicked, this, [this](const QModelIndex& index) { Q_EMIT chosen(index.row()); });
  connect(list_->selectionModel(), &QItemSelectionModel::currentChanged, this,
          [this](const QModelIndex& current) { model_.select(current.row()); });
}

void PaletteView::addBelow(QWidget* widget) {
  static_cast<QVBoxLayout*>(layout())->insertWidget(layout()->count() - 1, widget);
}

void PaletteView::addBeside(QWidget* widget) { results_->parentWidget()->layout()->addWidget(widget); }

void PaletteView::follow() {
  search_->setText(model_.query());
  if (model_.rowCount() == 0) {
    empty_->setText(model_.emptyText());
    results_->setCurrentWidget(empty_);
    return;
  }
  results_->setCurrentWidget(list_);
  list_->select(model_.selectionIndex());
}
