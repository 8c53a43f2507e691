#pragma once

#include <QPointer>
#include <QString>

#include <functional>

class QFileDialog;

/// Lets the user choose a folder, in a window of its own that blocks nothing. One at a time.
class FolderDialog {
 public:
  FolderDialog() = default;
  ~FolderDialog();
  FolderDialog(const FolderDialog&) = delete;
  FolderDialog& operator=(const FolderDialog&) = delete;

  /// `chosen` is called when a folder has been chosen.
  void ask(const QString& title, std::function<void(const QString&)> chosen);

 private:
  QPointer<QFileDialog> dialog_;
  /// Where the last one was.
  QString last_;
};
