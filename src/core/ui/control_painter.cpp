#include "core/ui/control_painter.h"

#include <QPainter>
#include <QStyleOption>

#include <algorithm>

#include "core/ui/icon.h"
#include "core/ui/theme.h"

namespace {

constexpr qreal kRadius = 6;
constexpr qreal kCheckRadius = 4;
constexpr int kMark = 12;

bool isSet(const QStyleOption& option, QStyle::StateFlag flag) { return option.state.testFlag(flag); }

bool isHovered(const QStyleOption& option) {
  return isSet(option, QStyle::State_MouseOver) && isSet(option, QStyle::State_Enabled);
}

/// A rounded ground with an edge, in the accent when the keyboard is there.
void paintGround(QPainter& painter, const QStyleOption& option, const QColor& fill, const Theme& theme) {
  const bool focused = isSet(option, QStyle::State_HasFocus);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(focused ? theme.accent : theme.edge, focused ? 1.5 : 1));
  painter.setBrush(fill);
  // Half of the line lies on either side of this rectangle.
  const qreal inset = focused ? 0.75 : 0.5;
  painter.drawRoundedRect(QRectF(option.rect).adjusted(inset, inset, -inset, -inset), kRadius, kRadius);
}

void shade(QPainter& painter, const QRectF& rect, const QColor& color, qreal radius) {
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  painter.setBrush(color);
  painter.drawRoundedRect(rect, radius, radius);
}

}  // namespace

void control::paintButton(QPainter& painter, const QStyleOption& option, const Theme& theme) {
  const bool pressed = isSet(option, QStyle::State_Sunken) || isSet(option, QStyle::State_On);
  painter.save();
  paintGround(painter, option, pressed ? theme.raised : option.palette.color(QPalette::Button), theme);
  if (isHovered(option) && !pressed) shade(painter, QRectF(option.rect).adjusted(1, 1, -1, -1), theme.hover, kRadius);
  painter.restore();
}

void control::paintField(QPainter& painter, const QStyleOption& option, const Theme& theme) {
  painter.save();
  paintGround(painter, option, theme.card, theme);
  painter.restore();
}

void control::paintFlatButton(QPainter& painter, const QStyleOption& option, const Theme& theme) {
  const bool pressed = isSet(option, QStyle::State_Sunken) || isSet(option, QStyle::State_On);
  painter.save();
  if (pressed || isHovered(option)) shade(painter, option.rect, pressed ? theme.raised : theme.hover, kRadius);
  if (isSet(option, QStyle::State_HasFocus)) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(theme.accent, 1.5));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(QRectF(option.rect).adjusted(0.75, 0.75, -0.75, -0.75), kRadius, kRadius);
  }
  painter.restore();
}

void control::paintCheckBox(QPainter& painter, const QStyleOption& option, const Theme& theme) {
  const bool checked = isSet(option, QStyle::State_On);
  const bool partly = isSet(option, QStyle::State_NoChange);
  const QRectF box = QRectF(option.rect).adjusted(0.5, 0.5, -0.5, -0.5);
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setOpacity(isSet(option, QStyle::State_Enabled) ? 1.0 : 0.4);
  painter.setPen(QPen(checked || partly ? theme.selection : theme.edge, 1));
  painter.setBrush(checked || partly ? theme.selection : theme.card);
  painter.drawRoundedRect(box, kCheckRadius, kCheckRadius);
  const qreal inset = 2;
  if (checked || partly)
    paintSymbol(painter, partly ? QStringLiteral("minus") : QStringLiteral("checkmark"),
                QRectF(option.rect).adjusted(inset, inset, -inset, -inset), theme.onAccent);
  painter.restore();
}

void control::paintMark(QPainter& painter, const char16_t* symbol, const QRect& rect, const QStyleOption& option,
                        const Theme& theme) {
  painter.save();
  painter.setOpacity(isSet(option, QStyle::State_Enabled) ? 1.0 : 0.4);
  const qreal size = std::min({kMark, rect.width(), rect.height()});
  const QRectF mark(QRectF(rect).center() - QPointF(size, size) / 2, QSizeF(size, size));
  paintSymbol(painter, QString::fromUtf16(symbol), mark, theme.secondary);
  painter.restore();
}

void control::paintScrollThumb(QPainter& painter, const QRect& thumb, const QStyleOptionSlider& option,
                               const Theme& theme) {
  if (option.maximum <= option.minimum) return;
  const bool grabbed = isSet(option, QStyle::State_Sunken) || isSet(option, QStyle::State_MouseOver);
  const QRectF bar = QRectF(thumb).adjusted(2, 2, -2, -2);
  painter.save();
  shade(painter, bar, grabbed ? theme.secondary : theme.switchOff, std::min(bar.width(), bar.height()) / 2);
  painter.restore();
}
