#pragma once

#include "core/ui/row_delegate.h"

/// Paints one command of the palette: icon tile, title, command, and a Return cap when it runs at once.
class CLIRowDelegate final : public RowDelegate {
  Q_OBJECT

 public:
  using RowDelegate::RowDelegate;

 protected:
  void paintContents(QPainter& painter, const QModelIndex& index, const RowLook& look) const override;
};
