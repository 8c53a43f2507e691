#pragma once

#include "core/ui/palette_list.h"

class GenerateImagePanelController;

/// The kept images in a row, the newest first.
class HistoryStrip final : public PaletteList {
  Q_OBJECT

 public:
  static constexpr int kHeight = 68;

  explicit HistoryStrip(GenerateImagePanelController& controller, QWidget* parent = nullptr);

  void follow();

 private:
  void announce(int row);

  GenerateImagePanelController& controller_;
  int announced_ = -1;
};
