#include "app/tools/file_drop_kit.h"

#include <QDir>

#include "tools/file_drop/bulk_upload_panel.h"
#include "tools/file_drop/file_drop_settings_view.h"
#include "tools/file_drop/file_drop_tool.h"

using namespace Qt::StringLiterals;

FileDropKit::FileDropKit(AppContext& context, QSettings& defaults)
    : context_(context),
      client_({context.services.environments, context.services.http, context.clock, makeArchiver(), QDir::tempPath()}),
      panel_({client_, *context.platform.pasteboard, context.toasts, context.preferences, context.launcher,
              [this](BulkUploadPanelController::Choice choice, const Chosen& chosen) { choose(choice, chosen); }},
             [this, &native = *context.platform.panelWindow, &defaults] {
               return std::make_unique<BulkUploadPanel>(native, defaults, panel_);
             }) {}

std::unique_ptr<Tool> FileDropKit::makeTool() {
  return std::make_unique<BulkUploadTool>(panel_, [this](QWidget* parent) {
    return new FileDropSettingsView(client_, *context_.platform.systemInfo, parent);
  });
}

void FileDropKit::choose(BulkUploadPanelController::Choice choice, const Chosen& chosen) {
  const bool isFolder = choice == BulkUploadPanelController::Choice::folder;
  delete dialog_;
  dialog_ = new QFileDialog(nullptr, isFolder ? u"Choose a folder to upload"_s : u"Choose files to upload"_s);
  dialog_->setFileMode(isFolder ? QFileDialog::Directory : QFileDialog::ExistingFiles);
  dialog_->setOption(QFileDialog::ShowDirsOnly, isFolder);
  dialog_->setLabelText(QFileDialog::Accept, u"Add"_s);
  dialog_->setAttribute(Qt::WA_DeleteOnClose);
  QObject::connect(dialog_, &QFileDialog::finished, dialog_, [dialog = dialog_.data(), chosen](int result) {
    chosen(result == QDialog::Accepted ? dialog->selectedUrls() : QList<QUrl>());
  });
  dialog_->show();
  dialog_->activateWindow();
}
