#pragma once

#include "tools/projects/project_row_delegate.h"

/// Paints project folders as other palettes do, and the rows that are none with a symbol; a notice stands above a row
/// that has one.
class InjectMDRowDelegate final : public ProjectRowDelegate {
  Q_OBJECT

 public:
  using ProjectRowDelegate::ProjectRowDelegate;

 protected:
  void paintContents(QPainter& painter, const QModelIndex& index, const RowLook& look) const override;
  int headingHeight(const QModelIndex& index) const override;
  void paintHeading(QPainter& painter, const QModelIndex& index, const QRect& area, const Theme& theme) const override;
};
