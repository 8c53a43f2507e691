#pragma once

#include "core/tools/tool.h"
#include "tools/feedback/feedback_panel_controller.h"

/// Sends a bug report, feedback or a question; its panel is the controller's.
class FeedbackTool final : public Tool {
 public:
  explicit FeedbackTool(FeedbackPanelController& panel) : Tool(toolInfo(kFeedbackID), {}), panel_(panel) {}

  void activate() override { panel_.toggle(); }

 private:
  FeedbackPanelController& panel_;
};

/// The same for the wish for a new tool.
class SuggestTool final : public Tool {
 public:
  explicit SuggestTool(SuggestPanelController& panel) : Tool(toolInfo(kSuggestID), {}), panel_(panel) {}

  void activate() override { panel_.toggle(); }

 private:
  SuggestPanelController& panel_;
};
