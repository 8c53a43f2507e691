#include "core/picker/choice_picker_model.h"

void ChoicePickerModel::select(int index) {
  if (index < 0 || index >= rowCount() || index == selectionIndex_) return;
  selectionIndex_ = index;
  Q_EMIT changed();
}

void ChoicePickerModel::moveSelection(int delta) {
  const int count = rowCount();
  if (count > 0) select(((selectionIndex_ + delta) % count + count) % count);
}

int ChoicePickerModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(choices_.size());
}

QVariant ChoicePickerModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid() || index.row() >= rowCount()) return {};
  const Choice& choice = choices_[static_cast<std::size_t>(index.row())];
  switch (role) {
    case LabelRole:
      return choice.label;
    case SymbolRole:
      return choice.symbol;
    case DescriptionRole:
    case Qt::AccessibleDescriptionRole:
      return choice.description;
    default:
      return {};
  }
}
