#pragma once

#include <QFileDialog>
#include <QPointer>

#include "app/app_context.h"
#include "app/tools/tool_kit.h"
#include "tools/ask_ai/quick_question_client.h"
#include "tools/ask_ai/quick_question_panel_controller.h"

class AskAIKit final : public ToolKit {
 public:
  explicit AskAIKit(AppContext& context);
  ~AskAIKit() override { delete dialog_; }

  std::unique_ptr<Tool> makeTool() override;
  void prepare() override { panel_.prepare(); }

 private:
  void choose(const std::function<void(QList<QUrl>)>& chosen);

  AppContext& context_;
  QuickQuestionClient client_;
  QuickQuestionPanelController panel_;
  QPointer<QFileDialog> dialog_;
};
