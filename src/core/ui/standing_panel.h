#pragma once

#include "core/presenters/palette_presenter.h"
#include "core/ui/palette_panel.h"
#include "core/ui/panel_position.h"

/// The window of a tool that stays up while the user turns to other windows, and stands where it was put last.
class StandingPanel : public QObject, public PalettePresenter {
  Q_OBJECT

 public:
  /// `card` is without the margin. Takes ownership of `view`, which has `setHasKeyboard(bool)` and a signal `dropped()`
  /// for what was dropped on it.
  template <class View>
  StandingPanel(PanelWindow& native, QSize card, View* view, PanelPosition position, PalettePanel::KeyHandler handleKey)
      : StandingPanel(native, card, position, std::move(handleKey)) {
    panel_.setWindowTitle(view->windowTitle());
    panel_.setContent(view);
    connect(&panel_, &PalettePanel::becameKey, view, [view] { view->setHasKeyboard(true); });
    connect(&panel_, &PalettePanel::resignedKey, view, [view] { view->setHasKeyboard(false); });
    connect(view, &View::dropped, &panel_, &PalettePanel::takeKeyboard);
  }

  void present() override;
  void warmUp() override { panel_.warmUp(); }
  void dismiss() override { panel_.dismiss(); }

  PalettePanel& panel() { return panel_; }

 private:
  StandingPanel(PanelWindow& native, QSize card, PanelPosition position, PalettePanel::KeyHandler handleKey);

  PalettePanel panel_;
  PanelPosition position_;
};
