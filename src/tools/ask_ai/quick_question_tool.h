#pragma once

#include "core/tools/tool.h"
#include "tools/ask_ai/quick_question_panel_controller.h"

inline constexpr QLatin1StringView kQuickQuestionID{"quick-question"};

/// Answers questions in a panel, which is the controller's.
class QuickQuestionTool final : public Tool {
 public:
  QuickQuestionTool(QuickQuestionPanelController& panel, SettingsViewFactory settingsView)
      : Tool(toolInfo(kQuickQuestionID), std::move(settingsView)), panel_(panel) {}

  void activate() override { panel_.toggle(); }

 private:
  QuickQuestionPanelController& panel_;
};
