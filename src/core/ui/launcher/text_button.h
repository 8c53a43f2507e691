#pragma once

#include <QAbstractButton>

/// A quiet button of text alone, in the accent.
class TextButton : public QAbstractButton {
  Q_OBJECT

 public:
  explicit TextButton(QWidget* parent);

  void setLabel(const QString& label);
  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;
};
