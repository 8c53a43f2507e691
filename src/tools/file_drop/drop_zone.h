#pragma once

#include <QWidget>

/// The empty drop window: what to do with it, drawn in a dashed frame, and two buttons for those who choose instead.
class DropZone : public QWidget {
  Q_OBJECT

 public:
  explicit DropZone(QWidget* parent = nullptr);

  /// Whether something that can be dropped is held over the window.
  void setTargeted(bool targeted);

 Q_SIGNALS:
  void filesWanted();
  void folderWanted();

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  bool targeted_ = false;
};
