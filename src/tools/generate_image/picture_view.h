#pragma once

#include <QPixmap>
#include <QWidget>

#include "tools/generate_image/generate_image_model.h"

/// The picture as large as it fits. It can be dragged out, as a file and as an image.
class PictureView final : public QWidget {
  Q_OBJECT

 public:
  /// The file of an image of the history; empty while there is none.
  using FileOf = std::function<QString(const QString& historyID)>;

  PictureView(const GenerateImageModel& model, FileOf fileOf, QWidget* parent = nullptr);

  void follow();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;

 private:
  QRect place() const;
  void drag();

  const GenerateImageModel& model_;
  FileOf fileOf_;
  QString shownID_;
  /// The picture at the size of its place.
  QPixmap scaled_;
  QPoint pressedAt_;
};
