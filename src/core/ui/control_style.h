#pragma once

#include <QProxyStyle>

/// Fusion with the buttons of this application: rounded, flat, in the theme's colours.
class ControlStyle : public QProxyStyle {
  Q_OBJECT

 public:
  ControlStyle();

  void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
};
