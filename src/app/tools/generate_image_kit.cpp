#include "app/tools/generate_image_kit.h"

#include <QDir>
#include <QStandardPaths>

#include "app/settings/confirm_button.h"
#include "tools/generate_image/generate_image_panel.h"
#include "tools/generate_image/generate_image_settings_view.h"
#include "tools/generate_image/generate_image_tool.h"

using namespace Qt::StringLiterals;

GenerateImageKit::GenerateImageKit(AppContext& context, QSettings& defaults)
    : context_(context),
      settings_(context.folders.file(u"GenerateImage/settings.json"_s)),
      client_(context.services),
      history_(context.folders.file(u"GenerateImage/History"_s)),
      panel_({client_,
              settings_,
              history_,
              *context.platform.pasteboard,
              context.regions,
              *context.platform.permissions,
              *context.platform.systemInfo,
              context.toasts,
              context.preferences,
              context.launcher,
              context.clock,
              {[this](const auto& chosen) { chooseImages(chosen); },
               [this](const QString& name, const auto& chosen) { chooseDestination(name, chosen); }}},
             [this, &native = *context.platform.panelWindow, &defaults] {
               return std::make_unique<GenerateImagePanel>(native, defaults, panel_);
             }) {}

std::unique_ptr<Tool> GenerateImageKit::makeTool() {
  return std::make_unique<GenerateImageTool>(panel_, [this](QWidget* parent) { return makeSettings(parent); });
}

QWidget* GenerateImageKit::makeSettings(QWidget* parent) {
  auto* removal = new ConfirmButton({{u"Delete All…"_s, u"Delete all generated images…"_s},
                                     u"Delete them for good?"_s,
                                     {u"Keep"_s, u"Keep the generated images"_s},
                                     {u"Delete"_s, u"Delete all generated images for good"_s}});
  QObject::connect(removal, &ConfirmButton::confirmed, &history_, &ImageHistory::removeAll);
  return new GenerateImageSettingsView({client_, settings_, history_, *context_.platform.systemInfo}, removal, parent);
}

void GenerateImageKit::open(QFileDialog* dialog, const std::function<void(QStringList)>& chosen) {
  delete dialog_;
  dialog_ = dialog;
  dialog_->setAttribute(Qt::WA_DeleteOnClose);
  QObject::connect(dialog_, &QFileDialog::finished, dialog_, [dialog, chosen](int result) {
    chosen(result == QDialog::Accepted ? dialog->selectedFiles() : QStringList());
  });
  dialog_->show();
  dialog_->activateWindow();
}

void GenerateImageKit::chooseImages(const std::function<void(QStringList)>& chosen) {
  auto* dialog = new QFileDialog(nullptr, u"Choose images to go with your prompt"_s);
  dialog->setFileMode(QFileDialog::ExistingFiles);
  dialog->setNameFilters(
      {u"Images (*.png *.jpg *.jpeg *.webp *.gif *.bmp *.tif *.tiff *.heic *.avif)"_s, u"All files (*)"_s});
  dialog->setLabelText(QFileDialog::Accept, u"Attach"_s);
  open(dialog, chosen);
}

void GenerateImageKit::chooseDestination(const QString& name, const std::function<void(QString)>& chosen) {
  const QString pictures = QStandardPaths::writableLocation(QStandardPaths::PicturesLocation);
  auto* dialog = new QFileDialog(nullptr, u"Save the image"_s, QDir(pictures).exists() ? pictures : QDir::homePath());
  dialog->setAcceptMode(QFileDialog::AcceptSave);
  dialog->setDefaultSuffix(u"png"_s);
  dialog->setNameFilters({u"PNG image (*.png)"_s});
  dialog->selectFile(name);
  open(dialog, [chosen](const QStringList& paths) { chosen(paths.value(0)); });
}
