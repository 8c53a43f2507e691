#pragma once

#include <QWidget>

#include "core/tools/tool_registry.h"

class QAbstractButton;

/// One small segment a sort mode, the mode in force raised.
class SortModeControl : public QWidget {
  Q_OBJECT

 public:
  explicit SortModeControl(QWidget* parent);

  void setMode(ToolSortMode mode);

 Q_SIGNALS:
  void modeChosen(ToolSortMode mode);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  std::vector<QAbstractButton*> segments_;
};
