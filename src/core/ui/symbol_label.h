#pragma once

#include <QWidget>

/// A symbol in the accent, as a mark beside a text.
class SymbolLabel : public QWidget {
  Q_OBJECT

 public:
  /// `size` in pixels.
  SymbolLabel(const QString& symbol, int size, QWidget* parent = nullptr);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QString symbol_;
};
