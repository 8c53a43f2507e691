#pragma once

#include <QWidget>

#include "app/app_context.h"
#include "core/ui/launcher/tool_grid_controller.h"

class PageDots;
class ToolGrid;

/// The launcher's grid to be arranged in the settings: tiles are dragged and pinned with the pointer; with the keyboard
/// here, arrows choose a tile, with Ctrl they carry it, Ctrl+P pins it and a digit moves it to that place.
class ArrangeGrid : public QWidget {
  Q_OBJECT

 public:
  explicit ArrangeGrid(AppContext& context);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;

 private:
  QWidget* makeFooter();
  void refresh();

  ToolGridController controller_;
  ToolGrid* grid_;
  PageDots* dots_;
};
