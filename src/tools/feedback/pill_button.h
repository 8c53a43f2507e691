#pragma once

#include <QPushButton>

/// One of a few choices beside each other: a symbol and a word in a capsule, filled while it is the chosen one.
class PillButton final : public QPushButton {
  Q_OBJECT

 public:
  PillButton(const QString& symbol, const QString& text, QWidget* parent = nullptr);

  QSize sizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QString symbol_;
};
