#pragma once

#include "core/ui/row_delegate.h"

/// Draws the menu's rows: symbol, title, and at the trailing edge the shortcut's keys or why they do not work.
class MenuRowDelegate final : public RowDelegate {
  Q_OBJECT

 public:
  static constexpr int kRowHeight = 34;
  static constexpr int kSeparatorHeight = 9;

  using RowDelegate::RowDelegate;

  QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

 protected:
  void paintContents(QPainter& painter, const QModelIndex& index, const RowLook& look) const override;
};
