#pragma once

#include <QFileDialog>
#include <QPointer>

#include "app/app_context.h"
#include "app/tools/tool_kit.h"
#include "tools/file_drop/bulk_upload_client.h"
#include "tools/file_drop/bulk_upload_panel_controller.h"

class QSettings;

class FileDropKit final : public ToolKit {
 public:
  FileDropKit(AppContext& context, QSettings& defaults);
  ~FileDropKit() override { delete dialog_; }

  std::unique_ptr<Tool> makeTool() override;
  void prepare() override { panel_.prepare(); }

 private:
  using Chosen = std::function<void(QList<QUrl>)>;
  void choose(BulkUploadPanelController::Choice choice, const Chosen& chosen);

  AppContext& context_;
  BulkUploadClient client_;
  BulkUploadPanelController panel_;
  QPointer<QFileDialog> dialog_;
};
