#pragma once

#include <QPixmap>
#include <QVariantAnimation>
#include <QWidget>

/// Lets the picture of what a widget showed before fade away over what it shows now. Takes no clicks.
class StepFade : public QWidget {
  Q_OBJECT

 public:
  explicit StepFade(QWidget& over);

  /// Takes the picture; to be called before the change.
  void start();

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QWidget& over_;
  QPixmap before_;
  QVariantAnimation opacity_;
};
