#pragma once

#include "core/ui/palette_view.h"

class PaletteModel;
class PanelMenu;

/// The commands palette's card: its rows have a context menu.
class CLIPaletteView final : public PaletteView {
  Q_OBJECT

 public:
  explicit CLIPaletteView(PaletteModel& model, QWidget* parent = nullptr);

  /// Keys go there first.
  PanelMenu& menu() { return *menu_; }

 Q_SIGNALS:
  void editRequested(int row);

 private:
  void showMenu(const QPoint& position);

  PaletteModel& model_;
  PanelMenu* menu_;
};
