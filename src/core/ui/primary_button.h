#pragma once

#include <QPushButton>

/// The button that a window is about, filled in the accent.
class PrimaryButton : public QPushButton {
  Q_OBJECT

 public:
  explicit PrimaryButton(const QString& text = {}, QWidget* parent = nullptr);

  /// Without, it is drawn like any other button: something else matters more just now.
  void setProminent(bool prominent);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  bool isProminent_ = true;
};
