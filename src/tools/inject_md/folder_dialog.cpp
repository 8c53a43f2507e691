#include "tools/inject_md/folder_dialog.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>

FolderDialog::~FolderDialog() { delete dialog_; }

void FolderDialog::ask(const QString& title, std::function<void(const QString&)> chosen) {
  delete dialog_;
  dialog_ = new QFileDialog(nullptr, title, QFileInfo(last_).isDir() ? last_ : QDir::homePath());
  dialog_->setFileMode(QFileDialog::Directory);
  dialog_->setOption(QFileDialog::ShowDirsOnly);
  dialog_->setAttribute(Qt::WA_DeleteOnClose);
  QObject::connect(dialog_, &QFileDialog::fileSelected, dialog_,
                   [this, chosen = std::move(chosen)](const QString& folder) {
                     last_ = QFileInfo(folder).path();
                     chosen(folder);
                   });
  dialog_->show();
  dialog_->raise();
  dialog_->activateWindow();
}
