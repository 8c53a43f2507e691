#pragma once

#include "core/ui/row_delegate.h"

/// Paints one project folder of a ProjectListModel: name, path, agents, kind, when.
class ProjectRowDelegate : public RowDelegate {
  Q_OBJECT

 public:
  using RowDelegate::RowDelegate;

 protected:
  void paintContents(QPainter& painter, const QModelIndex& index, const RowLook& look) const override;
};
