#pragma once

#include "tools/asking/ask_panel.h"

class QUrl;
class QuickQuestionPanelController;
class QuickQuestionView;

/// Ask AI on the screen.
class QuickQuestionPanel final : public AskPanel {
  Q_OBJECT

 public:
  /// Opens an address where the user opens such ones.
  using OpenLink = std::function<void(const QUrl&)>;

  QuickQuestionPanel(PanelWindow& native, QuickQuestionPanelController& controller, const OpenLink& openLink);

 private:
  QuickQuestionPanel(PanelWindow& native, QuickQuestionPanelController& controller, QuickQuestionView* view,
                     const OpenLink& openLink);
};
