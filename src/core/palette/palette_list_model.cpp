#include "core/palette/palette_list_model.h"

void PaletteListModel::setQuery(const QString& query) {
  query_ = query;
  refilter();
}

void PaletteListModel::select(int index) {
  if (index < 0 || index >= rowCount() || index == selectionIndex_) return;
  selectionIndex_ = index;
  Q_EMIT changed();
}

void PaletteListModel::moveSelection(int delta) {
  const int count = rowCount();
  if (count > 0) select(((selectionIndex_ + delta) % count + count) % count);
}

void PaletteListModel::restart() {
  query_.clear();
  refilter();
}

void PaletteListModel::refilter() {
  beginResetModel();
  collectRows();
  selectionIndex_ = 0;
  endResetModel();
  Q_EMIT changed();
}
