#pragma once

#include "core/presenters/palette_presenter.h"
#include "core/ui/palette_panel.h"

class QUrl;
class QuickQuestionPanelController;
class QuickQuestionView;

/// Ask AI on the screen.
class QuickQuestionPanel final : public QObject, public PalettePresenter {
  Q_OBJECT

 public:
  /// Opens a web address in the user's browser.
  using OpenLink = std::function<void(const QUrl&)>;

  QuickQuestionPanel(PanelWindow& native, QuickQuestionPanelController& controller, const OpenLink& openLink);

  void present() override;
  void warmUp() override;
  void dismiss() override { panel_.dismiss(); }

  PalettePanel& panel() { return panel_; }

 private:
  bool handleKey(const KeyPress& key);

  QuickQuestionPanelController& controller_;
  PalettePanel panel_;
  QuickQuestionView* view_;
};
