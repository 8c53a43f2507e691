#pragma once

#include <QFileDialog>
#include <QPointer>

#include "app/app_context.h"
#include "app/tools/tool_kit.h"
#include "tools/generate_image/generate_image_panel_controller.h"

class QSettings;

class GenerateImageKit final : public ToolKit {
 public:
  GenerateImageKit(AppContext& context, QSettings& defaults);
  ~GenerateImageKit() override { delete dialog_; }

  std::unique_ptr<Tool> makeTool() override;
  void prepare() override { panel_.prepare(); }
  /// Nothing is written after this.
  void close() { history_.close(); }

 private:
  void open(QFileDialog* dialog, const std::function<void(QStringList)>& chosen);
  void chooseImages(const std::function<void(QStringList)>& chosen);
  void chooseDestination(const QString& name, const std::function<void(QString)>& chosen);
  QWidget* makeSettings(QWidget* parent);

  AppContext& context_;
  GenerateImageStore settings_;
  GenerateImageClient client_;
  ImageHistory history_;
  GenerateImagePanelController panel_;
  QPointer<QFileDialog> dialog_;
};
