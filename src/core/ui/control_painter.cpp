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
constexpr qreal kFocusLine = 2;

bool isSet(const QStyleOption& option, QStyle::StateFlag flag) { return option.state.testFlag(flag); }

bool isHovered(const QStyleOption& option) {
  return isSet(option, QStyle::State_MouseOver) && isSet(option, QStyle::State_Enabled);
}

/// A rounded ground with an edge, in the accent when the keyboard is there.
void paintGround(QPainter& painter, const QStyleOption& option, const QColor& fill, const Theme& theme) {
  const bool focused = isSet(option, QStyle::State_HasFocus);
  painter.setRenderHint(QPainter::Antialiasing);
  const qreal line = focused ? kFocusLine : 1;
  painter.setPen(QPen(focused ? theme.accent : theme.edge, line));
  painter.setBrush(fill);
  // Half of the line lies on either side of this rectangle.
  const qreal inset = line / 2;
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

void control::paintListFrame(QPainter& painter, const QStyleOption& option, const Theme& theme) {
  painter.save();
  painter.setPen(theme.edge);
  painter.setBrush(theme.card);
  painter.drawRect(option.rect.adjusted(0, 0, -1, -1));
  painter.restore();
}

void control::paintFlatButton(QPainter& painter, const QStyleOption& option, const Theme& theme) {
  const bool pressed = isSet(option, QStyle::State_Sunken) || isSet(option, QStyle::State_On);
  painter.save();
  if (pressed || isHovered(option)) shade(painter, option.rect, pressed ? theme.raised : theme.hover, kRadius);
  painter.restore();
}

void control::paintFocusRing(QPainter& painter, const QRect& rect, const Theme& theme) {
  const qreal inset = kFocusLine / 2;
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(theme.accent, kFocusLine));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(QRectF(rect).adjusted(inset, inset, -inset, -inset), kRadius, kRadius);
  painter.restore();
}

void control::paintCheckBox(QPainter& painter, const QStyleOption& option, const Theme& theme) {
  const bool checked = isSet(option, QStyle::State_On);
  const bool partly = isSet(option, QStyle::State_NoChange);
  const bool focused = isSet(option, QStyle::State_HasFocus);
  const bool filled = checked || partly;
  const qreal line = focused ? kFocusLine : 1;
  const QRectF box = QRectF(option.rect).adjusted(line / 2, line / 2, -line / 2, -line / 2);
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setOpacity(isSet(option, QStyle::State_Enabled) ? 1.0 : 0.4);
  // A filled box is in the accent already: the keyboard draws a line of the text's colour around it.
  const QColor ring = filled ? theme.text : theme.accent;
  painter.setPen(QPen(focused ? ring : filled ? theme.selection : theme.edge, line));
  painter.setBrush(filled ? theme.selection : theme.card);
  painter.drawRoundedRect(box, kCheckRadius, kCheckRadius);
  const qreal inset = 2;
  if (filled)
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
