#include "app/tools/boilerplates_kit.h"

#include "tools/boilerplates/boilerplates_palette_window.h"
#include "tools/boilerplates/boilerplates_settings_view.h"
#include "tools/boilerplates/boilerplates_tool.h"

using namespace Qt::StringLiterals;

BoilerplatesKit::BoilerplatesKit(AppContext& context, const VibeHistoryStore& history,
                                 const SessionTraceScanner& scanner)
    : settings_(context.folders.file(u"boilerplates.json"_s)),
      palette_({settings_, history, scanner, context.settingsOpener, context.toasts, context.clock, context.launcher,
                [this](const QString& start, const std::function<void(const QString&)>& chosen) {
                  chooseFolder(start, chosen);
                }},
               [this, &native = *context.platform.panelWindow] {
                 return std::make_unique<BoilerplatesPaletteWindow>(native, palette_);
               }) {}

std::unique_ptr<Tool> BoilerplatesKit::makeTool() {
  return std::make_unique<BoilerplatesTool>(
      palette_, [this](QWidget* parent) { return new BoilerplatesSettingsView(settings_, parent); });
}

void BoilerplatesKit::chooseFolder(const QString& start, const std::function<void(const QString&)>& chosen) {
  delete dialog_;
  dialog_ = new QFileDialog(nullptr, u"Choose a folder to create the project in"_s, start);
  dialog_->setFileMode(QFileDialog::Directory);
  dialog_->setOption(QFileDialog::ShowDirsOnly);
  dialog_->setLabelText(QFileDialog::Accept, u"Create"_s);
  dialog_->setAttribute(Qt::WA_DeleteOnClose);
  QObject::connect(dialog_, &QFileDialog::fileSelected, dialog_, chosen);
  dialog_->show();
  dialog_->activateWindow();
}
