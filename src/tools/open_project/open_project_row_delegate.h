#pragma once

#include "tools/projects/project_row_delegate.h"

/// Paints the rows of an OpenProjectModel: projects, or the commands that open one.
class OpenProjectRowDelegate final : public ProjectRowDelegate {
  Q_OBJECT

 public:
  using ProjectRowDelegate::ProjectRowDelegate;

 protected:
  void paintContents(QPainter& painter, const QModelIndex& index, const RowLook& look) const override;
};
