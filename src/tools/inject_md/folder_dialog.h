#pragma once

#include <QPointer>
#include <QString>

#include <functional>
#include <optional>

class QFileDialog;

/// Lets the user choose a folder, in a window of its own that blocks nothing. One at a time.
class FolderDialog {
 public:
  FolderDialog() = default;
  ~FolderDialog();
  FolderDialog(const FolderDialog&) = delete;
  FolderDialog& operator=(const FolderDialog&) = delete;

  /// `answered` gets the folder, or none when the user closes the window without choosing. A question that another one
  /// follows is never answered.
  void ask(const QString& title, std::function<void(const std::optional<QString>&)> answered);

 private:
  QPointer<QFileDialog> dialog_;
  /// Where the last one was.
  QString last_;
};
