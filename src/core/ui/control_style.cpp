#include "core/ui/control_style.h"

#include <QPainter>
#include <QStyleOption>
#include <QWidget>

#include "core/ui/theme.h"

using namespace Qt::StringLiterals;

namespace {

constexpr qreal kRadius = 6;

void paintButton(QPainter& painter, const QStyleOption& option, const Theme& theme) {
  const bool pressed = option.state.testFlag(QStyle::State_Sunken) || option.state.testFlag(QStyle::State_On);
  const bool focused = option.state.testFlag(QStyle::State_HasFocus);
  const bool hovered = option.state.testFlag(QStyle::State_MouseOver) && option.state.testFlag(QStyle::State_Enabled);
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(focused ? theme.accent : theme.hairline, focused ? 2 : 1));
  painter.setBrush(pressed ? theme.raised : option.palette.color(QPalette::Button));
  const QRectF ground = QRectF(option.rect).adjusted(1, 1, -1, -1);
  painter.drawRoundedRect(ground, kRadius, kRadius);
  if (hovered && !pressed) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(theme.hover);
    painter.drawRoundedRect(ground, kRadius, kRadius);
  }
  painter.restore();
}

}  // namespace

ControlStyle::ControlStyle() : QProxyStyle(u"Fusion"_s) {}

void ControlStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                 const QWidget* widget) const {
  if (element == PE_PanelButtonCommand && widget) {
    paintButton(*painter, *option, themeOf(*widget));
    return;
  }
  // The button's own edge shows the focus.
  if (element == PE_FrameFocusRect && widget && widget->inherits("QPushButton")) return;
  if (element == PE_FrameDefaultButton) return;
  QProxyStyle::drawPrimitive(element, option, painter, widget);
}
