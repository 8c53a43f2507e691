#pragma once

#include <QProgressBar>

/// A slim line that fills in the accent, 0 to 1000.
class ProgressLine : public QProgressBar {
  Q_OBJECT

 public:
  /// `name` is for screen readers.
  explicit ProgressLine(const QString& name, QWidget* parent = nullptr);

  /// From 0 to 1.
  void setFraction(double fraction);
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
};
