#include "app/tools/ask_ai_kit.h"

#include <QDesktopServices>

#include "tools/ask_ai/quick_question_panel.h"
#include "tools/ask_ai/quick_question_settings_view.h"
#include "tools/ask_ai/quick_question_tool.h"

using namespace Qt::StringLiterals;

AskAIKit::AskAIKit(AppContext& context)
    : context_(context),
      client_({context.services.environments, context.services.api, context.services.http, context.services.quota}),
      panel_({client_, *context.platform.pasteboard, context.clock, context.regions, *context.platform.permissions,
              *context.platform.systemInfo, context.launcher, [this](const auto& chosen) { choose(chosen); }},
             [this, &native = *context.platform.panelWindow] {
               return std::make_unique<QuickQuestionPanel>(native, panel_,
                                                           [](const QUrl& url) { QDesktopServices::openUrl(url); });
             }) {}

std::unique_ptr<Tool> AskAIKit::makeTool() {
  return std::make_unique<QuickQuestionTool>(panel_, [this](QWidget* parent) {
    return new QuickQuestionSettingsView(client_, *context_.platform.systemInfo, parent);
  });
}

void AskAIKit::choose(const std::function<void(QList<QUrl>)>& chosen) {
  delete dialog_;
  dialog_ = new QFileDialog(nullptr, u"Choose image(s) to attach to your question"_s);
  dialog_->setFileMode(QFileDialog::ExistingFiles);
  dialog_->setNameFilters(
      {u"Images (*.png *.jpg *.jpeg *.gif *.webp *.bmp *.tif *.tiff *.heic *.avif *.ico)"_s, u"All files (*)"_s});
  dialog_->setLabelText(QFileDialog::Accept, u"Attach"_s);
  dialog_->setAttribute(Qt::WA_DeleteOnClose);
  QObject::connect(dialog_, &QFileDialog::finished, dialog_, [dialog = dialog_.data(), chosen](int result) {
    chosen(result == QDialog::Accepted ? dialog->selectedUrls() : QList<QUrl>());
  });
  dialog_->show();
  dialog_->activateWindow();
}
