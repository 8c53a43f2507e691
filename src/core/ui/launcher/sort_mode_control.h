#pragma once

#include <QWidget>

#include "core/tools/tool_registry.h"

class QAbstractButton;

/// One segment a sort mode, the mode in force raised. In the launcher the segments are small symbols that leave the
/// keyboard to the panel; elsewhere they have labels and take the focus.
class SortModeControl : public QWidget {
  Q_OBJECT

 public:
  enum class Look { symbols, labels };

  SortModeControl(Look look, QWidget* parent);

  void setMode(ToolSortMode mode);

 Q_SIGNALS:
  void modeChosen(ToolSortMode mode);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  Look look_;
  std::vector<QAbstractButton*> segments_;
};
