#pragma once

#include <QVariantAnimation>
#include <QWidget>

/// The capsule that follows the pointer until the drag begins: what the picture is for. Lets the mouse through.
class CapturePill final : public QWidget {
  Q_OBJECT

 public:
  CapturePill(QString label, QString icon, QWidget* parent);

  /// Without `animated` at once.
  void fadeIn(bool animated) { fadeTo(1, animated); }
  void fadeOut(bool animated) { fadeTo(0, animated); }
  double opacity() const { return opacity_; }

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void fadeTo(double opacity, bool animated);

  QString label_;
  QString icon_;
  double opacity_ = 1;
  QVariantAnimation fade_;
};
