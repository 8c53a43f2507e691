#pragma once

#include "core/ui/row_delegate.h"

/// Paints the rows of a BulkUploadModel: what kind of thing it is, its name, its size.
class ItemRowDelegate final : public RowDelegate {
  Q_OBJECT

 public:
  using RowDelegate::RowDelegate;

 protected:
  void paintContents(QPainter& painter, const QModelIndex& index, const RowLook& look) const override;
};
