#include "tools/inject_md/folder_dialog.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>

FolderDialog::~FolderDialog() { delete dialog_; }

void FolderDialog::ask(const QString& title, std::function<void(const std::optional<QString>&)> answered) {
  delete dialog_;
  dialog_ = new QFileDialog(nullptr, title, QFileInfo(last_).isDir() ? last_ : QDir::homePath());
  dialog_->setFileMode(QFileDialog::Directory);
  dialog_->setOption(QFileDialog::ShowDirsOnly);
  dialog_->setAttribute(Qt::WA_DeleteOnClose);
  QObject::connect(dialog_, &QFileDialog::rejected, dialog_, [answered] { answered(std::nullopt); });
  QObject::connect(dialog_, &QFileDialog::fileSelected, dialog_,
                   [this, answered = std::move(answered)](const QString& folder) {
                     last_ = QFileInfo(folder).path();
                     answered(folder);
                   });
  dialog_->show();
  dialog_->raise();
  dialog_->activateWindow();
}
