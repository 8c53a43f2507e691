#include "app/tools/feedback_kit.h"

#include "tools/feedback/feedback_tool.h"
#include "tools/feedback/report_panel.h"
#include "tools/feedback/report_view.h"

using namespace Qt::StringLiterals;

FeedbackKit::FeedbackKit(AppContext& context, QSettings& defaults)
    : sender_({context.services.environments, context.services.credential, context.services.http,
               *context.platform.systemInfo}),
      feedback_(services(context), feedbackClient_,
                [this, &native = *context.platform.panelWindow, &defaults] {
                  auto* view = new ReportView(feedback_, toolInfo(kFeedbackID).name, new CategoryPills(feedback_));
                  return std::make_unique<ReportPanel>(native, feedback_, view, PanelPosition(defaults, "feedback"_L1));
                }),
      suggest_(services(context), suggestClient_, [this, &native = *context.platform.panelWindow, &defaults] {
        auto* view = new ReportView(suggest_, toolInfo(kSuggestID).name);
        return std::make_unique<ReportPanel>(native, suggest_, view, PanelPosition(defaults, "suggestTool"_L1));
      }) {}

ReportPanelController::Services FeedbackKit::services(AppContext& context) const {
  const Platform& platform = context.platform;
  return {context.regionPicker(), *platform.pasteboard, context.toasts, context.launcher, *platform.systemInfo};
}

std::unique_ptr<Tool> FeedbackKit::makeTool() { return std::make_unique<FeedbackTool>(feedback_); }

std::unique_ptr<Tool> FeedbackKit::makeSuggestTool() { return std::make_unique<SuggestTool>(suggest_); }

void FeedbackKit::prepare() {
  feedback_.prepare();
  suggest_.prepare();
}
