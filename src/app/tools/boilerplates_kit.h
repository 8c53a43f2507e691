#pragma once

#include <QFileDialog>
#include <QPointer>

#include "app/app_context.h"
#include "app/tools/tool_kit.h"
#include "tools/boilerplates/boilerplates_palette_controller.h"

class BoilerplatesKit final : public ToolKit {
 public:
  BoilerplatesKit(AppContext& context, const VibeHistoryStore& history, const SessionTraceScanner& scanner);
  ~BoilerplatesKit() override { delete dialog_; }

  std::unique_ptr<Tool> makeTool() override;
  void prepare() override { palette_.prepare(); }

  /// Tells of the projects that are made.
  BoilerplatesPaletteController& palette() { return palette_; }

 private:
  void chooseFolder(const QString& start, const std::function<void(const QString&)>& chosen);

  BoilerplateStore settings_;
  BoilerplatesPaletteController palette_;
  QPointer<QFileDialog> dialog_;
};
