#pragma once

#include <QWidget>

struct Theme;
class QColor;

/// A symbol as a mark beside a text, in the accent or another of the theme's colours.
class SymbolLabel : public QWidget {
  Q_OBJECT

 public:
  /// `size` in pixels.
  SymbolLabel(const QString& symbol, int size, QWidget* parent = nullptr);

  void setSymbol(const QString& symbol, QColor Theme::* tone);

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  QString symbol_;
  QColor Theme::* tone_;
};
