#pragma once

#include <QPushButton>

/// The button that a window is about, filled in the accent.
class PrimaryButton : public QPushButton {
  Q_OBJECT

 public:
  explicit PrimaryButton(const QString& text = {}, QWidget* parent = nullptr);

  /// Without, it is drawn like any other button: something else matters more just now.
  void setProminent(bool prominent);
  /// Drawn before the text; empty: none.
  void setSymbol(const QString& symbol);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  void paintLabel(QPainter& painter);

  bool isProminent_ = true;
  QString symbol_;
};
