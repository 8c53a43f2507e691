#pragma once

#include "core/presenters/palette_presenter.h"
#include "core/ui/palette_panel.h"

class AskFlow;
class AskView;

/// A conversation on the screen: the keys that concern what is drawn are its own, all others the flow's.
class AskPanel : public QObject, public PalettePresenter {
  Q_OBJECT

 public:
  void present() override;
  void warmUp() override { panel_.warmUp(); }
  void dismiss() override { panel_.dismiss(); }

  PalettePanel& panel() { return panel_; }

 protected:
  /// The panel owns `view`.
  AskPanel(PanelWindow& native, AskFlow& flow, AskView* view);

 private:
  bool handleKey(const KeyPress& key);
  bool copySelection();

  AskFlow& flow_;
  PalettePanel panel_;
  AskView* view_;
};
