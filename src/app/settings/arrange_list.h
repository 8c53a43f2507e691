#pragma once

#include "app/settings/sidebar_list.h"

class ToolRegistry;

/// The launcher's grid as a list: dragging a row, or Ctrl and an arrow, moves the tool; Ctrl+P or a double click pins
/// it.
class ArrangeList final : public SidebarList {
  Q_OBJECT

 public:
  explicit ArrangeList(ToolRegistry& registry);

 protected:
  void dropEvent(QDropEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void follow();
  QString idAt(int row) const;
  void settle();
  void carry(int by);
  void togglePin(int row);

  ToolRegistry& registry_;
};
