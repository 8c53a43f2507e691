#pragma once

#include "core/ui/palette_view.h"

class PaletteModel;
class RowMenu;

/// The commands palette's card: its rows have a context menu.
class CLIPaletteView final : public PaletteView {
  Q_OBJECT

 public:
  explicit CLIPaletteView(PaletteModel& model, QWidget* parent = nullptr);

  /// Closes the context menu; false when there was none open.
  bool closeMenu();

 Q_SIGNALS:
  void editRequested(int row);

 protected:
  void hideEvent(QHideEvent* event) override;

 private:
  void showMenu(const QPoint& position);

  PaletteModel& model_;
  RowMenu* menu_;
};
