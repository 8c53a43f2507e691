#pragma once

#include "core/ui/row_delegate.h"

/// Rows of a choice picker: a symbol, what is chosen, what that means, and the digit that chooses it.
class ChoiceRowDelegate final : public RowDelegate {
  Q_OBJECT

 public:
  using RowDelegate::RowDelegate;

  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

 protected:
  void paintContents(QPainter& painter, const QModelIndex& index, const RowLook& look) const override;
};
