#pragma once

#include "core/ui/row_delegate.h"

/// Paints one conversation: agent, title, when, branch; and above the first of a group its date and its project.
class VibeHistoryRowDelegate final : public RowDelegate {
  Q_OBJECT

 public:
  using RowDelegate::RowDelegate;

 protected:
  void paintContents(QPainter& painter, const QModelIndex& index, const RowLook& look) const override;
  int headingHeight(const QModelIndex& index) const override;
  void paintHeading(QPainter& painter, const QModelIndex& index, const QRect& area, const Theme& theme) const override;
};
