#include "core/ui/choice_picker_view.h"

#include <QLabel>
#include <QVBoxLayout>

#include "core/picker/choice_picker_controller.h"
#include "core/ui/choice_row_delegate.h"
#include "core/ui/palette_list.h"
#include "core/ui/panel_header.h"
#include "core/ui/theme.h"

ChoicePickerView::ChoicePickerView(ChoicePickerController& controller, const Texts& texts, QWidget* parent)
    : QWidget(parent), model_(controller.model()), list_(new PaletteList(texts.header)) {
  setWindowTitle(texts.title);
  list_->setModel(&model_);
  list_->setItemDelegate(new ChoiceRowDelegate(list_));
  auto* inset = new QVBoxLayout;
  inset->setContentsMargins(Theme::kGrid, 0, Theme::kGrid, Theme::kGrid);
  inset->addWidget(list_);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins({});
  column->setSpacing(0);
  column->addWidget(makePanelHeader(texts.symbol, texts.header));
  column->addLayout(inset, 1);
  connect(list_, &QListView::clicked, this,
          [&controller](const QModelIndex& index) { controller.chooseRow(index.row()); });
  connect(list_->selectionModel(), &QItemSelectionModel::currentChanged, this,
          [this](const QModelIndex& current) { model_.select(current.row()); });
  connect(&model_, &ChoicePickerModel::changed, this, &ChoicePickerView::follow);
  follow();
}

void ChoicePickerView::follow() { list_->select(model_.selectionIndex()); }
