#pragma once

#include "app/app_context.h"
#include "app/tools/tool_kit.h"
#include "tools/feedback/feedback_panel_controller.h"

class QSettings;

/// Feedback and Suggest a Tool, two panels of one make.
class FeedbackKit final : public ToolKit {
 public:
  FeedbackKit(AppContext& context, QSettings& defaults);

  /// Feedback.
  std::unique_ptr<Tool> makeTool() override;
  std::unique_ptr<Tool> makeSuggestTool();
  void prepare() override;

 private:
  ReportPanelController::Services services(AppContext& context) const;

  ReportSender sender_;
  FeedbackClient feedbackClient_{sender_};
  SuggestClient suggestClient_{sender_};
  FeedbackPanelController feedback_;
  SuggestPanelController suggest_;
};
